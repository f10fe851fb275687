#pragma once

#include <gmock/gmock.h>

#include <string>
#include <type_traits>
#include <vector>

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "network/CServer.h"
#include "root/SystemRoot.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"
#include "support/ValuesOf.h"

namespace veldmark {

inline const std::vector<TextView> kOfUser = {u"UserName", u"UserType", u"ServerName",
                                              u"DomainName"};
inline const std::vector<TextView> kOfGroup = {u"GroupName", u"GroupType", u"ServerName",
                                               u"DomainName"};

/// Name, type, server and domain, "bob|1|DC1|CORP", of an account or of each in a list.
inline std::string Shown(Object& account) {
  return ValuesOf(account, dynamic_cast<CUser*>(&account) ? kOfUser : kOfGroup);
}
template <class List>
std::string Shown(const Ref<List>& accounts) {
  return ListOf(accounts, std::is_same_v<List, CUsers> ? kOfUser : kOfGroup);
}

/// CORP with its controller DC1 and its members LOCALHOST and SRV. It trusts FAR, of which only a
/// backup controller answers.
class AccountsWorld : public SimulatedApartment {
 public:
  AccountsWorld() {
    using simulated::Role;
    estate().AddDomain(u"CORP").trusts = {u"FAR"};
    estate().AddDomain(u"FAR");
    estate().Join(local(), u"CORP");
    dc = &estate().AddMember(u"CORP", u"DC1", Role::PrimaryController);
    srv = &estate().AddMember(u"CORP", u"SRV", Role::Server);
    estate().AddMember(u"FAR", u"FAR2", Role::BackupController);
    srv->own_accounts().AddUser(u"ann");
    corp().AddUser(u"bob");
    corp().AddGroup(u"Staff", {u"bob", u"SRV$"}).comment = u"All of us";
    journal().Clear();
  }

  simulated::AccountDatabase& corp() { return *estate().FindDomain(u"CORP")->accounts; }
  simulated::AccountDatabase& far() { return *estate().FindDomain(u"FAR")->accounts; }

  static Ref<CGroup> Group(TextView name, GroupTypeEnum type, TextView server,
                           TextView domain = {}) {
    auto group = Make<CGroup>();
    group->GroupName = name;
    group->GroupType = type;
    group->ServerName = server;
    group->DomainName = domain;
    return group;
  }
  static Ref<CUser> User(TextView name, UserTypeEnum type, TextView server, TextView domain = {}) {
    auto user = Make<CUser>();
    user->UserName = name;
    user->UserType = type;
    user->SetServerName(Text(server));
    user->SetDomainName(Text(domain));
    return user;
  }

  simulated::Computer* dc;
  simulated::Computer* srv;
};

class AccountsTest : public TestIn<AccountsWorld> {
 protected:
  SystemRoot root;
};

}  // namespace veldmark
