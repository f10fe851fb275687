#include "security/CSids.h"

#include "collections/CollectionTable.h"
#include "security/CSid.h"

namespace veldmark {

const Interface& CSids::Describe() {
  static const Interface table =
      CollectionTable<CSids>(u"CSids", u"Security identifiers, found by their text in any case.")
          .Plain(u"oSid");
  return table;
}

CollectionKey CSids::KeyOf(CSid& sid) { return CollectionKey::Plain(sid.SidText()); }

}  // namespace veldmark
