#include "storage/CShares.h"

#include "collections/CollectionTable.h"
#include "storage/CShare.h"

namespace veldmark {

const Interface& CShares::Describe() {
  static const Interface table =
      CollectionTable<CShares>(u"CShares", u"The shares of a computer, found by name.")
          .Keyed(u"oShare");
  return table;
}

CollectionKey CShares::KeyOf(CShare& share) { return CollectionKey::Encoded(share.ShareName); }

}  // namespace veldmark
