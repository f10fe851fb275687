#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CGroup;

/// Groups. One that `Add` stored is found by position alone; look-ups by name find those of
/// `AddWithKey`.
class CGroups : public KeyedCollectionClass<CGroups, CGroup>, Counted<Counter::kGroups> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CGroup& group);

  /// The group itself, or the one that is in the list under its display name already, in any case.
  /// Nothing is not stored.
  Ref<CGroup> Add(CGroup* oGroup);
  /// Adds a group to be found under `key`, exactly so written; where that is taken, by position
  /// alone. Returns the argument. Nothing is not stored.
  Ref<CGroup> AddWithKey(CGroup* group, TextView key);
};

}  // namespace veldmark
