#include "security/CAcl.h"

#include "platform/automation/Declare.h"

namespace veldmark {

const Interface& CAcl::Describe() {
  static const Interface table = Declare<CAcl>(u"CAcl", u"A discretionary access control list.");
  return table;
}

}  // namespace veldmark
