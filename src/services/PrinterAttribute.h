#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// What a printer is and does, bit by bit, with the platform's values.
enum PrinterAttributeEnum : std::int32_t {
  PRINTER_ATTRIBUTE_QUEUED = 1,
  PRINTER_ATTRIBUTE_DIRECT = 2,
  PRINTER_ATTRIBUTE_DEFAULT = 4,
  PRINTER_ATTRIBUTE_SHARED = 8,
  PRINTER_ATTRIBUTE_NETWORK = 16,
  PRINTER_ATTRIBUTE_HIDDEN = 32,
  PRINTER_ATTRIBUTE_LOCAL = 64,
  PRINTER_ATTRIBUTE_ENABLE_DEVQ = 128,
  PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS = 256,
  PRINTER_ATTRIBUTE_DO_COMPLETE_FIRST = 512,
  PRINTER_ATTRIBUTE_WORK_OFFLINE = 1024,
  PRINTER_ATTRIBUTE_ENABLE_BIDI = 2048,
  PRINTER_ATTRIBUTE_RAW_ONLY = 4096,
  PRINTER_ATTRIBUTE_PUBLISHED = 8192,
};

const Enumeration& DescribeEnumeration(PrinterAttributeEnum);

}  // namespace veldmark
