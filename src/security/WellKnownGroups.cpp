#include "security/WellKnownGroups.h"

#include "accounts/AccountNames.h"
#include "accounts/CGroup.h"
#include "accounts/CGroups.h"
#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "network/CServer.h"
#include "security/AccountCache.h"
#include "security/BinarySid.h"
#include "security/CSid.h"

namespace veldmark {
namespace {

constexpr std::int32_t kFirstVersionWithServiceAccounts = 5;

struct Row {
  std::uint8_t authority;
  std::int32_t sub_authority;
  WellKnownGroupTypeEnum type;
};

constexpr Row kEverywhere[] = {
    {1, 0, WKG_EVERYONE},
    {2, 0, WKG_LOCAL},
    {3, 0, WKG_CREATOROWNER},
    {3, 1, WKG_CREATORGROUP},
    {5, 1, WKG_DIALUP},
    {5, 2, WKG_NETWORK},
    {5, 3, WKG_BATCH},
    {5, 4, WKG_INTERACTIVE},
    {5, 6, WKG_SERVICE},
    {5, 7, WKG_ANONYMOUSLOGON},
    {5, 11, WKG_AUTHENTICATEDUSERS},
    {5, 13, WKG_TERMINALSERVERUSERS},
    {5, 18, WKG_SYSTEM},
};

constexpr Row kServiceAccounts[] = {
    {5, 19, WKG_LOCALSERVICE},
    {5, 20, WKG_NETWORKSERVICE},
};

/// Nothing where the computer has no name for it.
Ref<CGroup> BuildWellKnownGroup(const Row& row) {
  Ref<CGroup> group;
  Swallow([&] {
    const auto sid = Make<CSid>();
    sid->PutSidBuffer(BuildSid(row.authority, {&row.sub_authority, 1}));
    sid->ComputeSidText();
    const Text name = sid->AccountName();
    if (name.empty() || name == kAccountUnknown) return;
    sid->SetWellKnownGroupType(row.type);
    group = Make<CGroup>();
    group->GroupName = name;
    group->DomainName = sid->AccountDomain();
    group->WellKnownGroupType = row.type;
    group->GroupType = GT_WellKnownGroup;
    group->SetSid(sid);
  });
  return group;
}

void AddRow(CGroups& groups, const Row& row) {
  const auto group = BuildWellKnownGroup(row);
  if (!group) return;
  groups.Add(group.Get());
  Swallow([&] { groups.AddWithKey(group.Get(), group->GetSid()->SidText()); });
  Swallow([&] { groups.AddWithKey(group.Get(), group->AccountDisplayName()); });
}

}  // namespace

Ref<CGroups> BuildWellKnownGroups() {
  auto groups = Make<CGroups>();
  for (const Row& row : kEverywhere) AddRow(*groups, row);
  std::int32_t version = 0;
  Swallow([&] {
    CSupport& engine = Engine();
    version = engine.GetServer(engine.ComputerName(), Text())->VersionMajor();
  });
  if (version < kFirstVersionWithServiceAccounts) return groups;
  for (const Row& row : kServiceAccounts) AddRow(*groups, row);
  return groups;
}

Ref<CGroup> FindWellKnownGroup(const Text& domain, const Text& name) {
  Ref<CGroup> group;
  Swallow([&] {
    const Ref<CGroups> groups = Apartment::Current().well_known_groups;
    if (!groups) return;
    Variant key(ToUpper(QualifiedName(domain, name)));
    group = groups->Item(key);
  });
  Err().Clear();
  return group;
}

}  // namespace veldmark
