#include "services/PrinterRecords.h"

#include <cstring>

#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {

PrinterRecords::PrinterRecords(std::span<const std::uint8_t> block, std::size_t count)
    : block_(block), count_(count) {
  if (count > block.size() / sizeof(PRINTER_INFO_2W)) RaisePlatformError(kErrorInvalidData);
}

PRINTER_INFO_2W PrinterRecords::At(std::size_t index) const {
  PRINTER_INFO_2W record;
  std::memcpy(&record, block_.data() + index * sizeof record, sizeof record);
  return record;
}

Text PrinterRecords::TextAt(const WCHAR* place) const {
  if (place == nullptr) return {};
  const auto begin = reinterpret_cast<std::uintptr_t>(block_.data());
  const auto address = reinterpret_cast<std::uintptr_t>(place);
  if (address < begin || address - begin > block_.size()) RaisePlatformError(kErrorInvalidData);
  const std::span<const std::uint8_t> rest = block_.subspan(address - begin);
  // The address may be odd.
  const auto unit = [&](std::size_t index) {
    WCHAR value;
    std::memcpy(&value, rest.data() + index * sizeof value, sizeof value);
    return value;
  };
  const std::size_t units = rest.size() / sizeof(WCHAR);
  std::size_t length = 0;
  while (length < units && unit(length) != 0) ++length;
  if (length == units) RaisePlatformError(kErrorInvalidData);
  Text text(length, u'\0');
  if (length != 0) std::memcpy(text.data(), rest.data(), length * sizeof(WCHAR));
  return text;
}

}  // namespace veldmark
