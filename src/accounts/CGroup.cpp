#include "accounts/CGroup.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CGroup::Describe() {
  static const Interface table =
      Declare<CGroup>(u"CGroup", u"A group of a computer or domain, or a well-known one.")
          .Get<&CGroup::AccountDisplayName>(
              u"AccountDisplayName",
              u"The name with its computer or domain, \"\\\\SRV\\Staff\" or \"CORP\\Staff\".");
  return table;
}

}  // namespace veldmark
