#pragma once

#include <utility>

#include "apartment/Counted.h"
#include "automation/Events.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "network/ServerType.h"

namespace veldmark {

class CGroups;
class CServer;
class CServers;
class CUsers;

/// A domain or workgroup. Every member but the plain values raises the platform's error of what it
/// asks for.
class CDomain : public Exported<CDomain>, Counted<Counter::kDomain> {
 public:
  static const Interface& Describe();
  EventSource* Events() override { return &events_; }

  /// The computers of the domain. Those on its browse list have what the list says of them; with
  /// them come those that the domain's controller has an account of, under their names alone
  /// (`StateUnknown`). Without a controller, or with `IgnoreMachineAccounts`, it is the browse list
  /// alone. With `AsyncFetch` each goes out by ServerFound, a computer that both know twice, and
  /// the list is empty; a set Cancel ends the walk.
  Ref<CServers> GetServers();
  /// Global groups and users, as the primary controller knows them. With `AsyncFetch` the lists are
  /// empty: this object raises no event for them.
  Ref<CGroups> GetGroups();
  Ref<CUsers> GetUsers();
  /// The primary controller, of which nothing is asked yet; Nothing where its name is empty. Raises
  /// 2453 where there is none.
  Ref<CServer> GetPDC();
  /// The same as `GetGroups` and `GetUsers`, asked of this server.
  Ref<CGroups> GetGroupsFromDC(const Text& server_name);
  Ref<CUsers> GetUsersFromDC(const Text& server_name);

  Text DomainName;
  bool IgnoreMachineAccounts = false;
  ServerTypeEnum ServerTypeFilter = SV_TYPE_ALL;  ///< of the browse list alone; 0 counts as all
  bool AsyncFetch = false;

  const Text& Comment() const { return comment_; }
  void SetComment(Text comment) { comment_ = std::move(comment); }
  /// The network in whose list it was found.
  const Text& NetworkName() const { return network_name_; }
  void SetNetworkName(Text network_name) { network_name_ = std::move(network_name); }

 private:
  /// The computers on the browse list of `domain`. `cancel` is set where a listener ended the walk.
  Ref<CServers> GetServersFromBrowseList(CDomain& domain, bool& cancel);
  /// Those of the browse list of the controller's domain, and behind them those of its machine
  /// accounts.
  Ref<CServers> GetServersFromMachineAccounts(CServer& controller);
  void RaiseServerFound(CServer& server, bool& cancel);

  Text comment_;
  Text network_name_;
  EventSource events_;
};

}  // namespace veldmark
