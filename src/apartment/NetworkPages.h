#pragma once

#include <optional>
#include <span>
#include <utility>

#include "apartment/Apartment.h"
#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"

namespace veldmark {

/// A text of a record; empty for a null pointer. `WidePtrToString` would ask the platform for the
/// length of each.
inline Text TextAt(const char16_t* wide) { return wide ? Text(wide) : Text(); }

/// The one record of a block. Raises 13 for a success without a block.
template <class Record>
const Record& RecordOf(const NetworkBuffer& buffer) {
  if (!buffer) RaisePlatformError(kErrorInvalidData);
  return RecordsIn<Record>(buffer.Get(), 1).front();
}

/// What tells that a page of an enumeration was the last one.
enum class LastPage {
  kByStatus,  ///< any status but 234
  kByHandle,  ///< a resume handle of 0
};

/// Walks an enumeration that hands out blocks of records and is resumed while there are more:
/// `ask(buffer, entries_read, total_entries, resume_handle)` calls the platform, and `each(record)`
/// answers whether to go on. Each block is freed before the next is asked for. Raises any status
/// but 0 and 234 as one of `source`, and 234 where the platform says that there is more but hands
/// out an empty page and leaves the resume handle where it was.
///
///     WalkNetworkPages<USER_INFO_0, DWORD>({}, [&](auto... page) {
///       return accounts.NetUserEnum(server, 0, 0, page...); }, [&](const USER_INFO_0& user) { …
///       });
template <class Record, class ResumeHandle, LastPage kLastPage = LastPage::kByStatus, class Ask,
          class Each>
void WalkNetworkPages(const std::optional<Text>& source, Ask&& ask, Each&& each) {
  ResumeHandle resume_handle = 0;
  for (;;) {
    const ResumeHandle before = resume_handle;
    NetworkBuffer buffer(Apartment::Current().platform.network_management);
    DWORD entries_read = 0;
    DWORD total_entries = 0;
    const DWORD status = ask(buffer.Receive(), &entries_read, &total_entries, &resume_handle);
    if (status != kErrorSuccess && status != kErrorMoreData) {
      RaisePlatformError(static_cast<std::int32_t>(status), source);
    }
    const std::span<const Record> records = RecordsIn<Record>(buffer.Get(), entries_read);
    for (const Record& record : records) {
      if (!each(record)) return;
    }
    const bool is_last =
        kLastPage == LastPage::kByStatus ? status != kErrorMoreData : resume_handle == 0;
    if (is_last) return;
    // A handle that was left alone is no end: records show that the platform goes on.
    const bool leads_nowhere = records.empty() && resume_handle == before;
    if (leads_nowhere) RaisePlatformError(kErrorMoreData, source);
  }
}

}  // namespace veldmark
