#pragma once

#include <memory>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/NetworkProvider.h"
#include "platform/simulated/estate/AccountDatabase.h"

namespace veldmark::simulated {

inline constexpr TextView kUsualNetwork = u"Microsoft Windows Network";
inline constexpr TextView kUsualWorkgroup = u"WORKGROUP";

// What a computer is in its domain or workgroup.
enum class Role { Workstation, Server, PrimaryController, BackupController };

constexpr bool IsController(Role role) {
  return role == Role::PrimaryController || role == Role::BackupController;
}

// A domain, or a workgroup, which has no accounts.
struct Domain {
  Text name;
  std::unique_ptr<AccountDatabase> accounts;  // null for a workgroup
  Text comment{};
  Text network{kUsualNetwork};  // the one that shows it
  std::vector<Text> trusts{};   // names of domains whose accounts are known here
  bool has_browse_list = true;  // false: nobody keeps a list of its computers

  bool is_workgroup() const { return accounts == nullptr; }
};

// A network that this computer has a provider for. What it contains are the domains that name it,
// and then `others`.
struct Network {
  struct Entry {
    Text name;
    Text comment{};
    DWORD display_type = kDisplayTypeDomain;
  };

  Text name;
  Text comment{};
  Text provider{};  // empty: as the network
  DWORD display_type = kDisplayTypeNetwork;
  std::optional<WORD> type = 2;  // without one the provider tells nothing
  std::vector<Entry> others{};
  std::size_t page = 0;  // how many entries at most an answer holds; 0: as many as fit

  const Text& provider_name() const { return provider.empty() ? name : provider; }
};

}  // namespace veldmark::simulated
