#include "network/CNetHood.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CNetHood::Describe() {
  static const Interface table = Declare<CNetHood>(u"CNetHood", u"The network neighbourhood.");
  return table;
}

}  // namespace veldmark
