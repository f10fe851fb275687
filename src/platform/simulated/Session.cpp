#include "platform/simulated/Session.h"

#include "platform/operations/LastError.h"

namespace veldmark::simulated {

DWORD Session::Begin(std::string_view operation, TextView argument) {
  BeginSafe(operation, argument);
  return faults.Next(operation);
}

void Session::BeginSafe(std::string_view operation, TextView argument) {
  SetLastPlatformError(0);
  journal.Record(operation, ToUtf8(argument));
}

BOOL Fail(DWORD code) {
  SetLastPlatformError(code);
  return 0;
}

TextView ViewOf(const char16_t* text) { return text == nullptr ? TextView() : TextView(text); }

}  // namespace veldmark::simulated
