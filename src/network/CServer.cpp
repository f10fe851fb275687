#include "network/CServer.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CServer::Describe() {
  static const Interface table =
      Declare<CServer>(u"CServer", u"A computer in the network.")
          .Stored<&CServer::ServerName>(
              u"ServerName", u"Its name, as the caller or the computer itself gives it.");
  return table;
}

}  // namespace veldmark
