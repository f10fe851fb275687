#include <array>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

[[noreturn]] void RaiseLastError(TextView mark) {
  const std::int32_t error = Err().LastDllError();
  Raise(error, SourceOf(u"CSupport"), GetAPIErrorText(error).append(mark));
}

}  // namespace

bool CSupport::SetPrivilegesInAccessToken(const Text& system_name, const Text& privilege_name,
                                          bool enable) {
  return ReRaising([&] {
    const Platform& platform = Apartment::Current().platform;
    Security& security = platform.security;
    const HANDLE process = security.GetCurrentProcess();
    if (!process) RaiseLastError(u"");
    FileHandle token(platform.files);
    if (!security.OpenProcessToken(process, kTokenAdjustPrivileges | kTokenQuery,
                                   token.Receive())) {
      RaiseLastError(u" (OPT)");
    }
    // A privilege that isn't found has the number 0, which no token holds.
    TOKEN_PRIVILEGES wanted{.PrivilegeCount = 1, .Privileges = {}};
    security.LookupPrivilegeValueW(system_name.c_str(), privilege_name.c_str(),
                                   &wanted.Privileges[0].Luid);
    Err().Clear();
    wanted.Privileges[0].Attributes = enable ? kSePrivilegeEnabled : 0;
    constexpr DWORD kStateSize = 28;
    std::array<TOKEN_PRIVILEGES, 2> previous;
    static_assert(sizeof previous >= kStateSize);
    DWORD previous_size = 0;
    if (!security.AdjustTokenPrivileges(token.Get(), 0, &wanted, kStateSize, previous.data(),
                                        &previous_size)) {
      RaiseLastError(u" (ATP)");
    }
    return true;
  });
}

}  // namespace veldmark
