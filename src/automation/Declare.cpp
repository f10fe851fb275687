#include "automation/Declare.h"

#include <cassert>

namespace veldmark {
namespace {

Variant ToVariant(const DefaultValue& value) {
  const auto make = [](const auto& plain) {
    if constexpr (std::is_same_v<decltype(plain), const std::monostate&>) {
      return Variant();
    } else {
      return Variant(plain);
    }
  };
  return std::visit(make, value);
}

std::vector<Parameter> Named(std::span<const TypeReference> types, ParameterNames names) {
  assert(types.size() == names.size());
  std::vector<Parameter> parameters;
  for (const ParameterName& name : names) {
    Parameter& parameter = parameters.emplace_back();
    parameter.name = name.name;
    parameter.type = types[parameters.size() - 1];
    if (name.default_value) parameter.default_value = ToVariant(*name.default_value);
  }
  return parameters;
}

}  // namespace

namespace declaration {

void Append(Interface& table, MemberKind kind, const Code& code, const char16_t* name,
            const char16_t* help, ParameterNames names) {
  Member& member = table.members.emplace_back();
  member.name = name;
  member.help = help;
  member.kind = kind;
  const auto next = static_cast<std::int32_t>(table.ids.size() + 1);
  member.id = table.ids.try_emplace(member.name, next).first->second;
  member.parameters = Named(code.signature.parameters, names);
  member.result = code.signature.result;
  member.target = code.target;
  member.invoker = code.signature.invoker;
  member.thunk = code.thunk;
}

void Append(Enumeration& table, const char16_t* name, std::int32_t value, const char16_t* help) {
  table.values.push_back({name, value, help});
}

void Renumber(Interface& table, std::int32_t id) {
  Member& latest = table.members.back();
  table.ids[latest.name] = id;
  latest.id = id;
}

}  // namespace declaration

void DeclareEvents::Add(const char16_t* name, const char16_t* help,
                        std::span<const TypeReference> parameters, ParameterNames names) {
  table_.events.push_back({Text(name), Text(help),
                           static_cast<std::int32_t>(table_.events.size() + 1),
                           Named(parameters, names)});
}

}  // namespace veldmark
