#include "registry/CRegKeys.h"

#include "collections/CollectionTable.h"
#include "registry/CRegKey.h"

namespace veldmark {

const Interface& CRegKeys::Describe() {
  static const Interface table =
      CollectionTable<CRegKeys>(
          u"CRegKeys", u"Registry keys, found by their own name, the last part of the path.")
          .Keyed(u"oRegKey");
  return table;
}

CollectionKey CRegKeys::KeyOf(CRegKey& reg_key) { return CollectionKey::Encoded(reg_key.Name); }

Ref<CRegKey> CRegKeys::Add(Ref<CRegKey>& oRegKey) {
  return KeyedCollectionClass::Add(oRegKey.Get());
}

}  // namespace veldmark
