#include "network/CNetworks.h"

#include "collections/CollectionTable.h"
#include "network/CNetwork.h"

namespace veldmark {

const Interface& CNetworks::Describe() {
  static const Interface table =
      CollectionTable<CNetworks>(u"CNetworks", u"Networks, found by name in any case.")
          .Plain(u"oNetwork");
  return table;
}

CollectionKey CNetworks::KeyOf(CNetwork& network) {
  return CollectionKey::Plain(network.NetworkName);
}

}  // namespace veldmark
