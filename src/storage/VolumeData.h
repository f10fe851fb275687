#pragma once

#include <cstdint>

#include "automation/Text.h"
#include "automation/Variant.h"

namespace veldmark {

/// What the platform tells about a volume (`GetVolumeInformationW`). All but `is_ready` is empty or
/// 0 where it can't be told.
struct VolumeData {
  bool is_ready = false;
  Text name;  ///< the label
  Text file_system;
  std::int32_t serial_number = 0;
  std::int32_t maximum_component_length = 0;
  std::int32_t flags = 0;
};

/// The volume whose root, with "\" at the end, this is.
VolumeData ReadVolumeData(const Text& root);

/// A serial number as "1A2B-3C4D"; empty for 0.
Text SerialNumberText(std::int32_t serial_number);

/// A count of bytes as a currency value of that many units; raises 6 for one over 922337203685477.
Variant SizeValue(std::uint64_t bytes);

}  // namespace veldmark
