#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CUser;

/// Users, found by display name.
class CUsers : public KeyedCollectionClass<CUsers, CUser>, Counted<Counter::kUsers> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CUser& user);

  /// Two users of one display name both stay, the second to be found by position alone. Nothing is
  /// not stored.
  Ref<CUser> Add(CUser* oUser);
};

}  // namespace veldmark
