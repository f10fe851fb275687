#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The bits of the control word of a security descriptor.
enum SDControlEnum : std::int32_t {
  SDC_OWNER_DEFAULTED = 1,
  SDC_GROUP_DEFAULTED = 2,
  SDC_DACL_PRESENT = 4,
  SDC_DACL_DEFAULTED = 8,
  SDC_SACL_PRESENT = 16,
  SDC_SACL_DEFAULTED = 32,
  SDC_DACL_AUTO_INHERIT_REQ = 256,
  SDC_SACL_AUTO_INHERIT_REQ = 512,
  SDC_DACL_AUTO_INHERITED = 1024,
  SDC_SACL_AUTO_INHERITED = 2048,
  SDC_DACL_PROTECTED = 4096,
  SDC_SACL_PROTECTED = 8192,
  SDC_SELF_RELATIVE = -32768,
};

const Enumeration& DescribeEnumeration(SDControlEnum);

}  // namespace veldmark
