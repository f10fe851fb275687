#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "security/BinarySid.h"
#include "security/SidType.h"
#include "security/WellKnownGroupType.h"

namespace veldmark {

class CGroup;
class CUser;
enum UserTypeEnum : std::int32_t;

/// A security identifier: its binary form, its text, and what is known of the account behind it.
/// Binary form and text are made from each other when they are asked for, the account is looked up
/// then.
class CSid : public Exported<CSid>, Counted<Counter::kSid> {
 public:
  static const Interface& Describe();

  /// True if both have the same binary form. False where one has none; never raises.
  bool IsEqual(Ref<CSid>& oSid);
  /// True for a sound binary form; never raises.
  bool IsValid();
  const Text& SidText();
  /// Empty: nothing tells an account's server.
  Text AccountServer() {
    LoadAccountOnce();
    return {};
  }
  Text AccountDomain() { return Loaded(account_domain_); }
  Text AccountName() { return Loaded(account_name_); }
  /// 0 before the account was looked up. Looks nothing up.
  SidTypeEnum SIDType() const { return sid_type_; }
  /// The user or group behind the SID: a new object, but for a well-known group the one of the
  /// apartment's table, which grows where it lacks the group. A user of unknown account where there
  /// is none, Nothing for a domain or computer. Raises where the controller of the account's domain
  /// can't be told.
  Ref<Object> GetAccount();
  /// "DOMAIN\name", or "(Account Unknown)". Never raises.
  Text AccountDisplayName();
  /// The address of the binary form in this process. Raises 6 in a 64-bit program where it has more
  /// than 31 bits, and the error of the text where there is nothing to make the binary form from.
  std::int32_t pSid();
  /// The length of the binary form in bytes; raises as `pSid` does, and 1337 where the form is cut.
  std::int32_t SidLength();
  /// -1 for none; found by the SID once the account was looked up. Never raises.
  WellKnownGroupTypeEnum WellKnownGroupType();
  void SetWellKnownGroupType(WellKnownGroupTypeEnum type) { well_known_group_type_ = type; }
  /// True once a look-up has found no account.
  bool AccountUnknown() const { return account_unknown_; }
  /// True for a group of the domain BUILTIN.
  bool IsBuiltin() const { return is_builtin_; }

  /// Makes this the SID of an account, asked of the server that it resides on, and returns its
  /// text, which is empty where there is no such account. An empty argument means what the object
  /// holds already. Never raises.
  Text ResolveFromAccount(Text domain, Text name);
  /// Looks the account up, first in the apartment's caches. What isn't found out stays empty, or
  /// the name tells of an unknown account. Never raises.
  void LoadAccountInfo();

  /// The binary form, made from the text where it has to be. Raises the error of the text.
  const SidWords& SidBuffer();
  void PutSidBuffer(SidWords words);
  /// Makes the text from the binary form; empty where that isn't sound.
  void ComputeSidText();
  void SetSidText(Text sid_text) { sid_text_ = std::move(sid_text); }
  /// The server to ask about the account; empty for this computer.
  const Text& ResidesOnServer() const { return resides_on_server_; }
  void SetResidesOnServer(Text server) { resides_on_server_ = std::move(server); }

 private:
  void LoadAccountOnce();
  const Text& Loaded(const Text& field) {
    LoadAccountOnce();
    return field;
  }
  Ref<Object> MakeUser();
  Ref<Object> MakeGlobalGroup();
  Ref<Object> MakeAlias();
  Ref<Object> MakeWellKnownGroup();
  Ref<Object> MakeDeletedAccount();
  Ref<Object> MakeUnknownUser(UserTypeEnum type);
  /// What every account ends with before it is handed out.
  Ref<Object> Finished(CUser& user) const;
  Ref<Object> Finished(CGroup& group) const;
  bool ResidesOnItsDomain() const;
  void LookAccountUp();

  SidWords sid_;
  Text sid_text_;
  Text account_domain_;
  Text account_name_;
  Text account_display_name_;
  Text resides_on_server_;
  SidTypeEnum sid_type_{};
  WellKnownGroupTypeEnum well_known_group_type_ = kNoWellKnownGroup;
  bool account_unknown_ = false;
  bool is_builtin_ = false;
  bool account_loaded_ = false;
};

}  // namespace veldmark
