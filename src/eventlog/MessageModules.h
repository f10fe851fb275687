#pragma once

#include <array>
#include <span>
#include <vector>

#include "automation/Text.h"
#include "collections/Collection.h"
#include "platform/operations/Messages.h"

/// The message files that an apartment keeps loaded. `Apartment::message_modules` names them by
/// handle; a handle may stay there when its file has been freed, and leads nowhere then.
namespace veldmark {

/// What a message's inserts "%1" to "%99" stand for. A format such as "%99!*.*s!" takes two more
/// behind its own.
struct MessageInsertArgs {
  std::array<const char16_t*, 99> fields{};
  std::array<const char16_t*, 2> behind{};
};

/// Points the fields at as many of the texts as there are fields and returns their number. The
/// texts must outlive the record's use.
std::int16_t FillMessageInserts(std::span<const Text> texts, MessageInsertArgs& inserts);

/// Loads a file as data, to stay until the last log ends. `HMODULE{0}` where that fails.
HMODULE LoadMessageFile(const Text& path);
/// Ends one load of a file before that.
void FreeMessageFile(HMODULE module) noexcept;

/// In characters.
inline constexpr std::size_t kLongestMessage = 65536;

/// A message of at most `room` characters, which stands until the next one is formatted; empty with
/// the thread's last error as `FormatMessageW` leaves it. Without `inserts` these are left in
/// place.
TextView FormatModuleMessage(HMODULE module, DWORD number, std::size_t room,
                             MessageInsertArgs* inserts);
/// The same of a message file. One that is no longer loaded has no messages: 1812.
TextView FormatFileMessage(HMODULE module, DWORD number, std::size_t room,
                           MessageInsertArgs* inserts);

/// Handles as the cache holds them, in decimal and joined by "|".
Text HandleText(HMODULE module);
std::vector<HMODULE> HandlesIn(TextView text);

/// Frees every message file and empties the cache, if exactly one event log is alive. Errors are
/// left in `Err`.
void ReleaseMessageModulesOfLastLog() noexcept;

}  // namespace veldmark
