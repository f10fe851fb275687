#include "automation/Declare.h"

#include <cassert>

namespace veldmark {
namespace {

void NameParameters(std::vector<Parameter>& parameters, ParameterNames names) {
  assert(parameters.size() == names.size());
  auto parameter = parameters.begin();
  for (const ParameterName& name : names) {
    parameter->name = name.name;
    parameter->default_value = name.default_value;
    ++parameter;
  }
}

}  // namespace

namespace declaration {

void Append(Interface& table, Member member, TextView name, TextView help, ParameterNames names) {
  member.name = name;
  member.help = help;
  NameParameters(member.parameters, names);
  const auto next = static_cast<std::int32_t>(table.ids.size() + 1);
  member.id = table.ids.try_emplace(member.name, next).first->second;
  table.members.push_back(std::move(member));
}

void Renumber(Interface& table, std::int32_t id) {
  Member& latest = table.members.back();
  table.ids[latest.name] = id;
  latest.id = id;
}

}  // namespace declaration

void DeclareEvents::Add(TextView name, TextView help, std::vector<Parameter> parameters,
                        ParameterNames names) {
  NameParameters(parameters, names);
  table_.events.push_back({Text(name), Text(help),
                           static_cast<std::int32_t>(table_.events.size() + 1),
                           std::move(parameters)});
}

}  // namespace veldmark
