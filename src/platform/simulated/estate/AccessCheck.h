#pragma once

#include <span>
#include <vector>

#include "platform/operations/FileSystem.h"
#include "platform/operations/Security.h"
#include "platform/simulated/estate/SecurityDescriptor.h"
#include "platform/simulated/estate/Token.h"

namespace veldmark::simulated {

inline constexpr DWORD kWriteDac = 0x00040000;
inline constexpr DWORD kWriteOwner = 0x00080000;
inline constexpr DWORD kSynchronize = 0x00100000;
inline constexpr DWORD kAccessSystemSecurity = 0x01000000;
inline constexpr DWORD kMaximumAllowed = 0x02000000;
inline constexpr DWORD kGenericExecute = 0x20000000;
inline constexpr DWORD kAllGeneric = kGenericRead | kGenericWrite | kGenericExecute | kGenericAll;
inline constexpr DWORD kAllSpecificAndStandard = 0x001FFFFF;

// Of files and folders, beside those of FileSystem.h.
inline constexpr DWORD kFileListDirectory = 0x1;
inline constexpr DWORD kFileAddFile = 0x2;
inline constexpr DWORD kFileAddSubdirectory = 0x4;
inline constexpr DWORD kFileTraverse = 0x20;
inline constexpr DWORD kFileDeleteChild = 0x40;
inline constexpr DWORD kFileReadAttributes = 0x80;

inline constexpr GENERIC_MAPPING kFileMapping = {0x120089, 0x120116, 0x1200A0, 0x1F01FF};
inline constexpr GENERIC_MAPPING kServiceMapping = {0x2008D, 0x20002, 0x20170, 0xF01FF};
inline constexpr GENERIC_MAPPING kPrinterMapping = {0x20008, 0x20008, 0x20008, 0xF000C};
inline constexpr GENERIC_MAPPING kRegistryMapping = {0x20019, 0x20006, 0x20019, 0xF003F};
inline constexpr GENERIC_MAPPING kDirectoryMapping = {0x20094, 0x20028, 0x20004, 0xF01FF};

// The mask with the generic bits replaced by what they stand for.
DWORD MapGeneric(DWORD mask, const GENERIC_MAPPING& mapping);

// Everything that a token may do by the list and as the owner: the first entry that speaks of a
// right decides on it. Privileges don't count here.
DWORD GrantedAccess(const SecurityDescriptor& descriptor, const Token& token,
                    const GENERIC_MAPPING& mapping);

struct AccessCheckOutcome {
  bool is_allowed = false;
  DWORD granted = 0;
  DWORD error = 0;                // why not: 5, or 1314 where a privilege would be needed
  std::vector<Privilege> used{};  // those that the outcome rests on
};

// The published access check. `desired` has no generic bits; `types` is an object type list with
// levels that begin at 0, or empty; `self` stands for S-1-5-10, if it isn't empty. Access is
// allowed where the first object type, which is the object itself, is granted everything desired.
AccessCheckOutcome CheckAccess(const SecurityDescriptor& descriptor, const Token& token,
                               DWORD desired, const GENERIC_MAPPING& mapping,
                               std::span<const OBJECT_TYPE_LIST> types = {},
                               const Sid& self = Sid());

}  // namespace veldmark::simulated
