#include "accounts/AccountHome.h"

#include "automation/Error.h"
#include "network/CDomain.h"
#include "network/CDomains.h"
#include "network/CNetHood.h"
#include "network/CServer.h"
#include "platform/operations/NetworkManagement.h"

namespace veldmark {

AccountHome AccountHomeOf(CServer& server) {
  constexpr DWORD kController = kServerTypeDomainController | kServerTypeBackupController;
  const Ref<CServer> keep_alive(&server);
  AccountHome home;
  home.is_controller = (static_cast<DWORD>(server.ServerType()) & kController) != 0;
  home.server_name = server.ServerName;
  if (home.is_controller) home.domain_name = server.DomainName;
  return home;
}

Text ControllerByNeighbourhood(const Text& domain_name) {
  Variant key(domain_name);
  const Ref<CDomain> domain = Make<CNetHood>()->GetDomains()->Item(key);
  const Ref<CServer> controller = domain->GetPDC();
  if (!controller) Raise(runtime_error::kObjectNotSet);
  return controller->ServerName;
}

}  // namespace veldmark
