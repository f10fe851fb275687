#include "root/ObjectModel.h"

#include <algorithm>
#include <map>
#include <vector>

#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "accounts/CUser.h"
#include "accounts/CUsers.h"
#include "apartment/CStatus.h"
#include "apartment/CTimer.h"
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/CEventLogs.h"
#include "eventlog/EventLogFlags.h"
#include "network/CDomain.h"
#include "network/CDomains.h"
#include "network/CNetHood.h"
#include "network/CNetwork.h"
#include "network/CNetworks.h"
#include "network/CServer.h"
#include "network/CServerAccountPolicy.h"
#include "network/CServerAuditPolicy.h"
#include "network/CServers.h"
#include "network/PolicyEnumerations.h"
#include "registry/CRegKey.h"
#include "registry/CRegKeys.h"
#include "registry/CRegValue.h"
#include "registry/CRegValues.h"
#include "registry/CRegistry.h"
#include "root/CMyComputer.h"
#include "root/SystemRoot.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/CSids.h"
#include "security/SDControl.h"
#include "services/CPrinter.h"
#include "services/CPrinters.h"
#include "services/CService.h"
#include "services/CServices.h"
#include "storage/CDrive.h"
#include "storage/CDrives.h"
#include "storage/CFile.h"
#include "storage/CFiles.h"
#include "storage/CFolder.h"
#include "storage/CFolders.h"
#include "storage/CPathName.h"
#include "storage/CPathNames.h"
#include "storage/CShare.h"
#include "storage/CShares.h"
#include "storage/CVolume.h"
#include "storage/CVolumes.h"
#include "tasks/CTask.h"
#include "tasks/CTasks.h"
#include "tasks/CTrigger.h"
#include "tasks/CTriggers.h"
#include "tasks/TaskEnumerations.h"

namespace veldmark {
namespace {

using InterfaceTable = const Interface& (*)();
using EnumerationTable = const Enumeration& (*)();

constexpr InterfaceTable kClasses[] = {
    &SystemRoot::Describe,
    &CMyComputer::Describe,
    &CStatus::Describe,
    &CTimer::Describe,
    &CSid::Describe,
    &CAce::Describe,
    &CAcl::Describe,
    &CSecurityDescriptor::Describe,
    &CSids::Describe,
    &CAces::Describe,
    &CFolder::Describe,
    &CFile::Describe,
    &CPathName::Describe,
    &CDrive::Describe,
    &CVolume::Describe,
    &CShare::Describe,
    &CFolders::Describe,
    &CFiles::Describe,
    &CPathNames::Describe,
    &CDrives::Describe,
    &CVolumes::Describe,
    &CShares::Describe,
    &CNetHood::Describe,
    &CNetwork::Describe,
    &CDomain::Describe,
    &CServer::Describe,
    &CServerAccountPolicy::Describe,
    &CServerAuditPolicy::Describe,
    &CNetworks::Describe,
    &CDomains::Describe,
    &CServers::Describe,
    &CUser::Describe,
    &CGroup::Describe,
    &CUsers::Describe,
    &CGroups::Describe,
    &CService::Describe,
    &CPrinter::Describe,
    &CServices::Describe,
    &CPrinters::Describe,
    &CEventLog::Describe,
    &CEventLogEntry::Describe,
    &CEventLogs::Describe,
    &CEventLogEntries::Describe,
    &CRegistry::Describe,
    &CRegKey::Describe,
    &CRegValue::Describe,
    &CRegKeys::Describe,
    &CRegValues::Describe,
    &CTask::Describe,
    &CTrigger::Describe,
    &CTasks::Describe,
    &CTriggers::Describe,
};

template <class E>
const Enumeration& Table() {
  return DescribeEnumeration(E{});
}

/// Enumerations that no member has for its type.
constexpr EnumerationTable kUnmentionedEnumerations[] = {
    &Table<SDControlEnum>,
    &Table<EventLogReadFlagsEnum>,
    &Table<EventLogWriteFlagsEnum>,
    &Table<PolicyAuditEventTypeEnum>,
    &Table<PolicyInformationClassEnum>,
    &Table<PolicyLsaServerRoleEnum>,
    &Table<TaskStatusEnum>,
};

template <class T>
void AddOnce(std::vector<const T*>& list, const T* item) {
  if (item && std::ranges::find(list, item) == list.end()) list.push_back(item);
}

std::vector<const Enumeration*> GatherEnumerations() {
  std::vector<const Enumeration*> found;
  const auto visit = [&found](const TypeReference& type) {
    if (type.enumeration_table) AddOnce(found, &type.enumeration_table());
  };
  const auto visit_all = [&visit](const std::vector<Parameter>& parameters) {
    for (const Parameter& parameter : parameters) visit(parameter.type);
  };
  for (const Interface* table : ObjectModel()) {
    for (const Member& member : table->members) {
      visit(member.result);
      visit_all(member.parameters);
    }
  }
  for (const EventInterface* events : EventInterfaces()) {
    for (const Event& event : events->events) visit_all(event.parameters);
  }
  for (const EnumerationTable table : kUnmentionedEnumerations) AddOnce(found, &table());
  return found;
}

}  // namespace

const Identity& LibraryIdentity() {
  static const Identity identity = IdentityOf("library Veldmark2");
  return identity;
}

std::span<const Interface* const> ObjectModel() {
  static const std::vector<const Interface*> classes = [] {
    std::vector<const Interface*> tables;
    for (const InterfaceTable table : kClasses) tables.push_back(&table());
    return tables;
  }();
  return classes;
}

std::span<const Enumeration* const> Enumerations() {
  static const std::vector<const Enumeration*> enumerations = GatherEnumerations();
  return enumerations;
}

std::span<const EventInterface* const> EventInterfaces() {
  static const std::vector<const EventInterface*> interfaces = [] {
    std::vector<const EventInterface*> found;
    for (const Interface* table : ObjectModel()) AddOnce(found, table->events);
    return found;
  }();
  return interfaces;
}

const Interface* FindClass(const Identity& class_identity) {
  static const std::map<Identity, const Interface*> classes = [] {
    std::map<Identity, const Interface*> by_identity;
    for (const Interface* table : ObjectModel()) by_identity[table->ClassIdentity()] = table;
    return by_identity;
  }();
  const auto found = classes.find(class_identity);
  return found == classes.end() ? nullptr : found->second;
}

}  // namespace veldmark
