#include <type_traits>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "network/CServer.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"
#include "storage/CShare.h"
#include "storage/CShares.h"

namespace veldmark {
namespace {

constexpr DWORD kFullLevel = 2;
constexpr DWORD kPoorLevel = 1;

/// The texts and numbers of a record; the poor one leaves the rest as it is.
template <class Record>
Ref<CShare> ShareFrom(const Record& record) {
  auto share = Make<CShare>();
  if constexpr (std::is_same_v<Record, SHARE_INFO_2>) {
    share->ShareName = WidePtrToString(record.shi2_netname, false);
    share->ShareType = static_cast<ShareTypeEnum>(record.shi2_type);
    share->Comment = WidePtrToString(record.shi2_remark, false);
    share->ShareAccess = static_cast<ShareAccessEnum>(record.shi2_permissions);
    share->MaxUses = static_cast<std::int32_t>(record.shi2_max_uses);
    share->CurrentUses = static_cast<std::int32_t>(record.shi2_current_uses);
    share->SetSharePath(WidePtrToString(record.shi2_path, false));
    share->Password = WidePtrToString(record.shi2_passwd, false);
  } else {
    share->ShareName = WidePtrToString(record.shi1_netname, false);
    share->ShareType = static_cast<ShareTypeEnum>(record.shi1_type);
    share->Comment = WidePtrToString(record.shi1_remark, false);
  }
  return share;
}

template <class Record>
void AddShares(CShares& shares, CServer& server, CStatus& status, const BYTE* block, DWORD count) {
  for (const Record& record : RecordsIn<Record>(block, count)) {
    const Ref<CShare> share = ShareFrom(record);
    share->ServerName = server.ServerName;
    shares.Add(share.Get());
    status.RaiseStatus([&] { return u"Retrieved Share " + share->ShareName; });
  }
}

}  // namespace

Ref<CShares> CSupport::GetShares(CServer& server) {
  return ReRaising([&] {
    const Ref<CServer> walked(&server);
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus([&] { return u"Retrieving Shares for Server " + server.ServerName; });
    auto shares = Make<CShares>();
    NetworkManagement& network = Apartment::Current().platform.network_management;
    // No "\\" is added, and this computer is null.
    const Text name = server.ServerName;
    const LPCWSTR server_name = name.empty() ? nullptr : name.c_str();
    DWORD level = kFullLevel;
    DWORD resume = 0;
    for (DWORD code = kErrorMoreData; code == kErrorMoreData;) {
      NetworkBuffer buffer(network);
      DWORD read = 0;
      DWORD total = 0;
      const DWORD asked_from = resume;
      const auto ask = [&] {
        return network.NetShareEnum(server_name, level, buffer.Receive(), kMaxPreferredLength,
                                    &read, &total, &resume);
      };
      code = ask();
      if (level == kFullLevel && code == kErrorAccessDenied) {
        // Who may not see everything is shown the names, from here to the end of the walk.
        level = kPoorLevel;
        code = ask();
      }
      const bool leads_nowhere = code == kErrorMoreData && read == 0 && resume == asked_from;
      if ((code != 0 && code != kErrorMoreData) || leads_nowhere) {
        RaisePlatformError(static_cast<std::int32_t>(code));
      }
      if (level == kFullLevel) {
        AddShares<SHARE_INFO_2>(*shares, server, *status, buffer.Get(), read);
      } else {
        AddShares<SHARE_INFO_1>(*shares, server, *status, buffer.Get(), read);
      }
    }
    return shares;
  });
}

}  // namespace veldmark
