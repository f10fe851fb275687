#include "platform/simulated/estate/Sid.h"

#include <cstring>

namespace veldmark::simulated {
namespace {

constexpr std::uint8_t kRevision = 1;
constexpr std::size_t kHeaderSize = 8;
constexpr std::uint64_t kMaxAuthority = (std::uint64_t{1} << 48) - 1;

void AppendSubAuthority(std::vector<std::uint8_t>& bytes, DWORD number) {
  for (int shift = 0; shift < 32; shift += 8) {
    bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
  ++bytes[1];
}

std::vector<std::uint8_t> Header(std::uint64_t authority) {
  std::vector<std::uint8_t> bytes = {kRevision, 0};
  for (int shift = 40; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(authority >> shift));
  }
  return bytes;
}

// A whole number up to `most`, taken from the start of the text together with the "-" behind it.
std::optional<std::uint64_t> TakeNumber(TextView& text, std::uint64_t most, bool may_be_hex) {
  const bool is_hex = may_be_hex && (text.starts_with(u"0x") || text.starts_with(u"0X"));
  std::size_t index = is_hex ? 2 : 0;
  const std::size_t first = index;
  std::uint64_t number = 0;
  for (; index < text.size() && text[index] != u'-'; ++index) {
    const char16_t unit = text[index];
    unsigned digit = 16;
    if (unit >= u'0' && unit <= u'9') digit = unit - u'0';
    if (is_hex && unit >= u'a' && unit <= u'f') digit = unit - u'a' + 10u;
    if (is_hex && unit >= u'A' && unit <= u'F') digit = unit - u'A' + 10u;
    if (digit == 16) return std::nullopt;
    number = number * (is_hex ? 16 : 10) + digit;
    if (number > most) return std::nullopt;
  }
  if (index == first || index + 1 == text.size()) return std::nullopt;
  text.remove_prefix(std::min(index + 1, text.size()));
  return number;
}

}  // namespace

Sid::Sid(std::uint64_t authority, std::initializer_list<DWORD> sub_authorities)
    : bytes_(Header(authority)) {
  for (const DWORD number : sub_authorities) AppendSubAuthority(bytes_, number);
}

std::optional<Sid> Sid::FromText(TextView text) {
  const bool has_start =
      text.size() > 4 && (text[0] == u'S' || text[0] == u's') && text.substr(1, 3) == u"-1-";
  if (!has_start) return std::nullopt;
  text.remove_prefix(4);
  const auto authority = TakeNumber(text, kMaxAuthority, true);
  if (!authority || text.empty()) return std::nullopt;
  Sid sid(*authority, {});
  while (!text.empty()) {
    const auto number = TakeNumber(text, 0xFFFFFFFF, false);
    if (!number || sid.bytes_[1] == kMaxSubAuthorities) return std::nullopt;
    AppendSubAuthority(sid.bytes_, static_cast<DWORD>(*number));
  }
  return sid;
}

std::optional<Sid> Sid::FromBytes(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kHeaderSize || bytes[0] != kRevision || bytes[1] > kMaxSubAuthorities) {
    return std::nullopt;
  }
  const std::size_t size = kHeaderSize + std::size_t{4} * bytes[1];
  if (size > bytes.size()) return std::nullopt;
  Sid sid;
  sid.bytes_.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
  return sid;
}

std::optional<Sid> Sid::FromAddress(const void* address) {
  const auto* const bytes = static_cast<const std::uint8_t*>(address);
  if (bytes == nullptr || bytes[0] != kRevision || bytes[1] > kMaxSubAuthorities) {
    return std::nullopt;
  }
  return FromBytes({bytes, kHeaderSize + std::size_t{4} * bytes[1]});
}

Sid Sid::Domain() const {
  if (empty() || bytes_[1] == 0) return Sid();
  Sid domain = *this;
  domain.bytes_.resize(bytes_.size() - 4);
  --domain.bytes_[1];
  return domain;
}

Sid Sid::Account(DWORD number) const {
  Sid account = *this;
  AppendSubAuthority(account.bytes_, number);
  return account;
}

Text Sid::ToText() const {
  if (empty()) return {};
  std::uint64_t authority = 0;
  for (std::size_t index = 2; index < kHeaderSize; ++index) {
    authority = authority << 8 | bytes_[index];
  }
  Text text = u"S-1-" + veldmark::ToText(static_cast<std::int64_t>(authority));
  for (std::size_t index = kHeaderSize; index < bytes_.size(); index += 4) {
    std::uint32_t number = 0;
    for (std::size_t byte = 4; byte-- > 0;) number = number << 8 | bytes_[index + byte];
    text += u"-" + veldmark::ToText(number);
  }
  return text;
}

const Sid& EveryoneSid() {
  static const Sid sid(1, {0});
  return sid;
}

const Sid& CreatorOwnerSid() {
  static const Sid sid(3, {0});
  return sid;
}

const Sid& CreatorGroupSid() {
  static const Sid sid(3, {1});
  return sid;
}

const Sid& OwnerRightsSid() {
  static const Sid sid(3, {4});
  return sid;
}

const Sid& PrincipalSelfSid() {
  static const Sid sid(5, {10});
  return sid;
}

const Sid& InteractiveSid() {
  static const Sid sid(5, {4});
  return sid;
}

const Sid& AuthenticatedUsersSid() {
  static const Sid sid(5, {11});
  return sid;
}

const Sid& SystemSid() {
  static const Sid sid(5, {18});
  return sid;
}

const Sid& AdministratorsSid() {
  static const Sid sid(5, {32, 544});
  return sid;
}

const Sid& UsersSid() {
  static const Sid sid(5, {32, 545});
  return sid;
}

const Sid& DefaultDomainSid() {
  static const Sid sid(5, {21, 1085031214, 1563985344, 725345543});
  return sid;
}

}  // namespace veldmark::simulated
