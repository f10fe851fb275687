#pragma once

#include <initializer_list>
#include <tuple>
#include <utility>

#include "automation/Boundary.h"
#include "automation/Interface.h"
#ifdef _WIN32
#include "automation/Thunk.h"
#endif

namespace veldmark {

/// What an optional parameter is when the caller leaves it out: empty, or one of these values.
using DefaultValue = std::variant<std::monostate, bool, std::int32_t, const char16_t*, Status>;

/// A parameter's name in a declaration, with its default where it is optional. Plain data, since a
/// table has hundreds of them.
struct ParameterName {
  constexpr ParameterName(const char16_t* name) : name(name) {}
  constexpr ParameterName(const char16_t* name, DefaultValue default_value)
      : name(name), default_value(default_value) {}

  const char16_t* name;
  std::optional<DefaultValue> default_value;
};
using ParameterNames = std::initializer_list<ParameterName>;

namespace declaration {

template <class T>
T ReadArgument(const Variant& argument) {
  try {
    return Boundary<T>::FromVariant(argument);
  } catch (...) {
    RaiseArgumentError(argument);
  }
}

/// The late-bound adapter of all members of a signature.
template <class Result, class... A>
struct LateBound {
  using Target = Result (*)(Object& self, std::remove_reference_t<A>&... values);

  static Variant Invoke(Member::Target target, Object& self, std::span<Variant> arguments) {
    return InvokeWith(reinterpret_cast<Target>(target), self, arguments,
                      std::index_sequence_for<A...>());
  }

 private:
  template <std::size_t... I>
  static Variant InvokeWith(Target target, Object& self,
                            [[maybe_unused]] std::span<Variant> arguments,
                            std::index_sequence<I...>) {
    [[maybe_unused]] std::tuple<std::remove_reference_t<A>...> values{
        ReadArgument<std::remove_reference_t<A>>(arguments[I])...};
    const auto write_back = [&] { (WriteBack<A>(arguments[I], std::get<I>(values)), ...); };
    Variant result;
    const auto call = [&] {
      if constexpr (std::is_void_v<Result>) {
        target(self, std::get<I>(values)...);
      } else {
        result = Boundary<Result>::ToVariant(target(self, std::get<I>(values)...));
      }
    };
    CallMemberThenWriteBack(call, write_back);
    return result;
  }

  // What the member left as it was stays as the caller typed it. A fresh variable takes the
  // parameter's type all the same: an object's then holds Nothing.
  template <class B>
  static void WriteBack([[maybe_unused]] Variant& argument,
                        [[maybe_unused]] std::remove_reference_t<B>& value) {
    if constexpr (std::is_lvalue_reference_v<B>) {
      using Form = Boundary<std::remove_reference_t<B>>;
      const bool fresh = BehindReferences(argument).Type() == VariantType::kEmpty;
      if (fresh || !(Form::FromVariant(argument) == value)) argument.Assign(Form::ToVariant(value));
    }
  }
};

/// What members of the same signature have in common.
struct Signature {
  std::span<const TypeReference> parameters;
  TypeReference result;
  Member::Invoker invoker = nullptr;
};
template <class Result, class... A>
struct SignatureOf {
  static constexpr Signature kValue{kTypeReferences<A...>, TypeReferenceOf<Result>(),
                                    &LateBound<Result, A...>::Invoke};
};

template <auto kField>
struct FieldForm;
template <class C, class T, T C::*kField>
struct FieldForm<kField> {
  static T Get(C& self) { return self.*kField; }
  static void Put(C& self, T value) { self.*kField = std::move(value); }
};

/// What a declaration gives of a member beside its names.
struct Code {
  const Signature& signature;
  Member::Target target;
  Member::Thunk thunk;
};

/// Adds the next slot. Identifiers count from 1 in the order of the names; a put takes that of its
/// get.
void Append(Interface& table, MemberKind kind, const Code& code, const char16_t* name,
            const char16_t* help, ParameterNames names);
void Append(Enumeration& table, const char16_t* name, std::int32_t value, const char16_t* help);
/// Gives the latest member a fixed identifier.
void Renumber(Interface& table, std::int32_t id);

}  // namespace declaration

/// Builds the table of an exported class, slot after slot:
///
///     static const Interface table = Declare<CPathName>(u"CPathName", u"One line of a folder
///     listing.")
///                                        .Stored<&CPathName::PathName>(u"PathName", u"Full plain
///                                        path.");
///
/// A member's name is its published one; a property's get and put share an identifier and take two
/// slots, get first.
template <ExportedClass Class>
class Declare {
 public:
  Declare(const char16_t* name, const char16_t* help) {
    table_.name = name;
    table_.help = help;
    table_.create = [] { return Ref<Object>(Make<Class>()); };
  }

  /// A get and put property with code of its own.
  template <auto kGet, auto kPut>
  Declare&& Property(const char16_t* name, const char16_t* help) && {
    Add<kGet>(MemberKind::kGet, name, help, {});
    Add<kPut>(MemberKind::kPut, name, help, {u"Value"});
    return std::move(*this);
  }
  /// A property that can only be written, or the put of one whose get has an earlier slot.
  template <auto kPut>
  Declare&& Put(const char16_t* name, const char16_t* help) && {
    Add<kPut>(MemberKind::kPut, name, help, {u"Value"});
    return std::move(*this);
  }
  /// A get and put property that is a plain stored value: a public field of the class.
  template <auto kField>
  Declare&& Stored(const char16_t* name, const char16_t* help) && {
    using Form = declaration::FieldForm<kField>;
    return std::move(*this).template Property<&Form::Get, &Form::Put>(name, help);
  }
  /// A read-only property, with parameters where it has some.
  template <auto kGet>
  Declare&& Get(const char16_t* name, const char16_t* help, ParameterNames names = {}) && {
    Add<kGet>(MemberKind::kGet, name, help, names);
    return std::move(*this);
  }
  template <auto kMethod>
  Declare&& Method(const char16_t* name, const char16_t* help, ParameterNames names = {}) && {
    Add<kMethod>(MemberKind::kMethod, name, help, names);
    return std::move(*this);
  }
  /// Warns callers, in the reference, of what the latest member does beyond its help text: what it
  /// loses, what it leaves behind, the errors that it raises.
  Declare&& Remark(TextView remark) && {
    table_.members.back().remark = remark;
    return std::move(*this);
  }
  /// Makes the latest member the class's default member.
  Declare&& Default() && { return std::move(*this).Id(kDefaultMember); }
  /// Makes the latest member the one behind For Each, hidden from browsers.
  Declare&& Enumerates() && {
    table_.members.back().hidden = true;
    return std::move(*this).Id(kEnumeratorMember);
  }
  Declare&& Events(const EventInterface& events) && {
    table_.events = &events;
    return std::move(*this);
  }
  operator Interface() && { return std::move(table_); }

 private:
  template <auto kMember>
  void Add(MemberKind kind, const char16_t* name, const char16_t* help, ParameterNames names) {
    using Form = MemberForm<kMember>;
    constexpr auto kTarget = &Form::Target;
    Member::Thunk thunk = nullptr;
#ifdef _WIN32
    using Adapter = typename Form::template Apply<EarlyBound>;
    thunk = reinterpret_cast<Member::Thunk>(&Adapter::template Thunk<kTarget>);
#endif
    declaration::Append(table_, kind,
                        {Form::template Apply<declaration::SignatureOf>::kValue,
                         reinterpret_cast<Member::Target>(kTarget), thunk},
                        name, help, names);
  }
  Declare&& Id(std::int32_t id) && {
    declaration::Renumber(table_, id);
    return std::move(*this);
  }

  Interface table_;
};

/// Builds the table of an event interface; events are numbered from 1 in their order.
///
///     DeclareEvents(u"__CStatus", u"…").Event<const Text&>(u"Status", u"A progress text.",
///     {u"StatusMessage"})
class DeclareEvents {
 public:
  DeclareEvents(const char16_t* name, const char16_t* help) {
    table_.name = name;
    table_.help = help;
  }
  template <class... P>
  DeclareEvents&& Event(const char16_t* name, const char16_t* help, ParameterNames names = {}) && {
    Add(name, help, kTypeReferences<ArgumentOf<P>...>, names);
    return std::move(*this);
  }
  operator EventInterface() && { return std::move(table_); }

 private:
  void Add(const char16_t* name, const char16_t* help, std::span<const TypeReference> parameters,
           ParameterNames names);

  EventInterface table_;
};

/// Builds the table of an enumeration.
template <class E>
class DeclareEnumeration {
 public:
  DeclareEnumeration(const char16_t* name, const char16_t* help) {
    table_.name = name;
    table_.help = help;
  }
  DeclareEnumeration&& Value(const char16_t* name, E value, const char16_t* help) && {
    declaration::Append(table_, name, static_cast<std::int32_t>(value), help);
    return std::move(*this);
  }
  operator Enumeration() && { return std::move(table_); }

 private:
  Enumeration table_;
};

}  // namespace veldmark
