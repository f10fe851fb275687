#include "network/CServerAuditPolicy.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CServerAuditPolicy::Describe() {
  static const Interface table = Declare<CServerAuditPolicy>(
      u"CServerAuditPolicy", u"The audit policy of a server. It has no members.");
  return table;
}

}  // namespace veldmark
