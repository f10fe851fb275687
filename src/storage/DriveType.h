#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The kinds of drive, with the values of `GetDriveTypeW`; it also answers 0, for a kind that it
/// can't tell.
enum DriveTypeConst : std::int32_t {
  DT_Unknown = 1,
  DT_Removable = 2,
  DT_Fixed = 3,
  DT_Remote = 4,
  DT_CDRom = 5,
  DT_RamDisk = 6,
};

const Enumeration& DescribeEnumeration(DriveTypeConst);

}  // namespace veldmark
