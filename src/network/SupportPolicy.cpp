#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "collections/Deliver.h"
#include "network/CServerAccountPolicy.h"
#include "network/ServerNames.h"
#include "security/CSid.h"
#include "security/CSids.h"

namespace veldmark {
namespace {

constexpr DWORD kPasswordLevel = 0;
constexpr DWORD kLockoutLevel = 3;

/// The record of a level of a server's policy. Raises the platform's status.
template <class Record>
Record PolicyRecord(const Text& system_name, DWORD level) {
  const Platform& platform = Apartment::Current().platform;
  NetworkBuffer buffer(platform.network_management);
  const DWORD status =
      platform.accounts.NetUserModalsGet(system_name.c_str(), level, buffer.Receive());
  if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
  return RecordOf<Record>(buffer);
}

LocalSecurityAuthority& Authority() { return Apartment::Current().platform.authority; }

[[noreturn]] void RaiseStatusAsError(NTSTATUS status) {
  RaisePlatformError(static_cast<std::int32_t>(Authority().LsaNtStatusToWinError(status)));
}

void Check(NTSTATUS status) {
  if (status != 0) RaiseStatusAsError(status);
}

}  // namespace

Ref<CServerAccountPolicy> CSupport::GetAccountPolicyInformation(const Text& server_name) {
  return ReRaising([&] {
    StatusObject().RaiseStatus(
        [&] { return u"Retrieving Account Policy Information for Server " + server_name; });
    const Text system_name = Text(kServerNameStart) + server_name;
    auto policy = Make<CServerAccountPolicy>();
    policy->SetPassword(PolicyRecord<USER_MODALS_INFO_0>(system_name, kPasswordLevel));
    policy->SetLockout(PolicyRecord<USER_MODALS_INFO_3>(system_name, kLockoutLevel));
    return policy;
  });
}

Ref<CSids> CSupport::GetAccountsWithUserRight(const Text& server_name, const Text& user_right,
                                              bool async) {
  return ReRaising([&] {
    auto sids = Make<CSids>();
    LocalSecurityAuthority& authority = Authority();
    LSA_UNICODE_STRING system{};
    ByteArray system_bytes;
    InitLsaString(system, Text(kServerNameStart) + server_name, system_bytes);
    LSA_OBJECT_ATTRIBUTES attributes{};
    Policy policy(authority);
    Check(authority.LsaOpenPolicy(
        &system, &attributes, kPolicyViewLocalInformation | kPolicyLookupNames, policy.Receive()));

    LSA_UNICODE_STRING right{};
    ByteArray right_bytes;
    InitLsaString(right, user_right, right_bytes);
    AuthorityMemory buffer(authority);
    DWORD count = 0;
    const NTSTATUS status =
        authority.LsaEnumerateAccountsWithUserRight(policy.Get(), &right, buffer.Receive(), &count);
    if (status != 0) {
      const DWORD error = authority.LsaNtStatusToWinError(status);
      if (error != kErrorNoMoreItems) RaisePlatformError(static_cast<std::int32_t>(error));
      count = 0;
    }
    for (const auto& record : RecordsIn<LSA_ENUMERATION_INFORMATION>(buffer.Get(), count)) {
      const Bytes bytes = SidBytesAt(record.Sid);
      if (!IsValidSid(bytes)) continue;
      const auto sid = Make<CSid>();
      sid->SetResidesOnServer(server_name);
      sid->PutSidBuffer(CopySid(bytes));
      if (!Deliver(*this, sids, sid, async)) break;
    }
    if (buffer) Check(authority.LsaFreeMemory(buffer.Release()));
    Check(authority.LsaClose(policy.Release()));
    return sids;
  });
}

}  // namespace veldmark
