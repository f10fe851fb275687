#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "platform/simulated/estate/Estate.h"
#include "platform/simulated/estate_file/Node.h"

namespace veldmark::simulated {

// The values that several subjects of an estate file are made of.

// How deep folders and keys may be nested.
inline constexpr int kDeepestFolder = 200;

// "2024-03-05T14:30:00Z", perhaps with a fraction of a second.
Ticks ReadTime(const Node& node);
// The same in seconds since 1970.
DWORD ReadSeconds(const Node& node);
std::vector<std::uint8_t> ReadHex(const Node& node);
// Texts by message number.
MessageTable ReadMessages(const Node& node);
// A language by the name of its field, "1031".
WORD ReadLanguage(const Node& field, std::string_view name);
// Of a field's name such as "C:".
char16_t ReadDriveLetter(const Node& node, std::string_view name);
// A descriptor as a string, in which account aliases belong to the estate's user's domain.
SecurityDescriptor ReadSecurity(const Node& node, const Estate& estate);
Sid ReadSid(const Node& node);

}  // namespace veldmark::simulated
