#include <algorithm>
#include <array>
#include <vector>

#include "accounts/AccountNames.h"
#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/LastError.h"
#include "network/ServerNames.h"
#include "platform/operations/ErrorCodes.h"
#include "security/AccountCache.h"
#include "security/BinarySid.h"
#include "security/CSid.h"
#include "security/WellKnownGroups.h"

namespace veldmark {
namespace {

// Units of a buffer for a name or domain. Fewer are declared to a server than to this computer.
constexpr DWORD kNameUnits = 511;
constexpr DWORD kServerNameUnits = 255;

/// A look-up's text as the library keeps it: cut at the first NUL, and once more where one is left.
Text NameFrom(const std::vector<char16_t>& buffer) {
  return TrimAtNul(TextView(buffer.data(), buffer.size()));
}

/// One `LookupAccountSidW`. On failure the name tells of an unknown account where the server can't
/// be reached (1722) or has none for the SID (1332), and the rest stays.
bool LookUpName(const SidWords& sid, const Text& server, DWORD units, Text& domain, Text& name,
                SidTypeEnum& sid_type, bool& account_unknown) {
  std::vector<char16_t> name_buffer(kNameUnits + 1);
  std::vector<char16_t> domain_buffer(kNameUnits + 1);
  DWORD name_size = units;
  DWORD domain_size = units;
  INT use = 0;
  if (!Apartment::Current().platform.security.LookupAccountSidW(
          server.c_str(), sid.data(), name_buffer.data(), &name_size, domain_buffer.data(),
          &domain_size, &use)) {
    const DWORD error = LastPlatformError();
    if (error == kErrorRpcServerUnavailable || error == kErrorNoneMapped) {
      name = kAccountUnknown;
      account_unknown = true;
    }
    return false;
  }
  sid_type = static_cast<SidTypeEnum>(static_cast<std::int16_t>(use));
  name = NameFrom(name_buffer);
  domain = NameFrom(domain_buffer);
  return true;
}

}  // namespace

Text CSupport::GetSid(const Text& server_name, Text& domain, const Text& account_name,
                      SidWords& sid, SidTypeEnum& sid_type, Ref<CSid>& object) {
  domain.clear();
  sid.clear();
  sid_type = {};
  object = nullptr;
  Text sid_text;
  Swallow([&] {
    Security& security = Apartment::Current().platform.security;
    std::int32_t no_sid = 0;
    char16_t no_domain[1] = {};
    DWORD sid_size = 0;
    DWORD domain_size = 0;
    INT use = 0;
    security.LookupAccountNameW(server_name.c_str(), account_name.c_str(), &no_sid, &sid_size,
                                no_domain, &domain_size, &use);
    SidWords words(sid_size / sizeof(std::int32_t));
    if (words.size() <= 1) return;
    std::vector<char16_t> domain_buffer(kNameUnits + 1);
    domain_size = kNameUnits;
    const BOOL found =
        security.LookupAccountNameW(server_name.c_str(), account_name.c_str(), words.data(),
                                    &sid_size, domain_buffer.data(), &domain_size, &use);
    domain = NameFrom(domain_buffer);
    if (!found) return;
    sid_type = static_cast<SidTypeEnum>(use);
    if (!IsValidSid(AsBytes(words))) return;
    object = Make<CSid>();
    object->PutSidBuffer(words);
    object->ComputeSidText();
    sid = std::move(words);
    sid_text = object->SidText();
    if (sid_type == SidTypeWellKnownGroup) {
      if (const auto group = FindWellKnownGroup(domain, account_name)) {
        object->SetWellKnownGroupType(group->WellKnownGroupType);
      }
    }
  });
  return sid_text;
}

void CSupport::GetAccount(const SidWords& sid, const Text& server_name, Text& domain, Text& name,
                          SidTypeEnum& sid_type, bool& account_unknown) {
  ReRaising([&] {
    if (!IsValidSid(AsBytes(sid))) RaisePlatformError(kErrorInvalidSid);
    const Text server = PlainServerName(server_name);
    if (LookUpName(sid, server, server.empty() ? kNameUnits : kServerNameUnits, domain, name,
                   sid_type, account_unknown)) {
      return;
    }
    const Text controller = PlainServerName(GetPDCName(GetDomainFromServer(server_name), Text()));
    LookUpName(sid, controller, kServerNameUnits, domain, name, sid_type, account_unknown);
  });
}

Ref<CSid> CSupport::InitializeSid(std::uint8_t authority,
                                  std::span<const std::int32_t> sub_authorities) {
  auto sid = Make<CSid>();
  Swallow([&] {
    std::array<std::int32_t, kMostBuiltSubAuthorities> values{};
    std::size_t count = 1;
    for (std::size_t index = 0; index < sub_authorities.size(); ++index) {
      if (index == values.size()) Raise(runtime_error::kSubscriptOutOfRange);
      values[index] = sub_authorities[index];
      if (values[index] != 0) count = index + 1;
    }
    sid->PutSidBuffer(BuildSid(authority, {values.data(), count}));
    sid->ComputeSidText();
  });
  return sid;
}

std::vector<std::int32_t> CSupport::GetDomainAuthorities(Text server_name) {
  return ReRaising([&] {
    if (server_name.empty()) server_name = ComputerName();
    server_name = PlainServerName(server_name);
    // A domain's identity is read off the machine account that the server has in it.
    const auto sid = Make<CSid>();
    sid->SetResidesOnServer(server_name);
    sid->ResolveFromAccount(GetDomainFromServer(server_name), server_name + u"$");
    const SidWords& words = sid->SidBuffer();
    return std::vector<std::int32_t>(words.begin() + 2, words.end() - 1);
  });
}

}  // namespace veldmark
