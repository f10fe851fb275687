#include "security/CSid.h"

#include "platform/automation/Declare.h"

namespace veldmark {

const Interface& CSid::Describe() {
  static const Interface table =
      Declare<CSid>(u"CSid", u"A security identifier.")
          .Get<&CSid::SidText>(u"SidText", u"The textual form, \"S-1-5-18\".");
  return table;
}

}  // namespace veldmark
