#include "platform/simulated/estate_file/ComputerReader.h"

#include <array>

#include "platform/simulated/estate_file/DriveReader.h"
#include "platform/simulated/estate_file/RegistryReader.h"
#include "platform/simulated/estate_file/ShareReader.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {

void ReadComputer(const Node& node, Estate& estate) {
  node.OnlyFields({"name", "reachable", "remoteRegistry", "discDevice", "drives", "shares",
                   "registry", "services", "printers"});
  const Node name = node.Required("name");
  Computer& computer = name.Try([&]() -> Computer& { return estate.AddComputer(name.String()); });
  if (const auto reachable = node.Field("reachable")) computer.SetReachable(reachable->Boolean());
  if (const auto remote = node.Field("remoteRegistry")) {
    static constexpr std::array<RemoteRegistry, 3> kStates = {
        RemoteRegistry::Allowed, RemoteRegistry::Denied, RemoteRegistry::Stopped};
    computer.SetRemoteRegistry(kStates[remote->OneOf({"allowed", "denied", "stopped"})]);
  }
  if (const auto device = node.Field("discDevice")) computer.SetDiscDevice(device->Boolean());
  if (const auto drives = node.Field("drives")) ReadDrives(*drives, computer, estate);
  if (const auto shares = node.Field("shares")) ReadShares(*shares, computer, estate);
  if (const auto registry = node.Field("registry")) {
    ReadRegistry(*registry, computer, estate);
  }
  if (const auto services = node.Field("services")) {
    ReadNamedObjects(*services, estate, [&](const Node& place, TextView text, auto security) {
      if (computer.FindService(text) != nullptr) place.Complain("there is a service of this name");
      computer.AddService(text, std::move(security));
    });
  }
  if (const auto printers = node.Field("printers")) {
    ReadNamedObjects(*printers, estate, [&](const Node& place, TextView text, auto security) {
      if (computer.FindPrinter(text) != nullptr) place.Complain("there is a printer of this name");
      computer.AddPrinter(text, std::move(security));
    });
  }
}

}  // namespace veldmark::simulated
