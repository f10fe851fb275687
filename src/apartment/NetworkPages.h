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

/// Walks an enumeration of the network functions page by page. `ask(buffer, entries_read,
/// total_entries, resume_handle)` asks for a page and returns the status; `take(record)` answers
/// whether to go on. Raises a status other than 0 and 234, as one of `source`. A page that leads nowhere, with nothing
/// in it or with no handle to go on from, is the last one too.
template <class Record, LastPage kLastPage, class ResumeHandle, class Ask, class Take>
void WalkNetworkPages(Ask&& ask, Take&& take, std::optional<Text> source = {}) {
  ResumeHandle resume_handle = 0;
  for (;;) {
    NetworkBuffer buffer(Apartment::Current().platform.network_management);
    DWORD entries_read = 0;
    DWORD total_entries = 0;
    const ResumeHandle asked_from = resume_handle;
    const DWORD status = ask(buffer.Receive(), &entries_read, &total_entries, &resume_handle);
    if (status != kErrorSuccess && status != kErrorMoreData) {
      RaisePlatformError(static_cast<std::int32_t>(status), std::move(source));
    }
    const std::span<const Record> records = RecordsIn<Record>(buffer.Get(), entries_read);
    for (const Record& record : records) {
      if (!take(record)) return;
    }
    if (kLastPage == LastPage::kByStatus && status != kErrorMoreData) return;
    if (resume_handle == 0 || (records.empty() && resume_handle == asked_from)) return;
  }
}

}  // namespace veldmark
