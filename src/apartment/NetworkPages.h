#pragma once

#include <optional>
#include <utility>

#include "apartment/Apartment.h"
#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"

namespace veldmark {

/// Walks an enumeration that hands out blocks of records and is resumed while there are more:
/// `ask(buffer, read, total, resume_handle)` calls the platform, and `each(record)` answers whether
/// to go on. Each block is freed before the next is asked for. Raises any status but 0 and 234 as
/// one of `source`, and 234 where the platform has nothing to show for it.
///
///     WalkNetworkPages<USER_INFO_0, DWORD>({}, [&](auto... page) {
///       return accounts.NetUserEnum(server, 0, 0, page...); }, [&](const USER_INFO_0& user) { …
///       });
template <class Record, class ResumeHandle, class Ask, class Each>
void WalkNetworkPages(std::optional<Text> source, Ask&& ask, Each&& each) {
  ResumeHandle resume_handle = 0;
  DWORD status = kErrorMoreData;
  while (status == kErrorMoreData) {
    const ResumeHandle before = resume_handle;
    NetworkBuffer buffer(Apartment::Current().platform.network_management);
    DWORD read = 0;
    DWORD total = 0;
    status = ask(buffer.Receive(), &read, &total, &resume_handle);
    const bool stands_still = status == kErrorMoreData && read == 0 && resume_handle == before;
    if ((status != kErrorSuccess && status != kErrorMoreData) || stands_still) {
      RaisePlatformError(static_cast<std::int32_t>(status), std::move(source));
    }
    for (const Record& record : RecordsIn<Record>(buffer.Get(), read)) {
      if (!each(record)) return;
    }
  }
}

}  // namespace veldmark
