#pragma once

#include "accounts/GroupType.h"
#include "apartment/AsyncFetching.h"
#include "apartment/Counted.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "security/CSid.h"

namespace veldmark {

class CGroups;
class CUsers;

/// A group of a computer or domain, or a well-known one.
///
/// A listed global group knows its name, domain and server. The first read of comment, number or
/// attributes fetches them, once: of a global group by `NetGroupGetInfo` from the controller that
/// the network's domains lead to, of a local one by `NetLocalGroupGetInfo`. Such a read raises the
/// platform's error, and the next one tries again.
///
/// With `AsyncFetch` on, the walks over members deliver each by the events UserFound and
/// GroupFound, and the lists that they return are empty. The group then also passes on what any
/// other walk of the apartment delivers by events.
class CGroup : public AsyncFetching<CGroup>, Counted<Counter::kGroup> {
 public:
  static const Interface& Describe();
  /// A local group of a server that `Update` is to make; nothing is written before.
  static Ref<CGroup> CreateLocal(Text group_name, Text server_name);

  /// The users in the group, machine accounts left out; Nothing for a well-known group.
  Ref<CUsers> GetUsers();
  /// The groups in a local group; Nothing for any other, whose members are users.
  Ref<CGroups> GetGroups();
  /// Both in one walk. Of a global group `groups` becomes Nothing; of a group that is neither
  /// global nor local both stay as they are. The result is empty.
  Variant GetGroupMembers(Ref<CGroups>& groups, Ref<CUsers>& users);
  /// The one that a member walk stored, or else looked up anew each time; it stays without a SID
  /// where the account isn't found. Never raises.
  Ref<CSid> GetSid();

  Text GroupName;
  /// A put before the first read is overwritten by what that read fetches; `Update` writes what was
  /// put.
  Text Comment();
  void PutComment(const Text& comment) { comment_ = comment; }
  std::int32_t GroupId();
  void PutGroupId(std::int32_t group_id) { group_id_ = group_id; }
  std::int32_t Attributes();
  void PutAttributes(std::int32_t attributes) { attributes_ = attributes; }
  GroupTypeEnum GroupType = GT_LocalGroup;
  Text DomainName;
  Text ServerName;  ///< with or without "\\" before it
  WellKnownGroupTypeEnum WellKnownGroupType = WKG_EVERYONE;
  /// "\\SRV\Staff" or "CORP\Staff"; the name alone without a domain or an account.
  Text AccountDisplayName() const;
  /// Writes name and comment, of a group of `CreateLocal` as a new one each time: the second fails.
  /// Raises the platform's error.
  void Update();

  /// The platform's record of the group is in the object; nothing is fetched any more.
  void SetPopulated(bool populated) { populated_ = populated; }
  void SetSid(Ref<CSid> sid) { sid_ = std::move(sid); }

 private:
  void OnObjectFound(Object& object, bool& cancel) override;
  void Fetch();

  Text comment_;
  std::int32_t group_id_ = 0;
  std::int32_t attributes_ = 0;
  Ref<CSid> sid_;
  bool populated_ = false;
  bool is_new_ = false;
};

}  // namespace veldmark
