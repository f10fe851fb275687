#include "network/CNetwork.h"

#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "network/CDomain.h"
#include "network/CDomains.h"
#include "network/CNetHood.h"
#include "network/CNetworks.h"

namespace veldmark {
namespace {

constexpr std::int32_t kDomainFoundEvent = 1;

const EventInterface& DescribeNetworkEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CNetwork", u"Objects that a walk finds, one by one.")
          .Event<Ref<CDomain>, bool&>(u"DomainFound", u"A domain; Cancel ends the walk.",
                                      {u"oDomain", u"Cancel"});
  return table;
}

}  // namespace

const Interface& CNetwork::Describe() {
  static const Interface table =
      Declare<CNetwork>(u"CNetwork", u"A network of the network neighbourhood.")
          .Method<&CNetwork::GetDomains>(u"GetDomains",
                                         u"The domains of the network with this name.")
          .Remark(u"The network is looked for by its name again; raises 5 where there is none.")
          .Stored<&CNetwork::NetworkName>(u"NetworkName", u"Its name, as its provider gives it.")
          .Stored<&CNetwork::Comment>(u"Comment", u"What its provider says of it.")
          .Stored<&CNetwork::NetworkType>(u"NetworkType", u"Its kind; 0 where that isn't known.")
          .Property<&CNetwork::AsyncFetch, &CNetwork::PutAsyncFetch>(
              u"AsyncFetch", u"True to have objects delivered by events.")
          .Remark(
              u"While it is on, GetDomains returns an empty list. Cancel ends the walk. An "
              u"object also gets the events of what any other one of its thread fetches so.")
          .Events(DescribeNetworkEvents());
  return table;
}

Ref<CDomains> CNetwork::GetDomains() {
  const Ref<CNetwork> keep_alive(this);
  return ReRaisingAs(u"CNetwork", [&] {
    Variant name(NetworkName);
    const Ref<CNetwork> network = Make<CNetHood>()->GetNetworks()->Item(name);
    return Engine().GetDomains(*network, AsyncFetch());
  });
}

void CNetwork::SetResource(const NETRESOURCEW& resource) {
  resource_ = resource;
  // The texts go with the buffer that the record came in.
  resource_.lpLocalName = resource_.lpRemoteName = nullptr;
  resource_.lpComment = resource_.lpProvider = nullptr;
}

void CNetwork::OnObjectFound(Object& object, bool& cancel) {
  if (&object.GetInterface() != &CDomain::Describe()) Raise(runtime_error::kTypeMismatch);
  Forward(object, cancel, {{&CDomain::Describe, kDomainFoundEvent}});
}

}  // namespace veldmark
