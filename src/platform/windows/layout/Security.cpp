#include "platform/operations/Security.h"

#include <windows.h>

#include <sddl.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(LUID, LowPart, HighPart);
VELDMARK_SAME_LAYOUT(LUID_AND_ATTRIBUTES, Luid, Attributes);
VELDMARK_SAME_LAYOUT(TOKEN_PRIVILEGES, PrivilegeCount, Privileges);
VELDMARK_SAME_LAYOUT(GENERIC_MAPPING, GenericRead, GenericWrite, GenericExecute, GenericAll);
VELDMARK_SAME_LAYOUT(GUID, Data1, Data2, Data3, Data4);
VELDMARK_SAME_LAYOUT(OBJECT_TYPE_LIST, Level, Sbz, ObjectType);

static_assert(kOwnerSecurityInformation == OWNER_SECURITY_INFORMATION);
static_assert(kGroupSecurityInformation == GROUP_SECURITY_INFORMATION);
static_assert(kDaclSecurityInformation == DACL_SECURITY_INFORMATION);
static_assert(kSaclSecurityInformation == SACL_SECURITY_INFORMATION);
static_assert(kProtectedDaclSecurityInformation == PROTECTED_DACL_SECURITY_INFORMATION);
static_assert(kUnprotectedDaclSecurityInformation == UNPROTECTED_DACL_SECURITY_INFORMATION);
static_assert(kTokenQuery == TOKEN_QUERY);
static_assert(kTokenAdjustPrivileges == TOKEN_ADJUST_PRIVILEGES);
static_assert(kSePrivilegeEnabled == SE_PRIVILEGE_ENABLED);
static_assert(kSddlRevision1 == SDDL_REVISION_1);

}  // namespace veldmark
