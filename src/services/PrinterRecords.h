#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "automation/Text.h"
#include "platform/operations/Printing.h"

namespace veldmark {

/// The records of `EnumPrintersW` at the beginning of their block. Raises 13 for what leaves the
/// block; nothing outside of it is read. The block must outlive it.
class PrinterRecords {
 public:
  PrinterRecords(std::span<const std::uint8_t> block, std::size_t count);

  std::size_t size() const { return count_; }
  PRINTER_INFO_2W At(std::size_t index) const;
  /// A text that a record points at; empty for null.
  Text TextAt(const WCHAR* place) const;

 private:
  std::span<const std::uint8_t> block_;
  std::size_t count_;
};

}  // namespace veldmark
