#include "security/CSid.h"

#include <limits>

#include "accounts/AccountHome.h"
#include "accounts/AccountNames.h"
#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "network/CServer.h"
#include "network/ServerNames.h"
#include "platform/operations/ErrorCodes.h"
#include "security/AccountCache.h"
#include "security/WellKnownGroups.h"

namespace veldmark {
namespace {

constexpr TextView kDeletedAccount = u"(Deleted Account)";
constexpr TextView kAccountInvalid = u"(Account Invalid)";

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
  if (sid_text_.empty() && !sid_.empty()) ComputeSidText();
  return sid_text_;
}

Ref<Object> CSid::GetAccount() {
  // A listener of the look-up's status may let go of the SID.
  const Ref<CSid> keep_alive(this);
  LoadAccountOnce();
  if (sid_type_ == 0) {
    account_name_.clear();
    account_domain_.clear();
    LoadAccountInfo();
  }
  switch (static_cast<std::int32_t>(sid_type_)) {
    case 0:
    case SidTypeUnknown:
      if (account_name_.empty()) account_name_ = kAccountUnknown;
      return MakeUnknownUser(UT_AccountUnknown);
    case SidTypeUser:
      return MakeUser();
    case SidTypeGroup:
      return MakeGlobalGroup();
    case SidTypeAlias:
      return MakeAlias();
    case SidTypeWellKnownGroup:
      return MakeWellKnownGroup();
    case SidTypeDeletedAccount:
      return MakeDeletedAccount();
    case SidTypeInvalid:
      account_name_ = kAccountInvalid;
      return MakeUnknownUser(UT_GlobalUser);
    default:
      return nullptr;
  }
}

Text CSid::AccountDisplayName() {
  const Ref<CSid> keep_alive(this);
  if (!account_display_name_.empty()) return account_display_name_;
  Swallow([&] {
    LoadAccountOnce();
    Ref<Object> account;
    Swallow([&] { account = GetAccount(); });
    if (!account) {
      account_display_name_ = kAccountUnknown;
      account_unknown_ = true;
    } else if (account_display_name_.empty()) {
      if (auto* const user = dynamic_cast<CUser*>(account.Get())) {
        account_display_name_ = user->AccountDisplayName();
      } else if (auto* const group = dynamic_cast<CGroup*>(account.Get())) {
        account_display_name_ = group->AccountDisplayName();
      }
    }
  });
  return account_display_name_;
}

WellKnownGroupTypeEnum CSid::WellKnownGroupType() {
  if (well_known_group_type_ != kNoWellKnownGroup || sid_type_ != SidTypeWellKnownGroup) {
    return well_known_group_type_;
  }
  Swallow([&] {
    const Ref<CGroups> groups = Apartment::Current().well_known_groups;
    if (!groups) return;
    for (std::int32_t index = 1; index <= groups->Count(); ++index) {
      const Ref<CGroup> group = groups->ItemByIndex(index);
      if (group->GetSid()->SidText() != sid_text_) continue;
      well_known_group_type_ = group->WellKnownGroupType;
      return;
    }
  });
  return well_known_group_type_;
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

void CSid::PutSidBuffer(SidWords words) { sid_ = std::move(words); }

void CSid::ComputeSidText() {
  Swallow([&] { sid_text_ = IsValid() ? SidToText(AsBytes(sid_)) : Text(); });
}

Text CSid::ResolveFromAccount(Text domain, Text name) {
  Swallow([&] {
    (domain.empty() ? domain : account_domain_) = domain.empty() ? account_domain_ : domain;
    (name.empty() ? name : account_name_) = name.empty() ? account_name_ : name;
    Account account{sid_text_, domain, name, sid_type_};
    if (FindCachedAccount(account, resides_on_server_)) {
      sid_text_ = account.sid_text;
      sid_type_ = account.sid_type;
      return;
    }
    SidWords words;
    Ref<CSid> found;
    sid_text_ = Engine().GetSid(resides_on_server_, domain, name, words, sid_type_, found);
    sid_ = std::move(words);
    if (Text trimmed = TrimAtNulRight(domain); !trimmed.empty()) account_domain_ = trimmed;
    if (Text trimmed = TrimAtNulRight(name); !trimmed.empty()) account_name_ = trimmed;
    CacheAccount({sid_text_, account_domain_, account_name_, sid_type_}, resides_on_server_);
  });
  return sid_text_;
}

void CSid::LoadAccountInfo() {
  Swallow([&] {
    Account account{SidText(), {}, {}, sid_type_};
    if (!sid_text_.empty() && account_domain_.empty() && account_name_.empty() &&
        FindCachedAccount(account, resides_on_server_)) {
      account_domain_ = account.domain;
      account_name_ = account.name;
      sid_type_ = account.sid_type;
    }
    if (account.domain.empty() && account.name.empty()) LookAccountUp();
  });
  account_loaded_ = true;
}

void CSid::LookAccountUp() {
  Text domain;
  Text name;
  bool unknown = false;
  const bool asked = Swallow(
      [&] { Engine().GetAccount(sid_, resides_on_server_, domain, name, sid_type_, unknown); });
  if (!asked && Err().Number() == static_cast<std::int32_t>(kErrorNoneMapped)) {
    name = kAccountUnknown;
    unknown = true;
  }
  account_unknown_ = unknown;
  if (!domain.empty()) account_domain_ = domain;
  if (!name.empty()) account_name_ = name;
  if (sid_type_ == SidTypeWellKnownGroup) {
    if (const auto group = FindWellKnownGroup(domain, name)) {
      well_known_group_type_ = group->WellKnownGroupType;
    }
  }
  CacheAccount({sid_text_, account_domain_, account_name_, sid_type_}, resides_on_server_);
}

/// The account's domain is the very server that the SID resides on: the account is that machine's.
bool CSid::ResidesOnItsDomain() const {
  return resides_on_server_ == account_domain_ ||
         resides_on_server_ == Text(kServerNameStart) + account_domain_;
}

Ref<Object> CSid::MakeUnknownUser(UserTypeEnum type) {
  const auto user = Make<CUser>();
  user->UserType = type;
  user->UserName = account_name_;
  user->SetDomainName(account_domain_);
  return Finished(*user);
}

Ref<Object> CSid::MakeUser() {
  const auto user = Make<CUser>();
  user->UserName = account_name_;
  const auto make_local = [&] {
    user->UserType = UT_LocalUser;
    user->SetDomainName(Text());
    user->SetServerName(PlainServerName(account_domain_));
  };
  if (account_domain_.empty() || ResidesOnItsDomain()) {
    make_local();
  } else {
    user->UserType = UT_GlobalUser;
    user->SetDomainName(account_domain_);
    const bool has_controller = Swallow([&] {
      user->SetServerName(PlainServerName(Engine().GetPDCName(account_domain_, Text())));
    });
    if (!has_controller) {
      Err().Clear();
      make_local();
    }
  }
  return Finished(*user);
}

Ref<Object> CSid::MakeGlobalGroup() {
  const auto group = Make<CGroup>();
  group->GroupName = account_name_;
  group->GroupType = GT_GlobalGroup;
  group->DomainName = account_domain_;
  group->ServerName = PlainServerName(Engine().GetPDCName(account_domain_, Text()));
  return Finished(*group);
}

Ref<Object> CSid::MakeAlias() {
  // What is as long as this has a domain's numbers in it; the builtin aliases are shorter.
  constexpr std::int32_t kShortestDomainAlias = 28;
  const auto group = Make<CGroup>();
  group->GroupName = account_name_;
  group->GroupType = GT_LocalGroup;
  if (SidLength() >= kShortestDomainAlias) {
    if (resides_on_server_ == account_domain_) {
      group->ServerName = account_domain_;
    } else {
      group->DomainName = account_domain_;
      group->ServerName = PlainServerName(Engine().GetPDCName(account_domain_, Text()));
    }
    return Finished(*group);
  }
  is_builtin_ = true;
  if (resides_on_server_.empty()) {
    group->DomainName = account_domain_;
    return Finished(*group);
  }
  const Ref<CServer> server = Engine().GetServer(resides_on_server_, Text());
  if (AccountHomeOf(*server).is_controller) {
    group->DomainName = server->DomainName;
    group->ServerName = server->ServerName;
  } else {
    group->ServerName = resides_on_server_;
  }
  return Finished(*group);
}

Ref<Object> CSid::MakeWellKnownGroup() {
  Ref<CGroup> group = FindWellKnownGroup(account_domain_, account_name_);
  if (!group) {
    group = Make<CGroup>();
    group->DomainName = account_domain_;
    group->GroupName = account_name_;
    group->GroupType = GT_WellKnownGroup;
    if (const Ref<CGroups> groups = Apartment::Current().well_known_groups) {
      groups->Add(group.Get());
    }
  }
  return Finished(*group);
}

Ref<Object> CSid::MakeDeletedAccount() {
  account_name_ = kDeletedAccount;
  const auto user = Make<CUser>();
  user->UserName = account_name_;
  if (account_domain_.empty() || account_domain_ == u"BUILTIN") {
    is_builtin_ = true;
  } else {
    user->UserType = UT_GlobalUser;
    user->SetDomainName(account_domain_);
    account_display_name_ = QualifiedName(account_domain_, account_name_);
  }
  return Finished(*user);
}

Ref<Object> CSid::Finished(CUser& user) const {
  if (account_unknown_) user.UserType = UT_AccountUnknown;
  user.SetPopulated(false);
  return Ref<Object>(&user);
}

Ref<Object> CSid::Finished(CGroup& group) const {
  if (account_unknown_) group.GroupType = GT_AccountUnknown;
  group.SetPopulated(false);
  return Ref<Object>(&group);
}

void CSid::LoadAccountOnce() {
  // A SID of its own takes three words; what is shorter can't be looked up.
  if (!account_loaded_ && sid_.size() > 1) LoadAccountInfo();
}

}  // namespace veldmark
