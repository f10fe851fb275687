#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The kinds of object that have a security descriptor, with the platform's names and values.
enum SE_OBJECT_TYPE : std::int32_t {
  SE_UNKNOWN_OBJECT_TYPE = 0,
  SE_FILE_OBJECT = 1,
  SE_SERVICE = 2,
  SE_PRINTER = 3,
  SE_REGISTRY_KEY = 4,
  SE_LMSHARE = 5,
  SE_KERNEL_OBJECT = 6,
  SE_WINDOW_OBJECT = 7,
  SE_DS_OBJECT = 8,
  SE_DS_OBJECT_ALL = 9,
  SE_PROVIDER_DEFINED_OBJECT = 10,
  SE_WMIGUID_OBJECT = 11,
};

const Enumeration& DescribeEnumeration(SE_OBJECT_TYPE);

}  // namespace veldmark
