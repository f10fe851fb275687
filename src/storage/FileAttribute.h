#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The attributes of a file or folder, to be combined. Values that have no name here pass too.
enum FileAttribute : std::int32_t {
  FA_Normal = 0,
  FA_ReadOnly = 1,
  FA_Hidden = 2,
  FA_System = 4,
  FA_Directory = 16,
  FA_Archive = 32,
  FA_Alias = 1024,
  FA_Compressed = 2048,
};

const Enumeration& DescribeEnumeration(FileAttribute);

}  // namespace veldmark
