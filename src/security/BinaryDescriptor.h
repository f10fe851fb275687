#pragma once

#include <cstdint>

#include "security/BinarySid.h"

namespace veldmark {

inline constexpr std::size_t kDescriptorHeaderSize = 20;
/// The bit of the control word of a list that inherits nothing.
inline constexpr std::uint16_t kDaclProtected = 0x1000;

/// The parts of a self-relative security descriptor, as they stand in its bytes.
struct BinaryDescriptor {
  /// Reads the header. Raises 1338 where the header or an offset leaves the bytes, or where the
  /// control word doesn't say that the offsets are such.
  explicit BinaryDescriptor(Bytes descriptor);

  std::uint8_t revision;
  std::uint16_t control;
  Bytes owner;  ///< from the owner's SID to the end of the bytes; empty without an owner
  Bytes dacl;   ///< the same of the list; empty for a null list or none
};

}  // namespace veldmark
