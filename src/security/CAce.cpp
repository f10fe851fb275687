#include "security/CAce.h"

#include "platform/automation/Declare.h"

namespace veldmark {

const Interface& CAce::Describe() {
  static const Interface table = Declare<CAce>(u"CAce", u"One entry of an access control list.");
  return table;
}

}  // namespace veldmark
