#pragma once

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "network/CDomain.h"
#include "network/CDomains.h"
#include "network/CNetHood.h"
#include "network/CNetwork.h"
#include "network/CNetworks.h"
#include "network/CServer.h"
#include "network/CServerAccountPolicy.h"
#include "network/CServers.h"
#include "root/SystemRoot.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"
#include "support/ValuesOf.h"

namespace veldmark {

/// A domain with its controller, a server, and two workstations, one of them switched off; and a
/// workgroup of one computer. This computer is in neither.
class NetworkWorld : public SimulatedApartment {
 public:
  NetworkWorld() {
    estate().AddDomain(u"CORP").comment = u"Head office";
    estate().AddMember(u"CORP", u"DC1", simulated::Role::PrimaryController);
    simulated::ServerDescription& server =
        estate().AddMember(u"CORP", u"FS1", simulated::Role::Server).description();
    server = {.comment = u"Files",
              .version_major = 0x8005,
              .version_minor = 2,
              .type = 0x80009003,
              .users = 40,
              .disconnect_minutes = -1,
              .hidden = true,
              .announce_seconds = 241,
              .announce_delta = 3001,
              .licenses = 7,
              .user_path = u"D:\\Users"};
    computer(u"FS1").AddPipe(u"NETAPPSVC");
    estate().AddMember(u"CORP", u"PC1");
    estate().AddMember(u"CORP", u"PC9").SetReachable(false);
    estate().AddWorkgroup(u"LAB");
    estate().AddMember(u"LAB", u"BENCH");
    journal().Clear();
  }

  simulated::Computer& computer(TextView name) { return *estate().FindComputer(name); }
};

/// A test in that world; it fails when an object or a handle outlives it.
class NetworkTest : public TestIn<NetworkWorld> {
 protected:
  const Ref<SystemRoot> root_ = Make<SystemRoot>();
};

}  // namespace veldmark
