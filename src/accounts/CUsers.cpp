#include "accounts/CUsers.h"

#include "accounts/CUser.h"
#include "collections/CollectionTable.h"

namespace veldmark {

const Interface& CUsers::Describe() {
  static const Interface table =
      CollectionTable<CUsers>(u"CUsers", u"Users, found by display name.")
          .Keyed(u"oUser",
                 u"Appends one and returns it. The second of a name is found by position alone.");
  return table;
}

CollectionKey CUsers::KeyOf(CUser& user) {
  return CollectionKey::Encoded(user.AccountDisplayName());
}

Ref<CUser> CUsers::Add(CUser* oUser) {
  if (!oUser) return nullptr;
  if (!Store(oUser) && Err().Number() == runtime_error::kKeyAlreadyPresent) {
    Err().Clear();
    StoreAs(*oUser, {});
  }
  return oUser;
}

}  // namespace veldmark
