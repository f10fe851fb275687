#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "automation/Error.h"
#include "automation/Identity.h"
#include "automation/Object.h"
#include "automation/Variant.h"

namespace veldmark {

struct Enumeration;

/// The types that a member's arguments and result can have at the boundary.
enum class BoundaryType {
  kVoid,
  kBoolean,
  kByte,
  kInteger,
  kLong,
  kLongLong,
  kDouble,
  kCurrency,
  kDate,
  kText,
  kVariant,
  kClass,        ///< one of the exported classes
  kAnyObject,    ///< any automation object
  kEnumerator,   ///< the enumerator behind For Each
  kEnumeration,  ///< a 32-bit integer with named values
  kByteArray,
  kLongArray,
  kTextArray,
};

struct TypeReference {
  BoundaryType type = BoundaryType::kVoid;
  bool by_reference = false;
  bool secret = false;                                  ///< a text to be wiped after the call
  const Interface& (*class_table)() = nullptr;          ///< with `kClass`
  const Enumeration& (*enumeration_table)() = nullptr;  ///< with `kEnumeration`
};

struct Parameter {
  Text name;
  TypeReference type;
  std::optional<Variant> default_value;  ///< present for an optional parameter
};

/// The ways to call a member, with the values of the platform's invocation flags.
enum class MemberKind : std::uint16_t { kMethod = 1, kGet = 2, kPut = 4 };

/// One slot of an interface.
struct Member {
  /// The member itself, as a function with the signature that its invoker knows.
  using Target = void (*)();
  /// Calls a target late-bound: one variant a parameter, none missing. By-reference arguments are
  /// written back, also when the member raises. Members of the same signature share one.
  using Invoker = Variant (*)(Target target, Object& self, std::span<Variant> arguments);
  /// The early-bound entry, with the signature that the type library gives it.
  using Thunk = void (*)();

  Text name;
  Text help;
  Text remark;  ///< what may surprise a caller, and errors, for the reference; mostly empty
  MemberKind kind = MemberKind::kMethod;
  std::int32_t id = 0;
  bool hidden = false;
  std::vector<Parameter> parameters;
  TypeReference result;
  Target target = nullptr;
  Invoker invoker = nullptr;
  Thunk thunk = nullptr;

  Variant Invoke(Object& self, std::span<Variant> arguments) const {
    return invoker(target, self, arguments);
  }
};

/// One event of an event interface; its members are called by the library and implemented by the
/// listener.
struct Event {
  Text name;
  Text help;
  std::int32_t id = 0;
  std::vector<Parameter> parameters;
};

struct EventInterface {
  Text name;
  Text help;
  std::vector<Event> events;

  Identity InterfaceIdentity() const { return IdentityOf("interface " + ToUtf8(name)); }
};

struct Enumeration {
  struct Value {
    Text name;
    std::int32_t value = 0;
    Text help;
  };
  Text name;
  Text help;
  std::vector<Value> values;

  Identity EnumerationIdentity() const { return IdentityOf("enumeration " + ToUtf8(name)); }
};

/// Member identifiers by name. Names compare without regard to ASCII case and are looked up as
/// they come, without a copy.
struct MemberNameHash {
  using is_transparent = void;
  std::size_t operator()(TextView name) const noexcept;
};
struct MemberNameEqual {
  using is_transparent = void;
  bool operator()(TextView left, TextView right) const noexcept;
};
using MemberIds = std::unordered_map<Text, std::int32_t, MemberNameHash, MemberNameEqual>;

/// The identifiers with a fixed meaning.
inline constexpr std::int32_t kDefaultMember = 0;
inline constexpr std::int32_t kEnumeratorMember = -4;
inline constexpr std::int32_t kUnknownMember = -1;

/// An exported class: its dual interface, members in slot order, and its events.
struct Interface {
  Text name;  ///< the class's name, `CFolder`; the interface is `_CFolder`
  Text help;
  std::vector<Member> members;
  const EventInterface* events = nullptr;
  Ref<Object> (*create)() = nullptr;
  MemberIds ids;

  // In Interface.cpp, for the build's sake.
  Interface();
  Interface(Interface&& other) noexcept;
  ~Interface();

  Text InterfaceName() const { return u"_" + name; }
  Text ProgramIdentity() const { return u"Veldmark2." + name; }
  Identity ClassIdentity() const { return IdentityOf("class " + ToUtf8(name)); }
  Identity InterfaceIdentity() const { return IdentityOf("interface _" + ToUtf8(name)); }

  /// The identifier of a member by its name in any case, or `kUnknownMember`.
  std::int32_t IdOf(TextView member_name) const;
  /// The member with this identifier that can be called in one of the ways `kinds` (a union of
  /// `MemberKind` values); null when there is none.
  const Member* Find(std::int32_t id, std::uint16_t kinds) const;
};

/// What `Member::Invoke` raises for an argument that doesn't convert to its parameter's type, with
/// the error of the conversion.
class ArgumentError : public AutomationError {
 public:
  ArgumentError(AutomationError error, const Variant& refused)
      : AutomationError(std::move(error)), argument(&refused) {}

  const Variant* argument;  ///< where it stands in the call's arguments
};

/// Raises the error being handled as that of converting `argument`.
[[noreturn]] void RaiseArgumentError(const Variant& argument);

/// Calls a member late-bound. `arguments` are positional, `Variant::Missing()` standing for one
/// left out; a property put has the value last. Raises what the member raises, 438, 449 or 450 for
/// a call that doesn't fit the member, and 13 or 6 for an argument that doesn't convert.
Variant Call(Object& self, const Member& member, std::span<Variant> arguments);
Variant Call(Object& self, TextView name, MemberKind kind, std::vector<Variant> arguments = {});

/// The class name of an object as text; "Nothing" for none.
Text TypeName(const Object* object);

}  // namespace veldmark
