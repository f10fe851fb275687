#include "services/CServices.h"

#include "collections/CollectionTable.h"
#include "services/CService.h"

namespace veldmark {

const Interface& CServices::Describe() {
  static const Interface table =
      CollectionTable<CServices>(u"CServices", u"Services, found by their short name.")
          .Keyed(u"oService");
  return table;
}

CollectionKey CServices::KeyOf(CService& service) {
  return CollectionKey::Encoded(service.ServiceName);
}

}  // namespace veldmark
