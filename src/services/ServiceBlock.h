#pragma once

#include <cstring>
#include <span>

#include "apartment/Conversions.h"
#include "automation/Text.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Types.h"

namespace veldmark {

/// What a query of the service manager left in a buffer: records at its start, and the texts that
/// they name behind them. What leaves the buffer raises 13.
class ServiceBlock {
 public:
  /// The bytes outlive it, and stay where they are.
  explicit ServiceBlock(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  template <class Record>
  Record RecordAt(std::size_t index) const {
    if (index >= bytes_.size() / sizeof(Record)) RaisePlatformError(kErrorInvalidData);
    Record record;
    std::memcpy(&record, bytes_.data() + index * sizeof record, sizeof record);
    return record;
  }
  /// A text that a record names; empty for null.
  Text TextOf(LPCWSTR text) const;
  /// A list of names, each with its NUL, that ends in an empty one; joined by "|".
  Text NamesOf(LPCWSTR names) const;

 private:
  /// Where in the bytes a text begins.
  std::size_t OffsetOf(LPCWSTR text) const;
  /// The text there; `offset` becomes what lies behind its NUL.
  Text TextAt(std::size_t& offset) const;

  std::span<const std::uint8_t> bytes_;
};

}  // namespace veldmark
