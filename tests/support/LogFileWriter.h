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
  std::size_t size = 4096;  ///< of the file
  std::size_t start = 48;   ///< where the first record lies
  bool dirty = false;       ///< the header is that of an empty log
  bool has_end = true;      ///< the end record is there

  std::string Write() const {
    std::string file(size, '\0');
    std::size_t offset = start;
    const auto put = [&](const void* bytes, std::size_t count) {
      for (std::size_t i = 0; i < count; ++i) {
        file[offset] = static_cast<const char*>(bytes)[i];
        if (++offset == size) offset = 48;
      }
    };
    std::uint32_t first = 0;
    if (!records.empty()) std::memcpy(&first, records.front().data() + 8, sizeof first);
    for (const simulated::RawRecord& record : records) {
      if (size - offset < 56) {
        const std::uint32_t fill = 0x27;
        while (offset != 48) put(&fill, sizeof fill);
      }
      put(record.data(), record.size());
    }
    const auto begin = static_cast<std::uint32_t>(start);
    const auto end = static_cast<std::uint32_t>(offset);
    const auto next = first + static_cast<std::uint32_t>(records.size());
    const std::uint32_t last[10] = {40,    0x11111111, 0x22222222, 0x33333333, 0x44444444,
                                    begin, end,        next,       first,      40};
    if (has_end) put(last, sizeof last);
    const std::uint32_t signature = 0x654C664C;
    const auto length = static_cast<std::uint32_t>(size);
    const std::uint32_t whole[12] = {48,   signature, 1,      1, begin, end,
                                     next, first,     length, 2, 0,     48};
    const std::uint32_t stale[12] = {48, signature, 1, 1, 48, 48, 1, 0, length, 3, 0, 48};
    std::memcpy(file.data(), dirty ? stale : whole, sizeof whole);
    return file;
  }
};

}  // namespace veldmark
