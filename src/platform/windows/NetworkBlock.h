#pragma once

#include <windows.h>

#include <lm.h>

#include <cstring>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Types.h"

namespace veldmark {

/// What an enumeration under Wine is refused with for its arguments: 87 where it has no place for a
/// result, 124 for a level that there is none of. Wine itself takes them as they come.
inline DWORD WalkArgumentError(const void* buffer, const void* read, const void* total,
                               bool has_level) {
  if (buffer == nullptr || read == nullptr || total == nullptr) return kErrorInvalidParameter;
  return has_level ? kErrorSuccess : kErrorInvalidLevel;
}

/// Hands out a block of the network functions: these records in a row, and behind them the texts
/// that these fields of theirs name. Returns 0 or an error code; no records make no block.
template <typename Record>
DWORD HandOutBlock(std::vector<Record> records, std::initializer_list<wchar_t * Record::*> texts,
                   BYTE** buffer) {
  *buffer = nullptr;
  if (records.empty()) return 0;
  std::size_t size = records.size() * sizeof(Record);
  for (const Record& record : records) {
    for (wchar_t* Record::*const text : texts) {
      if (record.*text != nullptr) size += (std::wcslen(record.*text) + 1) * sizeof(wchar_t);
    }
  }
  void* block = nullptr;
  const DWORD error = ::NetApiBufferAllocate(static_cast<::DWORD>(size), &block);
  if (error != 0) return error;
  auto* place =
      reinterpret_cast<wchar_t*>(static_cast<BYTE*>(block) + records.size() * sizeof(Record));
  for (Record& record : records) {
    for (wchar_t* Record::*const text : texts) {
      if (record.*text == nullptr) continue;
      const std::size_t units = std::wcslen(record.*text) + 1;
      std::memcpy(place, record.*text, units * sizeof(wchar_t));
      record.*text = place;
      place += units;
    }
  }
  std::memcpy(block, records.data(), records.size() * sizeof(Record));
  *buffer = static_cast<BYTE*>(block);
  return 0;
}

}  // namespace veldmark
