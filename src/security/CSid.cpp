#include "security/CSid.h"

#include <limits>

#include "accounts/CUser.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"

namespace veldmark {
namespace {

constexpr TextView kAccountUnknown = u"(Account Unknown)";

}  // namespace

const Interface& CSid::Describe() {
  static const Interface table =
      Declare<CSid>(u"CSid", u"A security identifier and the account behind it.")
          .Method<&CSid::IsEqual>(u"IsEqual", u"True if both are the same.", {u"oSid"})
          .Method<&CSid::IsValid>(u"IsValid", u"True if its binary form is sound.")
          .Get<&CSid::SidText>(u"SidText", u"Its text, \"S-1-5-18\".")
          .Get<&CSid::AccountServer>(u"AccountServer", u"The account's server.")
          .Get<&CSid::AccountDomain>(u"AccountDomain", u"The account's domain.")
          .Get<&CSid::AccountName>(u"AccountName", u"The account's name.")
          .Get<&CSid::SIDType>(u"SIDType", u"What it stands for; 0 before it was looked up.")
          .Method<&CSid::GetAccount>(u"GetAccount", u"The user or group that it stands for.")
          .Get<&CSid::AccountDisplayName>(u"AccountDisplayName",
                                          u"The account's name with its domain, for display.")
          .Get<&CSid::pSid>(u"pSid", u"The address of its binary form, in 32-bit programs.")
          .Remark(u"Raises 6 in a 64-bit program where the address takes more than 31 bits.")
          .Get<&CSid::SidLength>(u"SidLength", u"The length of its binary form in bytes.")
          .Get<&CSid::WellKnownGroupType>(u"WellKnownGroupType",
                                          u"Which well-known group it is; -1 for none.")
          .Get<&CSid::AccountUnknown>(u"AccountUnknown", u"True once no account was found for it.")
          .Get<&CSid::IsBuiltin>(u"IsBuiltin", u"True for a group of the domain BUILTIN.");
  return table;
}

bool CSid::IsEqual(Ref<CSid>& oSid) {
  bool equal = false;
  Swallow([&] {
    if (!oSid) Raise(runtime_error::kObjectNotSet);
    equal = EqualSid(AsBytes(SidBuffer()), AsBytes(oSid->SidBuffer()));
  });
  return equal;
}

bool CSid::IsValid() {
  Swallow([&] { SidBuffer(); });
  return IsValidSid(AsBytes(sid_));
}

const Text& CSid::SidText() {
  if (sid_text_.empty() && sid_.size() > 1 && sid_loaded_) ComputeSidText();
  return sid_text_;
}

Ref<Object> CSid::GetAccount() {
  LoadAccountOnce();
  const auto account = Make<CUser>();
  account->SetAccountDisplayName(Text(kAccountUnknown));
  return account;
}

const Text& CSid::AccountDisplayName() {
  Swallow([&] {
    LoadAccountOnce();
    if (account_display_name_.empty()) account_display_name_ = kAccountUnknown;
    account_unknown_ = true;
  });
  return account_display_name_;
}

std::int32_t CSid::pSid() {
  const auto address = reinterpret_cast<std::uintptr_t>(SidBuffer().data());
  // A 32-bit program's addresses all fit, the upper half as negative numbers.
  constexpr bool kFits = sizeof address <= sizeof(std::int32_t);
  if (!kFits && address > static_cast<std::uintptr_t>(std::numeric_limits<std::int32_t>::max())) {
    Raise(runtime_error::kOverflow);
  }
  return static_cast<std::int32_t>(address);
}

std::int32_t CSid::SidLength() {
  return static_cast<std::int32_t>(GetLengthSid(AsBytes(SidBuffer())));
}

const SidWords& CSid::SidBuffer() {
  if (sid_.empty()) sid_ = GetSidBufferFromText(sid_text_);
  return sid_;
}

void CSid::PutSidBuffer(SidWords words) {
  sid_ = std::move(words);
  sid_loaded_ = true;
}

void CSid::ComputeSidText() {
  Swallow([&] { sid_text_ = IsValid() ? SidToText(AsBytes(sid_)) : Text(); });
}

void CSid::LoadAccountInfo() {
  Swallow([&] {
    if (sid_text_.empty() && sid_.size() > 1) ComputeSidText();
    account_name_ = kAccountUnknown;
    account_unknown_ = true;
  });
}

void CSid::LoadAccountOnce() {
  // A SID of its own takes three words; what is shorter can't be looked up.
  if (account_loaded_ || sid_.size() <= 1) return;
  LoadAccountInfo();
  account_loaded_ = true;
}

}  // namespace veldmark
