#pragma once

#include <utility>

#include "apartment/AsyncFetching.h"
#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "network/ServerType.h"
#include "platform/operations/NetworkManagement.h"

namespace veldmark {

class CEventLogEntries;
class CEventLogs;
class CGroup;
class CGroups;
class CPrinters;
class CServerAccountPolicy;
class CService;
class CServices;
class CShares;
class CSids;
class CTask;
class CTasks;
class CUsers;
class CVolumes;
enum ServiceStatesMaskEnum : std::int32_t;
enum ServiceTypesEnum : std::int32_t;

/// A computer in the network, and the door to what is on it. Its data are those of the record that
/// last filled it; what that record didn't have is fetched when it is first asked for, which raises
/// the platform's error. Walks raise it as well. Members that docs/status.md lists raise 445.
///
/// With `AsyncFetch` on, the walks that take part deliver each object by an event and return an
/// empty list, and the object also passes on what any other walk of the apartment delivers so.
class CServer : public AsyncFetching<CServer>, Counted<Counter::kServer> {
 public:
  static const Interface& Describe();

  Ref<CShares> GetShares();
  /// The local groups and the users, without events whatever `AsyncFetch` says.
  Ref<CGroups> GetGroups();
  Ref<CUsers> GetUsers();
  /// The users with all their fields, for administrators.
  Ref<CUsers> GetCompleteUsers();
  Ref<CVolumes> GetVolumes();
  /// The services of these types and states, told in slices: a failure in the middle of them ends
  /// the list without an error.
  Ref<CServices> GetServices(ServiceTypesEnum types, ServiceStatesMaskEnum states);
  Ref<CPrinters> GetPrinters();
  /// A service that its `Install` makes; nothing is asked of the computer.
  Ref<CService> CreateServiceObject();
  /// A service by its short name, filled; one that doesn't exist reads as empty.
  Variant GetService(const Text& service_name);
  /// Empty lists for a caller to fill.
  Ref<CServices> CreateServicesCollection();
  Ref<CTasks> CreateTasksCollection();
  Ref<CTasks> GetTasks();
  Ref<CTask> CreateTask(const Text& task_name);
  Ref<CTask> CreateTaskObject();
  Ref<CEventLogs> GetEventLogs();
  Ref<CEventLogEntries> GetEventLogEntries(const Text& event_log);
  Ref<CEventLogEntries> GetEventLogEntries2(const Text& event_log, std::int32_t starting_record);
  Ref<CEventLogEntries> GetEventLogEntriesFromFile(const Text& file_name);
  Ref<CServerAccountPolicy> GetServerAccountPolicy();
  /// The SIDs of the accounts that hold a right, named as the platform does
  /// ("SeBackupPrivilege").
  Ref<CSids> GetSidsWithUserRight(const Text& user_right);
  /// A local group that its `Update` makes; nothing is written before.
  Ref<CGroup> CreateLocalGroup(const Text& group_name);

  Text ServerName;
  Text DomainName;

  // Level 101, fetched where the object has less.
  Text Comment() { return Fetched(kServerLevel, &CServer::comment_); }
  void PutComment(const Text& comment) { comment_ = comment; }
  std::int32_t VersionMajor() { return Fetched(kServerLevel, &CServer::version_major_); }
  std::int32_t VersionMinor() { return Fetched(kServerLevel, &CServer::version_minor_); }
  ServerTypeEnum ServerType() { return Fetched(kServerLevel, &CServer::server_type_); }
  /// As the computer itself gives it; 0 while only a browse list was asked.
  std::int32_t ServerTypeRaw() { return Fetched(kServerLevel, &CServer::server_type_raw_); }

  // Level 102, which a computer may deny: then each of these asks again and returns what it had.
  std::int32_t NumUsers() { return Fetched(kAdministratorLevel, &CServer::num_users_); }
  /// Minutes.
  std::int32_t DisconnectTime() { return Fetched(kAdministratorLevel, &CServer::disconnect_time_); }
  bool Hidden() { return Fetched(kAdministratorLevel, &CServer::hidden_); }
  /// Seconds.
  std::int32_t AnnounceRate() { return Fetched(kAdministratorLevel, &CServer::announce_rate_); }
  /// Milliseconds.
  std::int32_t AnnounceDelta() { return Fetched(kAdministratorLevel, &CServer::announce_delta_); }
  std::int32_t Licenses() { return Fetched(kAdministratorLevel, &CServer::licenses_); }
  Text UserPath() { return Fetched(kAdministratorLevel, &CServer::user_path_); }

  /// Never fetched.
  std::int32_t PlatformId() const { return platform_id_; }
  /// True until the computer has answered for itself or stood on a browse list.
  bool StateUnknown() const { return state_unknown_; }
  /// The first IPv4 address of the name, looked up each time. Raises 80040001 where there is none.
  Text PrimaryIPAddress();
  /// Whether the computer offers the pipe of a storage filer, asked each time. Never raises.
  bool IsNetAppFiler();

  /// Fills the fields of a browse record, and takes its level.
  void FillFrom(const SERVER_INFO_100& record);
  void FillFrom(const SERVER_INFO_101& record);
  /// Fills the fields of the computer's own record.
  void FillFromItself(const SERVER_INFO_101& record);
  void FillFromItself(const SERVER_INFO_102& record);
  /// Makes it a computer of which nothing but the name is known, and the domain where it was found.
  void FillFromName(Text server_name, Text domain_name);
  void SetPlatformId(DWORD platform_id) { platform_id_ = static_cast<std::int32_t>(platform_id); }

 private:
  /// The levels of the platform's records.
  static constexpr std::int32_t kNameLevel = 100;
  static constexpr std::int32_t kServerLevel = 101;
  static constexpr std::int32_t kAdministratorLevel = 102;

  void OnObjectFound(Object& object, bool& cancel) override;

  void FetchUpTo(std::int32_t level);
  template <class Field>
  Field Fetched(std::int32_t level, Field CServer::*field) {
    // A listener to the progress of the fetch may let the object go.
    const Ref<CServer> keep_alive(this);
    FetchUpTo(level);
    return this->*field;
  }
  /// Calls `walk` with the engine; the object outlives it, whatever a listener lets go.
  template <class Walk>
  auto WithEngine(Walk&& walk);

  Text comment_;
  std::int32_t platform_id_ = 0;
  std::int32_t version_major_ = 0;
  std::int32_t version_minor_ = 0;
  ServerTypeEnum server_type_{};
  std::int32_t server_type_raw_ = 0;
  std::int32_t num_users_ = 0;
  std::int32_t disconnect_time_ = 0;
  bool hidden_ = false;
  std::int32_t announce_rate_ = 0;
  std::int32_t announce_delta_ = 0;
  std::int32_t licenses_ = 0;
  Text user_path_;
  bool state_unknown_ = true;
  std::int32_t information_level_ = 0;  ///< of the last record that filled the object; 0 for none
};

}  // namespace veldmark
