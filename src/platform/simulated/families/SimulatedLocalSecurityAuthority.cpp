#include "platform/simulated/families/SimulatedLocalSecurityAuthority.h"

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/families/RecordBlock.h"
#include "platform/simulated/families/Statuses.h"

namespace veldmark::simulated {
namespace {

TextView ViewOf(const LSA_UNICODE_STRING* text) {
  if (text == nullptr || text->Buffer == nullptr) return {};
  return {text->Buffer, text->Length / sizeof(WCHAR)};
}

}  // namespace

NTSTATUS SimulatedLocalSecurityAuthority::LsaOpenPolicy(LSA_UNICODE_STRING* system_name,
                                                        LSA_OBJECT_ATTRIBUTES* attributes,
                                                        DWORD desired_access, HANDLE* policy) {
  const Text system(ViewOf(system_name));
  const Call call = session_.Begin("LsaOpenPolicy", system);
  if (const DWORD fault = call.fault()) return StatusOf(fault);
  if (attributes == nullptr || policy == nullptr) return kStatusInvalidParameter;
  *policy = nullptr;
  Computer* const computer = session_.estate.ReachServer(system.c_str());
  if (computer == nullptr) return kStatusServerUnavailable;
  constexpr DWORD kOpenToAll = kPolicyViewLocalInformation | kPolicyLookupNames | kReadControl;
  if ((desired_access & ~kOpenToAll) != 0 && !session_.estate.IsAdministrator(*computer)) {
    return kStatusAccessDenied;
  }
  const std::uintptr_t value = session_.NewHandle();
  policies_[value] = {computer, desired_access};
  session_.ledger.Opened(Resource::Policy, value, "LsaOpenPolicy", ToUtf8(system));
  *policy = HandleOf(value);
  return 0;
}

NTSTATUS SimulatedLocalSecurityAuthority::LsaEnumerateAccountsWithUserRight(
    HANDLE policy, LSA_UNICODE_STRING* right, void** buffer, DWORD* count) {
  constexpr std::string_view kName = "LsaEnumerateAccountsWithUserRight";
  const TextView name = ViewOf(right);
  const Call call = session_.Begin(kName, name);
  if (const DWORD fault = call.fault()) return StatusOf(fault);
  if (buffer == nullptr || count == nullptr) return kStatusInvalidParameter;
  *buffer = nullptr;
  *count = 0;
  const auto found = policies_.find(ValueOf(policy));
  if (found == policies_.end()) {
    session_.ledger.Misused(Resource::Policy, ValueOf(policy), kName);
    return kStatusInvalidHandle;
  }
  constexpr DWORD kNeeded = kPolicyViewLocalInformation | kPolicyLookupNames;
  const OpenPolicy& open = found->second;
  if ((open.access & kNeeded) != kNeeded || !session_.estate.IsAdministrator(*open.computer)) {
    return kStatusAccessDenied;
  }
  if (!IsUserRight(name)) return kStatusNoSuchPrivilege;
  using Bytes = std::vector<std::uint8_t>;
  const std::span<const Bytes> holders(open.computer->HoldersOf(name));
  if (holders.empty()) return kStatusNoMoreEntries;
  const auto fill = [](LSA_ENUMERATION_INFORMATION& record, const Bytes& sid, RecordBlock& block) {
    record.Sid = block.Put(sid.data(), sid.size());
  };
  const std::size_t size = LayOut<LSA_ENUMERATION_INFORMATION>(holders, fill, nullptr);
  *buffer = session_.AllocateAuthority(size, kName, ToUtf8(name));
  LayOut<LSA_ENUMERATION_INFORMATION>(holders, fill, static_cast<std::uint8_t*>(*buffer));
  *count = static_cast<DWORD>(holders.size());
  return 0;
}

DWORD SimulatedLocalSecurityAuthority::LsaNtStatusToWinError(NTSTATUS status) {
  const Call call = session_.BeginSafe("LsaNtStatusToWinError");
  if (status == 0) return 0;
  if ((Unsigned(status) & 0xFFFF0000) == kStatusOfErrorCode) return Unsigned(status) & 0xFFFF;
  switch (status) {
    case kStatusNoMoreEntries:
      return kErrorNoMoreItems;
    case kStatusInvalidHandle:
      return kErrorInvalidHandle;
    case kStatusInvalidParameter:
      return kErrorInvalidParameter;
    case kStatusAccessDenied:
      return kErrorAccessDenied;
    case kStatusNoSuchPrivilege:
      return kErrorNoSuchPrivilege;
    case kStatusServerUnavailable:
      return kErrorRpcServerUnavailable;
    default:
      return kErrorMrMidNotFound;
  }
}

NTSTATUS SimulatedLocalSecurityAuthority::LsaFreeMemory(void* buffer) {
  const Call call = session_.Begin("LsaFreeMemory");
  const DWORD fault = call.fault();
  if (buffer == nullptr) return StatusOf(fault);
  if (!session_.ledger.Closed(Resource::AuthorityMemory, ValueOf(buffer), "LsaFreeMemory")) {
    return kStatusInvalidParameter;
  }
  session_.authority_memory.erase(buffer);
  return StatusOf(fault);
}

NTSTATUS SimulatedLocalSecurityAuthority::LsaClose(HANDLE policy) {
  const Call call = session_.Begin("LsaClose");
  const DWORD fault = call.fault();
  if (!session_.ledger.Closed(Resource::Policy, ValueOf(policy), "LsaClose")) {
    return kStatusInvalidHandle;
  }
  policies_.erase(ValueOf(policy));
  return StatusOf(fault);
}

}  // namespace veldmark::simulated
