#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "automation/Text.h"
#include "platform/operations/Types.h"

namespace veldmark {

/// What an operation left in a buffer: records at its start, and the texts that they name behind
/// them. What leaves the buffer raises 13; nothing outside of it is read.
class RecordBuffer {
 public:
  /// The bytes outlive it, and stay where they are.
  explicit RecordBuffer(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  /// Raises 13 where so many records don't fit.
  template <class Record>
  void RequireRecords(std::size_t count) const {
    RequireRoom(count, sizeof(Record));
  }
  template <class Record>
  Record RecordAt(std::size_t index) const {
    RequireRecords<Record>(index + 1);
    Record record;
    std::memcpy(&record, bytes_.data() + index * sizeof record, sizeof record);
    return record;
  }
  /// A text that a record names; empty for null.
  Text TextOf(LPCWSTR text) const;
  /// A list of names, each with its NUL, that ends in an empty one; joined by "|".
  Text NamesOf(LPCWSTR names) const;

 private:
  void RequireRoom(std::size_t count, std::size_t size) const;
  /// The bytes from an address on.
  std::span<const std::uint8_t> From(LPCWSTR address) const;

  std::span<const std::uint8_t> bytes_;
};

}  // namespace veldmark
