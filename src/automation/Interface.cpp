#include "automation/Interface.h"

#include <algorithm>

namespace veldmark {
namespace {

char16_t Lowered(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

}  // namespace

std::size_t MemberNameHash::operator()(TextView name) const noexcept {
  std::uint32_t hash = 2166136261u;  // FNV-1a
  for (const char16_t unit : name) hash = (hash ^ Lowered(unit)) * 16777619u;
  return hash;
}

bool MemberNameEqual::operator()(TextView left, TextView right) const noexcept {
  return std::ranges::equal(left, right, {}, Lowered, Lowered);
}

void RaiseArgumentError(const Variant& argument) { throw ArgumentError(CurrentError(), argument); }

Interface::Interface() = default;
Interface::Interface(Interface&& other) noexcept = default;
Interface::~Interface() = default;

std::int32_t Interface::IdOf(TextView member_name) const {
  const auto found = ids.find(member_name);
  return found == ids.end() ? kUnknownMember : found->second;
}

const Member* Interface::Find(std::int32_t id, std::uint16_t kinds) const {
  for (const Member& member : members) {
    if (member.id == id && (static_cast<std::uint16_t>(member.kind) & kinds) != 0) return &member;
  }
  return nullptr;
}

Variant Call(Object& self, const Member& member, std::span<Variant> arguments) {
  const std::vector<Parameter>& parameters = member.parameters;
  if (arguments.size() > parameters.size()) Raise(runtime_error::kWrongNumberOfArguments);

  const auto fill = [&parameters](std::size_t position, Variant& argument) {
    if (!argument.IsMissing()) return;
    const Parameter& parameter = parameters[position];
    if (!parameter.default_value) Raise(runtime_error::kArgumentNotOptional);
    argument = *parameter.default_value;
  };
  for (std::size_t i = 0; i < arguments.size(); ++i) fill(i, arguments[i]);
  if (arguments.size() == parameters.size()) return member.Invoke(self, arguments);

  std::vector<Variant> complete(arguments.begin(), arguments.end());
  complete.resize(parameters.size(), Variant::Missing());
  for (std::size_t i = arguments.size(); i < complete.size(); ++i) fill(i, complete[i]);
  struct WriteBack {
    std::span<Variant> to;
    std::vector<Variant>& from;
    ~WriteBack() {
      std::move(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(to.size()), to.begin());
    }
  } const write_back{arguments, complete};
  return member.Invoke(self, complete);
}

Variant Call(Object& self, TextView name, MemberKind kind, std::vector<Variant> arguments) {
  const Interface& table = self.GetInterface();
  const Member* member = table.Find(table.IdOf(name), static_cast<std::uint16_t>(kind));
  if (!member) Raise(runtime_error::kNoSuchMember);
  return Call(self, *member, arguments);
}

Text TypeName(const Object* object) {
  return object ? object->GetInterface().name : Text(u"Nothing");
}

}  // namespace veldmark
