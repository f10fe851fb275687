#include "registry/CRegValues.h"

#include "collections/CollectionTable.h"
#include "registry/CRegValue.h"

namespace veldmark {

const Interface& CRegValues::Describe() {
  static const Interface table =
      CollectionTable<CRegValues>(u"CRegValues", u"The values of a registry key, found by name.")
          .Keyed(u"oRegValue");
  return table;
}

CollectionKey CRegValues::KeyOf(CRegValue& reg_value) {
  return CollectionKey::Encoded(reg_value.Name);
}

Ref<CRegValue> CRegValues::Add(Ref<CRegValue>& oRegValue) {
  return KeyedCollectionClass::Add(oRegValue.Get());
}

}  // namespace veldmark
