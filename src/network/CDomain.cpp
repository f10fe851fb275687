#include "network/CDomain.h"

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "automation/Declare.h"
#include "network/CServer.h"
#include "network/CServers.h"
#include "network/ServerNames.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CDomain";
constexpr std::int32_t kServerFoundEvent = 3;

const EventInterface& DescribeDomainEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CDomain", u"Objects that a walk finds, one by one.")
          .Event<Ref<CUser>, bool&>(u"UserFound", u"Never raised.", {u"oUser", u"Cancel"})
          .Event<Ref<CGroup>, bool&>(u"GroupFound", u"Never raised.", {u"oGroup", u"Cancel"})
          .Event<Ref<CServer>, bool&>(u"ServerFound", u"A server; Cancel ends the walk.",
                                      {u"oServer", u"Cancel"});
  return table;
}

/// One call after the other over a domain's browse list, with the records of the level that the
/// platform allows.
class BrowseList {
 public:
  BrowseList(Text domain, DWORD server_type)
      : domain_(std::move(domain)),
        server_type_(server_type),
        network_(Apartment::Current().platform.network_management),
        buffer_(network_) {}

  /// Asks for the next records; false behind the last ones. Raises the platform's status.
  bool Next() {
    if (asked_ && resume_handle_ == 0) return false;
    asked_ = true;
    const DWORD asked_from = resume_handle_;
    DWORD status = Ask();
    const bool refused = status == kErrorInvalidLevel || status == kErrorAccessDenied;
    if (refused && level_ != kNamesLevel) {
      level_ = kNamesLevel;
      status = Ask();
    }
    if (status != kErrorSuccess) {
      const auto number = static_cast<std::int32_t>(status);
      Raise(number, SourceOf(kClassName), u"Error Retrieving Servers: " + GetAPIErrorText(number));
    }
    // A page that leads nowhere is the last one.
    return Count() > 0 || resume_handle_ != asked_from;
  }

  DWORD Count() const { return buffer_ ? read_ : 0; }
  Ref<CServer> Server(DWORD index) const {
    auto server = Make<CServer>();
    if (level_ == kNamesLevel) {
      server->FillFrom(RecordsIn<SERVER_INFO_100>(buffer_.Get(), read_)[index]);
    } else {
      server->FillFrom(RecordsIn<SERVER_INFO_101>(buffer_.Get(), read_)[index]);
    }
    return server;
  }

 private:
  static constexpr DWORD kNamesLevel = 100;

  DWORD Ask() {
    DWORD total = 0;
    read_ = 0;
    return network_.NetServerEnum(nullptr, level_, buffer_.Receive(), kMaxPreferredLength, &read_,
                                  &total, server_type_, domain_.c_str(), &resume_handle_);
  }

  const Text domain_;
  const DWORD server_type_;
  NetworkManagement& network_;
  NetworkBuffer buffer_;
  DWORD level_ = 101;
  DWORD read_ = 0;
  DWORD resume_handle_ = 0;
  bool asked_ = false;
};

/// Adds to a list as its `Add` does; false where it holds one of this name.
bool AddNew(CServers& servers, CServer& server) {
  Err().Clear();
  servers.Add(&server);
  const bool is_new = Err().Number() != runtime_error::kKeyAlreadyPresent;
  Err().Clear();
  return is_new;
}

}  // namespace

const Interface& CDomain::Describe() {
  static const Interface table =
      Declare<CDomain>(u"CDomain", u"A domain or workgroup.")
          .Method<&CDomain::GetServers>(u"GetServers", u"Its computers.")
          .Remark(
              u"The browse list and the machine accounts of the primary controller; a "
              u"computer that has an account needn't be there. Where no controller is found, "
              u"the browse list alone. Raises 6118 where nobody keeps one.")
          .Method<&CDomain::GetGroups>(u"GetGroups", u"Its global groups.")
          .Method<&CDomain::GetUsers>(u"GetUsers", u"Its users.")
          .Remark(
              u"Asked of the primary controller, as GetGroups is; raises 2453 where it isn't "
              u"found. GetUsersFromDC and GetGroupsFromDC ask another one.")
          .Method<&CDomain::GetPDC>(u"GetPDC", u"Its primary controller.")
          .Stored<&CDomain::DomainName>(u"DomainName",
                                        u"Its name; nothing checks that there is such a domain.")
          .Get<&CDomain::Comment>(u"Comment", u"What the network's list says of it.")
          .Method<&CDomain::GetGroupsFromDC>(
              u"GetGroupsFromDC", u"Its global groups, asked of this server.", {u"ServerName"})
          .Method<&CDomain::GetUsersFromDC>(u"GetUsersFromDC", u"Its users, asked of this server.",
                                            {u"ServerName"})
          .Stored<&CDomain::IgnoreMachineAccounts>(
              u"IgnoreMachineAccounts", u"True to have the browse list alone for servers.")
          .Stored<&CDomain::ServerTypeFilter>(u"ServerTypeFilter",
                                              u"Which servers of the browse list are wanted.")
          .Stored<&CDomain::AsyncFetch>(u"AsyncFetch", u"True to have servers delivered by events.")
          .Remark(
              u"While it is on, GetServers returns an empty list, and so do the users and "
              u"groups, which have no event here: turn it off for them. Cancel ends the walk.")
          .Events(DescribeDomainEvents());
  return table;
}

Ref<CServers> CDomain::GetServers() {
  const Ref<CDomain> keep_alive(this);
  return ReRaisingAs(kClassName, [&] {
    Ref<CServer> controller;
    const bool asks_controller = !IgnoreMachineAccounts && Swallow([&] { controller = GetPDC(); });
    Err().Clear();
    if (!asks_controller) {
      bool cancel = false;
      return GetServersFromBrowseList(*this, cancel);
    }
    if (!controller) Raise(runtime_error::kObjectNotSet);
    return GetServersFromMachineAccounts(*controller);
  });
}

Ref<CGroups> CDomain::GetGroups() { return GetGroupsFromDC(Text()); }

Ref<CGroups> CDomain::GetGroupsFromDC(const Text& server_name) {
  const Ref<CDomain> keep_alive(this);
  return ReRaisingAs(kClassName,
                     [&] { return Engine().GetGlobalGroups(*this, server_name, AsyncFetch); });
}

Ref<CUsers> CDomain::GetUsers() {
  const Ref<CDomain> keep_alive(this);
  return ReRaisingAs(kClassName, [&] {
    const Ref<CServer> controller = GetPDC();
    if (!controller) Raise(runtime_error::kObjectNotSet);
    return Engine().GetUsers(*controller, AsyncFetch);
  });
}

Ref<CUsers> CDomain::GetUsersFromDC(const Text& server_name) {
  const Ref<CDomain> keep_alive(this);
  return ReRaisingAs(kClassName, [&] {
    const Ref<CServer> server = Engine().GetServer(server_name, DomainName);
    return Engine().GetUsers(*server, AsyncFetch);
  });
}

Ref<CServer> CDomain::GetPDC() {
  return ReRaisingAs(kClassName, [&]() -> Ref<CServer> {
    const Text name = Engine().GetPDCName(DomainName, Text());
    if (name.empty()) return nullptr;
    auto controller = Make<CServer>();
    controller->FillFromName(PlainServerName(name), DomainName);
    controller->SetPlatformId(kPlatformIdNt);
    return controller;
  });
}

Ref<CServers> CDomain::GetServersFromBrowseList(CDomain& domain, bool& cancel) {
  const bool async = AsyncFetch;
  const Text domain_name = domain.DomainName;
  const ServerTypeEnum filter = ServerTypeFilter == 0 ? SV_TYPE_ALL : ServerTypeFilter;
  auto servers = Make<CServers>();
  StatusObject().RaiseStatus([&] { return u"Retrieving Servers for Domain " + domain_name; });
  BrowseList list(domain_name, static_cast<DWORD>(filter));
  while (!cancel && list.Next()) {
    for (DWORD i = 0; i < list.Count() && !cancel; ++i) {
      const Ref<CServer> server = list.Server(i);
      server->DomainName = domain_name;
      if (async) {
        RaiseServerFound(*server, cancel);
      } else {
        servers->Add(server.Get());
      }
    }
  }
  return servers;
}

Ref<CServers> CDomain::GetServersFromMachineAccounts(CServer& controller) {
  const bool async = AsyncFetch;
  bool cancel = false;
  const Ref<CDomain> domain = Engine().GetDomainFromServerName(controller.ServerName);
  Ref<CServers> servers = GetServersFromBrowseList(*domain, cancel);
  CStatus& status = StatusObject();
  status.RaiseStatus([&] { return u"Retrieving Servers from " + controller.DomainName; });
  if (cancel) return servers;

  const Variant server_name = ApiServerName(controller.ServerName);
  AccountManagement& accounts = Apartment::Current().platform.accounts;
  WalkNetworkPages<USER_INFO_0, DWORD>(
      SourceOf(kClassName),
      [&](BYTE** buffer, auto... counts) {
        return accounts.NetUserEnum(BufferText(server_name), 0,
                                    kFilterWorkstationTrustAccount | kFilterServerTrustAccount,
                                    buffer, kMaxPreferredLength, counts...);
      },
      [&](const USER_INFO_0& account) {
        Text name = TextAt(account.usri0_name);
        if (name.ends_with(u'$')) name.pop_back();
        const auto server = Make<CServer>();
        server->FillFromName(name, controller.DomainName);
        bool found = true;
        if (async) {
          RaiseServerFound(*server, cancel);
        } else {
          found = AddNew(*servers, *server);
        }
        if (cancel) return false;
        if (found) status.RaiseStatus([&] { return u"Retrieved Server " + server->ServerName; });
        return true;
      });
  return servers;
}

void CDomain::RaiseServerFound(CServer& server, bool& cancel) {
  events_.Raise(*this, kServerFoundEvent,
                {Variant(Ref<Object>(&server)), Variant::ByReference(cancel)});
}

}  // namespace veldmark
