#include "registry/CRegistry.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CRegistry::Describe() {
  static const Interface table = Declare<CRegistry>(u"CRegistry", u"The registry of a computer.");
  return table;
}

}  // namespace veldmark
