#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "automation/Text.h"

namespace veldmark {

using Bytes = std::span<const std::uint8_t>;

/// A binary SID as the library keeps it: revision, sub-authority count, six big-endian bytes of
/// authority and the sub-authorities, in as many 32-bit integers as that takes. Empty before a SID
/// was stored.
using SidWords = std::vector<std::int32_t>;

/// The most sub-authorities that a sound SID has, and the most that the library builds.
inline constexpr std::size_t kMostSubAuthorities = 15;
inline constexpr std::size_t kMostBuiltSubAuthorities = 8;

/// The length in bytes that a SID's count gives it: 8 and 4 for each sub-authority. Raises 1337
/// where that is more than there are bytes.
std::size_t GetLengthSid(Bytes sid);
/// True for a SID of revision 1, with at most 15 sub-authorities, that lies within the bytes.
bool IsValidSid(Bytes sid);
/// True for two SIDs of the same bytes. Raises 1337 as `GetLengthSid` does.
bool EqualSid(Bytes left, Bytes right);

/// The bytes of a SID at an address that the platform handed out, as many as it says itself; none
/// for a null address and where the SID claims more than 15 sub-authorities.
Bytes SidBytesAt(const void* sid);
/// The SID at the beginning of the bytes. Raises 1337 where it leaves them.
SidWords CopySid(Bytes sid);
/// A SID of an authority below 256. There may be at most 15 sub-authorities.
SidWords BuildSid(std::uint8_t authority, std::span<const std::int32_t> sub_authorities);
/// The bytes of a kept SID.
inline Bytes AsBytes(const SidWords& words) {
  return {reinterpret_cast<const std::uint8_t*>(words.data()), words.size() * sizeof words[0]};
}

/// The text of a sound SID: "S-1-", the authority and the sub-authorities in decimal. An authority
/// with one of its two upper bytes set is "0x" and its six bytes in decimal, those below 10 with a
/// "0" before them; one of 2^31 to 2^32 - 1 is left out.
Text SidToText(Bytes sid);

/// The SID of a text such as "S-1-5-32-544". What stands before the first two "-" isn't looked at,
/// and an authority other than 0, 1, 2, 3 and 5 is taken as 0. Raises 87 where there is no
/// sub-authority, 6 for a text without an authority or for a number beyond 32 bits, 13 for what is
/// no number and 9 for a ninth sub-authority.
SidWords GetSidBufferFromText(TextView sid_text);

}  // namespace veldmark
