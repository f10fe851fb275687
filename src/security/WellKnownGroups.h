#pragma once

#include "automation/Object.h"
#include "automation/Text.h"

namespace veldmark {

class CGroup;
class CGroups;

/// The groups that every computer has and no enumeration lists, with their names in the computer's
/// language: each three times, under its display name in capitals, the text of its SID, and its
/// display name. A group that the computer has no name for is left out. Never raises.
Ref<CGroups> BuildWellKnownGroups();

/// The apartment's well-known group of a name in any case. Finds only those whose display name is
/// in capitals, as "NT AUTHORITY\SYSTEM" is: the keys that are looked for know the case. Nothing
/// where there is none; never raises and leaves no error.
Ref<CGroup> FindWellKnownGroup(const Text& domain, const Text& name);

}  // namespace veldmark
