#pragma once

#include "automation/Text.h"

namespace veldmark {

class CServer;

/// Whose accounts a computer's account database holds: its own or, on a controller, its domain's.
struct AccountHome {
  bool is_controller = false;
  Text server_name;  ///< as the computer names itself
  Text domain_name;  ///< empty where the accounts are the computer's own
};

/// Asks a server for its type, which may fetch; raises the platform's error then.
AccountHome AccountHomeOf(CServer& server);

/// The name of a domain's controller by a walk of the network's domains. Raises 5 for a domain that
/// isn't among them, and the platform's error.
Text ControllerByNeighbourhood(const Text& domain_name);

}  // namespace veldmark
