#pragma once

#include <cstdint>

#include "automation/Text.h"

namespace veldmark {

class CUser;

/// Writes to user accounts. Clients don't see it.
class CUpdate {
 public:
  /// Writes the user's fields, but for name and password, by `NetUserSetInfo` at level 1. True if
  /// the platform took them. What can't be fetched first goes out empty; never raises.
  bool SetUserInfo(CUser* user);
  /// Neither of these does anything: False.
  bool RenameUser(CUser* user, const Text& new_name);
  bool SetUserPriv(CUser* user, std::int32_t privilege);
};

}  // namespace veldmark
