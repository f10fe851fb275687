#include "accounts/CUpdate.h"

#include "accounts/CUser.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "platform/operations/AccountManagement.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr DWORD kUserInfoLevel = 1;

}  // namespace

bool CUpdate::SetUserInfo(CUser* user) {
  Text home_dir;
  Text comment;
  Text script_path;
  USER_INFO_1 record{};
  const auto statement = [&](auto&& read) {
    Swallow([&] {
      if (!user) Raise(runtime_error::kObjectNotSet);
      read();
    });
  };
  statement([&] { record.usri1_password_age = static_cast<DWORD>(user->PasswordAge()); });
  statement([&] { record.usri1_priv = static_cast<DWORD>(user->Privilege()); });
  statement([&] { home_dir = user->HomeDir(); });
  statement([&] { comment = user->Comment(); });
  statement([&] { record.usri1_flags = static_cast<DWORD>(user->Flags()); });
  statement([&] { script_path = user->ScriptPath(); });
  record.usri1_home_dir = home_dir.data();
  record.usri1_comment = comment.data();
  record.usri1_script_path = script_path.data();
  bool written = false;
  statement([&] {
    const Variant server = ApiServerName(user->ServerName());
    const Variant name = ApiStringBuffer(user->UserName);
    DWORD parameter_error = 0;
    written = Apartment::Current().platform.accounts.NetUserSetInfo(
                  BufferText(server), BufferText(name), kUserInfoLevel,
                  reinterpret_cast<const BYTE*>(&record), &parameter_error) == kErrorSuccess;
  });
  return written;
}

bool CUpdate::RenameUser(CUser*, const Text&) { return false; }

bool CUpdate::SetUserPriv(CUser*, std::int32_t) { return false; }

}  // namespace veldmark
