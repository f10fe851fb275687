#include "network/CDomains.h"

#include "collections/CollectionTable.h"
#include "network/CDomain.h"

namespace veldmark {

const Interface& CDomains::Describe() {
  static const Interface table =
      CollectionTable<CDomains>(u"CDomains", u"Domains, found by name.").Keyed(u"oDomain");
  return table;
}

CollectionKey CDomains::KeyOf(CDomain& domain) { return CollectionKey::Encoded(domain.DomainName); }

}  // namespace veldmark
