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

/// A parameter's name in a declaration, with its default where it is optional.
struct ParameterName {
  ParameterName(const char16_t* name) : name(name) {}
  ParameterName(const char16_t* name, Variant default_value)
      : name(name), default_value(std::move(default_value)) {}

  Text name;
  std::optional<Variant> default_value;
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

template <class Constant, class Class, class Result, class... P>
struct LateBound {
  static Variant Invoke(Object& self, std::span<Variant> arguments) {
    return InvokeWith(static_cast<Class&>(self), arguments, std::index_sequence_for<P...>());
  }

 private:
  template <std::size_t... I>
  static Variant InvokeWith(Class& self, [[maybe_unused]] std::span<Variant> arguments,
                            std::index_sequence<I...>) {
    using Form = MemberForm<Constant::value>;
    [[maybe_unused]] std::tuple<typename ParameterForm<P>::Value...> values{
        ReadArgument<typename ParameterForm<P>::Value>(arguments[I])...};
    const auto write_back = [&] { (WriteBack<P>(arguments[I], std::get<I>(values)), ...); };
    Variant result;
    const auto call = [&] {
      if constexpr (std::is_void_v<Result>) {
        Form::Call(self, ParameterForm<P>::Pass(std::get<I>(values))...);
      } else {
        result = Boundary<Result>::ToVariant(
            Form::Call(self, ParameterForm<P>::Pass(std::get<I>(values))...));
      }
    };
    CallMemberThenWriteBack(call, write_back);
    return result;
  }

  // What the member left as it was stays as the caller typed it. A fresh variable takes the
  // parameter's type all the same: an object's then holds Nothing.
  template <class Q>
  static void WriteBack([[maybe_unused]] Variant& argument,
                        [[maybe_unused]] typename ParameterForm<Q>::Value& value) {
    if constexpr (ParameterForm<Q>::kByReference) {
      using Form = Boundary<typename ParameterForm<Q>::Value>;
      const bool fresh = BehindReferences(argument).Type() == VariantType::kEmpty;
      if (fresh || !(Form::FromVariant(argument) == value)) argument.Assign(Form::ToVariant(value));
    }
  }
};

template <auto kField>
struct FieldForm;
template <class C, class T, T C::*kField>
struct FieldForm<kField> {
  static T Get(C& self) { return self.*kField; }
  static void Put(C& self, T value) { self.*kField = std::move(value); }
};

/// Adds the next slot. Identifiers count from 1 in the order of the names; a put takes that of its
/// get.
void Append(Interface& table, Member member, TextView name, TextView help, ParameterNames names);
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
  Declare(TextView name, TextView help) {
    table_.name = name;
    table_.help = help;
    table_.create = [] { return Ref<Object>(Make<Class>()); };
  }

  /// A get and put property with code of its own.
  template <auto kGet, auto kPut>
  Declare&& Property(TextView name, TextView help) && {
    Add<kGet>(MemberKind::kGet, name, help, {});
    Add<kPut>(MemberKind::kPut, name, help, {u"Value"});
    return std::move(*this);
  }
  /// A property that can only be written, or the put of one whose get has an earlier slot.
  template <auto kPut>
  Declare&& Put(TextView name, TextView help) && {
    Add<kPut>(MemberKind::kPut, name, help, {u"Value"});
    return std::move(*this);
  }
  /// A get and put property that is a plain stored value: a public field of the class.
  template <auto kField>
  Declare&& Stored(TextView name, TextView help) && {
    using Form = declaration::FieldForm<kField>;
    return std::move(*this).template Property<&Form::Get, &Form::Put>(name, help);
  }
  /// A read-only property, with parameters where it has some.
  template <auto kGet>
  Declare&& Get(TextView name, TextView help, ParameterNames names = {}) && {
    Add<kGet>(MemberKind::kGet, name, help, names);
    return std::move(*this);
  }
  template <auto kMethod>
  Declare&& Method(TextView name, TextView help, ParameterNames names = {}) && {
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
  void Add(MemberKind kind, TextView name, TextView help, ParameterNames names) {
    using Form = MemberForm<kMember>;
    Member member;
    member.kind = kind;
    member.parameters = Form::Parameters();
    member.result = Form::ResultType();
    member.invoke = &Form::template Apply<declaration::LateBound, kMember>::Invoke;
#ifdef _WIN32
    member.thunk = reinterpret_cast<Member::Thunk>(&Form::template Apply<Thunk, kMember>::Call);
#endif
    declaration::Append(table_, std::move(member), name, help, names);
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
  DeclareEvents(TextView name, TextView help) {
    table_.name = name;
    table_.help = help;
  }
  template <class... P>
  DeclareEvents&& Event(TextView name, TextView help, ParameterNames names = {}) && {
    Add(name, help, MemberSignature<Object, void, P...>::Parameters(), names);
    return std::move(*this);
  }
  operator EventInterface() && { return std::move(table_); }

 private:
  void Add(TextView name, TextView help, std::vector<Parameter> parameters, ParameterNames names);

  EventInterface table_;
};

/// Builds the table of an enumeration.
template <class E>
class DeclareEnumeration {
 public:
  DeclareEnumeration(TextView name, TextView help) {
    table_.name = name;
    table_.help = help;
  }
  DeclareEnumeration&& Value(TextView name, E value, TextView help) && {
    table_.values.push_back({Text(name), static_cast<std::int32_t>(value), Text(help)});
    return std::move(*this);
  }
  operator Enumeration() && { return std::move(table_); }

 private:
  Enumeration table_;
};

}  // namespace veldmark
