#include "security/CSecurityDescriptor.h"

#include "platform/automation/Declare.h"

namespace veldmark {

const Interface& CSecurityDescriptor::Describe() {
  static const Interface table = Declare<CSecurityDescriptor>(
      u"CSecurityDescriptor",
      u"Owner and discretionary access control list of a securable object.");
  return table;
}

}  // namespace veldmark
