#include "accounts/CUser.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CUser::Describe() {
  static const Interface table =
      Declare<CUser>(u"CUser", u"A user account of a computer or domain.")
          .Get<&CUser::AccountDisplayName>(
              u"AccountDisplayName",
              u"The name with its computer or domain, \"\\\\SRV\\ann\" or \"CORP\\ann\".");
  return table;
}

}  // namespace veldmark
