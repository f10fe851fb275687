#include "security/CAces.h"

#include "collections/CollectionTable.h"
#include "security/CAce.h"

namespace veldmark {

const Interface& CAces::Describe() {
  static const Interface table =
      CollectionTable<CAces>(u"CAces", u"The entries of an access control list, in its order.")
          .Plain(u"oAce");
  return table;
}

}  // namespace veldmark
