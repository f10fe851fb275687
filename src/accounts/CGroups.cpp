#include "accounts/CGroups.h"

#include "accounts/CGroup.h"
#include "automation/CaseMapping.h"
#include "collections/CollectionTable.h"

namespace veldmark {

const Interface& CGroups::Describe() {
  static const Interface table =
      CollectionTable<CGroups>(u"CGroups",
                               u"Groups. Names find those that the library stored under a name.")
          .Add(u"oGroup", u"Appends one and returns it, or the one that has its name already.")
          .Remark(u"What it appends is found by position alone, never by name.")
          .Item()
          .Count()
          .Remove()
          .NewEnum()
          .ItemByKey()
          .ItemByIndex();
  return table;
}

// The names that `Item` looks for are encoded, and so never meet this key.
CollectionKey CGroups::KeyOf(CGroup& group) {
  return CollectionKey::Plain(ToUpper(group.AccountDisplayName()));
}

Ref<CGroup> CGroups::Add(CGroup* oGroup) {
  if (!oGroup) return nullptr;
  Ref<CGroup> stored = oGroup;
  if (!Store(oGroup) && Err().Number() == runtime_error::kKeyAlreadyPresent) {
    Swallow([&] { stored = ElementIn(items_->Item(KeyOf(*oGroup))); });
  }
  return stored;
}

Ref<CGroup> CGroups::AddWithKey(CGroup* group, TextView key) {
  if (!group) return nullptr;
  if (!StoreAs(*group, CollectionKey::Encoded(key)) &&
      Err().Number() == runtime_error::kKeyAlreadyPresent) {
    StoreAs(*group, {});
  }
  return group;
}

}  // namespace veldmark
