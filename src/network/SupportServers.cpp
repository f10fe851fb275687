#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "network/CServer.h"
#include "network/ServerNames.h"

namespace veldmark {
namespace {

constexpr DWORD kServerLevel = 101;
constexpr DWORD kAdministratorLevel = 102;

}  // namespace

Ref<CServer> CSupport::GetServer(const Text& server_name, const Text& domain_name) {
  const Ref<Collection>& cache = Apartment::Current().server_cache;
  if (const auto known = FindRemembered(cache, server_name)) {
    return static_cast<CServer*>(known->If<Ref<Object>>()->Get());
  }
  Err().Clear();
  return ReRaising([&] {
    auto server = Make<CServer>();
    server->ServerName = server_name;
    server->DomainName = domain_name.empty() ? GetDomainFromServer(server_name) : domain_name;
    GetServerInfo(*server);
    Remember(cache, server_name, Variant(server));
    return server;
  });
}

void CSupport::GetServerInfo(CServer& server) {
  ReRaising([&] {
    const Text name = Text(kServerNameStart) + PlainServerName(server.ServerName);
    StatusObject().RaiseStatus(
        [&] { return u"Retrieving Information for Server " + server.ServerName; });
    NetworkManagement& network = Apartment::Current().platform.network_management;
    NetworkBuffer buffer(network);
    DWORD level = kAdministratorLevel;
    DWORD status = network.NetServerGetInfo(name.c_str(), level, buffer.Receive());
    if (status == kErrorAccessDenied) {
      level = kServerLevel;
      status = network.NetServerGetInfo(name.c_str(), level, buffer.Receive());
    }
    if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
    if (level == kAdministratorLevel) {
      server.FillFromItself(RecordOf<SERVER_INFO_102>(buffer));
    } else {
      server.FillFromItself(RecordOf<SERVER_INFO_101>(buffer));
    }
  });
}

}  // namespace veldmark
