#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "platform/simulated/estate/RecordedLog.h"

namespace veldmark {

/// A file of event records as a live log leaves it: the records go round behind the header.
struct LogFileWriter {
  std::vector<simulated::RawRecord> records{};
  std::uint32_t start = 48;  ///< where the first record lies
  bool dirty = false;        ///< the header is that of an empty log
  bool has_end = true;       ///< the end record is there

  std::string Write() const {
    constexpr std::uint32_t kSize = 4096, kFill = 0x27, kSignature = 0x654C664C;
    std::string file(kSize, '\0');
    std::uint32_t end = start;
    const auto put = [&](const auto* bytes, std::size_t count) {
      for (std::size_t i = 0; i < count; ++i) {
        file[end] = reinterpret_cast<const char*>(bytes)[i];
        if (++end == kSize) end = 48;
      }
    };
    std::uint32_t first = 0;
    if (!records.empty()) std::memcpy(&first, records.front().data() + 8, sizeof first);
    for (const simulated::RawRecord& record : records) {
      while (kSize - end < 56) put(&kFill, sizeof kFill);
      put(record.data(), record.size());
    }
    const auto next = first + static_cast<std::uint32_t>(records.size());
    const std::uint32_t whole[] = {48, kSignature, 1, 1, start, end, next, first, kSize, 2, 0, 48};
    const std::uint32_t stale[] = {48, kSignature, 1, 1, 48, 48, 1, 0, kSize, 3, 0, 48};
    std::memcpy(file.data(), dirty ? stale : whole, sizeof whole);
    const std::uint32_t last[] = {40,    0x11111111, 0x22222222, 0x33333333, 0x44444444,
                                  start, end,        next,       first,      40};
    if (has_end) put(last, sizeof last);
    return file;
  }
};

}  // namespace veldmark
