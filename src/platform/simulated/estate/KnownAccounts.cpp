#include "platform/simulated/estate/KnownAccounts.h"

namespace veldmark::simulated {

std::vector<KnownAccount> WellKnownAccounts() {
  std::vector<KnownAccount> accounts = {
      {Sid(0, {0}), u"", u"NULL SID"},
      {Sid(1, {0}), u"", u"Everyone"},
      {Sid(2, {0}), u"", u"LOCAL"},
      {Sid(3, {0}), u"", u"CREATOR OWNER"},
      {Sid(3, {1}), u"", u"CREATOR GROUP"},
      {Sid(3, {2}), u"", u"CREATOR OWNER SERVER"},
      {Sid(3, {3}), u"", u"CREATOR GROUP SERVER"},
      {Sid(3, {4}), u"", u"OWNER RIGHTS"},
  };
  struct Row {
    DWORD number;
    TextView name;
  };
  static constexpr Row kAuthority[] = {{1, u"DIALUP"},
                                       {2, u"NETWORK"},
                                       {3, u"BATCH"},
                                       {4, u"INTERACTIVE"},
                                       {6, u"SERVICE"},
                                       {7, u"ANONYMOUS LOGON"},
                                       {8, u"PROXY"},
                                       {9, u"ENTERPRISE DOMAIN CONTROLLERS"},
                                       {10, u"SELF"},
                                       {11, u"Authenticated Users"},
                                       {12, u"RESTRICTED"},
                                       {13, u"TERMINAL SERVER USER"},
                                       {14, u"REMOTE INTERACTIVE LOGON"},
                                       {15, u"This Organization"},
                                       {18, u"SYSTEM"},
                                       {19, u"LOCAL SERVICE"},
                                       {20, u"NETWORK SERVICE"}};
  for (const Row& row : kAuthority) {
    accounts.push_back({Sid(5, {row.number}), u"NT AUTHORITY", Text(row.name)});
  }
  accounts.push_back({BuiltinSid(), u"BUILTIN", u"BUILTIN", SidUse::Domain});
  return accounts;
}

const Sid& BuiltinSid() {
  static const Sid sid(5, {32});
  return sid;
}

}  // namespace veldmark::simulated
