#pragma once

#include "automation/Text.h"
#include "platform/operations/Security.h"
#include "security/ObjectType.h"

namespace veldmark {

/// Whether a mask has all of these rights.
constexpr bool HasRights(std::int32_t mask, std::int32_t rights) { return (mask | rights) == mask; }

/// Full control of a file, folder or share.
inline constexpr std::int32_t kFileAllAccess = 0x1F01FF;

/// The mask with each generic right replaced by what it stands for.
std::int32_t MapGenericMask(std::int32_t mask, const GENERIC_MAPPING& mapping);

/// What the generic rights of a kind of object stand for; those of a file where it has none of its
/// own.
const GENERIC_MAPPING& MappingOf(SE_OBJECT_TYPE object_type);
/// The same by a class's name, "CService", or its short form, "Service".
const GENERIC_MAPPING& MappingOf(TextView object_type);

}  // namespace veldmark
