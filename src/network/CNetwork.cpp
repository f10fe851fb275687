#include "network/CNetwork.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CNetwork::Describe() {
  static const Interface table =
      Declare<CNetwork>(u"CNetwork", u"A network of the network neighbourhood.")
          .Stored<&CNetwork::NetworkName>(u"NetworkName", u"Its name, as its provider gives it.");
  return table;
}

}  // namespace veldmark
