#include "network/CDomain.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CDomain::Describe() {
  static const Interface table =
      Declare<CDomain>(u"CDomain", u"A domain or workgroup.")
          .Stored<&CDomain::DomainName>(u"DomainName",
                                        u"Its name; nothing checks that there is such a domain.");
  return table;
}

}  // namespace veldmark
