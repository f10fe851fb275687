#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/Types.h"

namespace veldmark::simulated {

// A security identifier. Empty stands for none.
class Sid {
 public:
  static constexpr std::size_t kMaxSubAuthorities = 15;

  Sid() = default;
  Sid(std::uint64_t authority, std::initializer_list<DWORD> sub_authorities);

  // "S-1-5-32-544", the authority also in hexadecimal. Nothing for any other text.
  static std::optional<Sid> FromText(TextView text);

  // The SID that begins with these bytes; nothing unless it is sound and lies within them.
  static std::optional<Sid> FromBytes(std::span<const std::uint8_t> bytes);

  // The SID at an address that a caller vouches for; nothing unless it is sound.
  static std::optional<Sid> FromAddress(const void* address);

  // Everything but the last number: the domain that an account belongs to.
  Sid Domain() const;
  // One number more: an account of this domain.
  Sid Account(DWORD number) const;

  bool empty() const { return bytes_.empty(); }
  const std::vector<std::uint8_t>& bytes() const { return bytes_; }
  Text ToText() const;

  bool operator==(const Sid&) const = default;

 private:
  std::vector<std::uint8_t> bytes_;  // as published: revision, count, authority, sub-authorities
};

// The SIDs that rules speak of.
const Sid& EveryoneSid();
const Sid& CreatorOwnerSid();
const Sid& CreatorGroupSid();
const Sid& OwnerRightsSid();
const Sid& PrincipalSelfSid();
const Sid& InteractiveSid();
const Sid& AuthenticatedUsersSid();
const Sid& SystemSid();
const Sid& AdministratorsSid();
const Sid& UsersSid();
// The local computer's, unless its user comes from elsewhere: what account aliases belong to.
const Sid& DefaultDomainSid();

}  // namespace veldmark::simulated
