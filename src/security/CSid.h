#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "security/BinarySid.h"
#include "security/SidType.h"
#include "security/WellKnownGroupType.h"

namespace veldmark {

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
  Text AccountServer() { return Loaded(m_sAccountServer); }
  Text AccountDomain() { return Loaded(m_sAccountDomain); }
  Text AccountName() { return Loaded(m_sAccountName); }
  /// 0 before the account was looked up. Looks nothing up.
  SidTypeEnum SIDType() const { return m_eSidType; }
  /// The user or group behind the SID; a user of unknown account where it has none.
  Ref<Object> GetAccount();
  /// "DOMAIN\name", or "(Account Unknown)". Never raises.
  const Text& AccountDisplayName();
  /// The address of the binary form in this process. Raises 6 in a 64-bit program where it has more
  /// than 31 bits, and
  /// the error of the text where there is nothing to make the binary form from.
  std::int32_t pSid();
  /// The length of the binary form in bytes; raises as `pSid` does, and 1337 where the form is cut.
  std::int32_t SidLength();
  WellKnownGroupTypeEnum WellKnownGroupType() const { return m_eWellKnownGroupType; }
  /// True once a look-up has found no account.
  bool AccountUnknown() const { return m_bAccountUnknown; }
  /// True for a group of the domain BUILTIN.
  bool IsBuiltin() const { return m_bIsBuiltin; }

  /// The binary form, made from the text where it has to be. Raises the error of the text.
  const SidWords& SidBuffer();
  void PutSidBuffer(SidWords words);
  /// Makes the text from the binary form; empty where that isn't sound.
  void ComputeSidText();
  void SetSidText(Text sid_text) { m_sSidText = std::move(sid_text); }
  /// The server to ask about the account; empty for this computer.
  const Text& ResidesOnServer() const { return m_sResidesOnServer; }
  void SetResidesOnServer(Text server) { m_sResidesOnServer = std::move(server); }

 private:
  /// Finds no account: no operation that looks one up is on the platform's list yet.
  void LoadAccountInfo();
  void LoadAccountOnce();
  const Text& Loaded(const Text& field) {
    LoadAccountOnce();
    return field;
  }

  SidWords m_alSid;
  Text m_sSidText;
  Text m_sAccountServer;
  Text m_sAccountDomain;
  Text m_sAccountName;
  Text m_sAccountDisplayName;
  Text m_sResidesOnServer;
  SidTypeEnum m_eSidType{};
  WellKnownGroupTypeEnum m_eWellKnownGroupType{-1};
  bool m_bAccountUnknown = false;
  bool m_bIsBuiltin = false;
  bool m_bAccountLoaded = false;
  bool m_bSidLoaded = false;
};

}  // namespace veldmark
