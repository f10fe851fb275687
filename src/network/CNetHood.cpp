#include "network/CNetHood.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "network/CDomains.h"
#include "network/CNetwork.h"
#include "network/CNetworks.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CNetHood";
constexpr std::int32_t kNoWindowsNetwork = kAutomationErrorBase + 701;

}  // namespace

const Interface& CNetHood::Describe() {
  static const Interface table =
      Declare<CNetHood>(u"CNetHood", u"The network neighbourhood.")
          .Method<&CNetHood::GetDomains>(u"GetDomains", u"The domains of the Windows network.")
          .Method<&CNetHood::GetNetworks>(u"GetNetworks", u"The networks of this computer.");
  return table;
}

Ref<CDomains> CNetHood::GetDomains() {
  return ReRaisingAs(kClassName, [] {
    const Ref<CNetworks> networks = Engine().GetNetworks();
    for (std::int32_t i = 1; i <= networks->Count(); ++i) {
      Variant position(i);
      const Ref<CNetwork> network = networks->Item(position);
      if (network->NetworkType == NET_LANMAN) return Engine().GetDomains(*network, false);
    }
    Raise(kNoWindowsNetwork, SourceOf(kClassName),
          u"Unable to locate the 'Microsoft Windows Network'");
  });
}

Ref<CNetworks> CNetHood::GetNetworks() {
  return ReRaisingAs(kClassName, [] { return Engine().GetNetworks(); });
}

}  // namespace veldmark
