#include "platform/simulated/estate_file/UserReader.h"

#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {

void ReadUser(const Node& node, Estate& estate) {
  node.OnlyFields({"name", "sid", "groups", "privileges"});
  const Sid sid = ReadSid(node.Required("sid"));
  estate.SetUser(node.Required("name").String(), sid.ToText());
  if (const auto field = node.Field("groups")) {
    std::vector<Sid> groups;
    for (const Node& element : field->Elements()) groups.push_back(ReadSid(element));
    groups.insert(groups.end(), {EveryoneSid(), AuthenticatedUsersSid()});
    Token token(sid, std::move(groups));
    // What others than administrators lack, they can't enable either.
    if (token.Is(AdministratorsSid())) {
      for (const auto& [privilege, attributes] : estate.token().privileges()) {
        token.SetPrivilege(privilege, attributes);
      }
    }
    estate.SetToken(std::move(token));
  }
  if (const auto field = node.Field("privileges")) {
    estate.token().ClearPrivileges();
    for (const auto& [name, enabled] : field->Members()) {
      const auto privilege = FindPrivilege(FromUtf8(name));
      if (!privilege) enabled.Complain("there is no such privilege");
      estate.token().SetPrivilege(*privilege, enabled.Boolean() ? kSePrivilegeEnabled : 0);
    }
  }
}

}  // namespace veldmark::simulated
