#include "network/CServerAccountPolicy.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CServerAccountPolicy::Describe() {
  static const Interface table = Declare<CServerAccountPolicy>(
      u"CServerAccountPolicy", u"The account policy of a computer or domain.");
  return table;
}

}  // namespace veldmark
