#include "platform/operations/LocalSecurityAuthority.h"

#include <windows.h>

#include <ntsecapi.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(LSA_UNICODE_STRING, Length, MaximumLength, Buffer);
VELDMARK_SAME_LAYOUT(LSA_OBJECT_ATTRIBUTES, Length, RootDirectory, ObjectName, Attributes,
                     SecurityDescriptor, SecurityQualityOfService);
VELDMARK_SAME_LAYOUT(LSA_ENUMERATION_INFORMATION, Sid);

static_assert(kPolicyViewLocalInformation == POLICY_VIEW_LOCAL_INFORMATION);
static_assert(kPolicyLookupNames == POLICY_LOOKUP_NAMES);

}  // namespace veldmark
