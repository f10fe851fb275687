#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The roots of a registry, with the platform's values.
enum HKEY_VALUES : std::int32_t {
  HKEY_CLASSES_ROOT = static_cast<std::int32_t>(0x80000000u),
  HKEY_CURRENT_USER = static_cast<std::int32_t>(0x80000001u),
  HKEY_LOCAL_MACHINE = static_cast<std::int32_t>(0x80000002u),
  HKEY_USERS = static_cast<std::int32_t>(0x80000003u),
  HKEY_PERFORMANCE_DATA = static_cast<std::int32_t>(0x80000004u),
  HKEY_CURRENT_CONFIG = static_cast<std::int32_t>(0x80000005u),
  HKEY_DYN_DATA = static_cast<std::int32_t>(0x80000006u),
};

/// The types of registry values, with the platform's numbers. Values of other types exist too.
enum RegValueTypes : std::int32_t {
  REG_NONE = 0,
  REG_SZ = 1,
  REG_EXPAND_SZ = 2,
  REG_BINARY = 3,
  REG_DWORD = 4,
  REG_DWORD_LITTLE_ENDIAN = 4,
  REG_DWORD_BIG_ENDIAN = 5,
  REG_LINK = 6,
  REG_MULTI_SZ = 7,
  REG_RESOURCE_LIST = 8,
  REG_FULL_RESOURCE_DESCRIPTOR = 9,
  REG_RESOURCE_REQUIREMENTS_LIST = 10,
};

const Enumeration& DescribeEnumeration(HKEY_VALUES);
const Enumeration& DescribeEnumeration(RegValueTypes);

}  // namespace veldmark
