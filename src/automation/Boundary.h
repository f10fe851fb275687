#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "automation/Conversion.h"
#include "automation/Error.h"
#include "automation/Interface.h"

namespace veldmark {

class Enumerator;

/// An exported class, known by its table.
template <class T>
concept ExportedClass = std::derived_from<T, Object> && requires {
  { T::Describe() } -> std::same_as<const Interface&>;
};

/// An enumeration with named values: a 32-bit enum for which `DescribeEnumeration(E)` is found by
/// its argument.
template <class T>
concept ExportedEnumeration = std::is_enum_v<T> && requires(T value) {
  { DescribeEnumeration(value) } -> std::same_as<const Enumeration&>;
};

/// How a C++ value crosses the boundary as a variant: `Type` describes it, `FromVariant` converts
/// and raises 13 or 6 where it can't, `ToVariant` hands it out.
template <class T>
struct Boundary;

template <class T, BoundaryType kType, T (*kConvert)(const Variant&)>
struct PlainBoundary {
  static constexpr TypeReference Type() { return {.type = kType}; }
  static T FromVariant(const Variant& value) { return kConvert(value); }
  static Variant ToVariant(T value) { return Variant(std::move(value)); }
};

template <>
struct Boundary<bool> : PlainBoundary<bool, BoundaryType::kBoolean, ToBoolean> {};
template <>
struct Boundary<std::uint8_t> : PlainBoundary<std::uint8_t, BoundaryType::kByte, ToByte> {};
template <>
struct Boundary<std::int16_t> : PlainBoundary<std::int16_t, BoundaryType::kInteger, ToInteger> {};
template <>
struct Boundary<std::int32_t> : PlainBoundary<std::int32_t, BoundaryType::kLong, ToLong> {};
template <>
struct Boundary<std::int64_t> : PlainBoundary<std::int64_t, BoundaryType::kLongLong, ToLongLong> {};
template <>
struct Boundary<double> : PlainBoundary<double, BoundaryType::kDouble, ToDouble> {};
template <>
struct Boundary<Currency> : PlainBoundary<Currency, BoundaryType::kCurrency, ToCurrency> {};
template <>
struct Boundary<Date> : PlainBoundary<Date, BoundaryType::kDate, ToDate> {};
template <>
struct Boundary<Text> : PlainBoundary<Text, BoundaryType::kText, ToText> {};

template <>
struct Boundary<Variant> {
  static constexpr TypeReference Type() { return {.type = BoundaryType::kVariant}; }
  static Variant FromVariant(const Variant& value) { return value.Dereferenced(); }
  static Variant ToVariant(Variant value) { return value; }
};

/// What lies behind references to variants; a reference to a typed variable is left as it is.
inline const Variant& BehindReferences(const Variant& value) {
  const Variant* plain = &value;
  while (const Reference* reference = plain->If<Reference>()) {
    Variant* const* next = std::get_if<Variant*>(reference);
    if (!next) break;
    plain = *next;
  }
  return *plain;
}

/// A script's array, whose elements are variants, converts element by element.
template <class T, BoundaryType kType>
struct ArrayBoundary {
  static constexpr TypeReference Type() { return {.type = kType}; }
  static T FromVariant(const Variant& value) {
    const Variant& plain = BehindReferences(value);
    if (const T* array = plain.If<T>()) return *array;
    const VariantArray* loose = plain.If<VariantArray>();
    if (!loose) Raise(runtime_error::kTypeMismatch);
    T array;
    array.bounds = loose->bounds;
    array.elements.reserve(loose->elements.size());
    for (const Variant& element : loose->elements) {
      array.elements.push_back(
          Boundary<typename decltype(array.elements)::value_type>::FromVariant(element));
    }
    return array;
  }
  static Variant ToVariant(T value) { return Variant(std::move(value)); }
};

template <>
struct Boundary<ByteArray> : ArrayBoundary<ByteArray, BoundaryType::kByteArray> {};
template <>
struct Boundary<LongArray> : ArrayBoundary<LongArray, BoundaryType::kLongArray> {};
template <>
struct Boundary<TextArray> : ArrayBoundary<TextArray, BoundaryType::kTextArray> {};

template <>
struct Boundary<Ref<Object>> {
  static constexpr TypeReference Type() { return {.type = BoundaryType::kAnyObject}; }
  static Ref<Object> FromVariant(const Variant& value) { return ToObject(value); }
  static Variant ToVariant(Ref<Object> value) { return Variant(std::move(value)); }
};

template <>
struct Boundary<Ref<Enumerator>> {
  static constexpr TypeReference Type() { return {.type = BoundaryType::kEnumerator}; }
  static Ref<Enumerator> FromVariant(const Variant& value);
  static Variant ToVariant(Ref<Enumerator> value);
};

/// An object argument is told by its class: another class raises 13; an empty variant is Nothing,
/// so that a script's fresh variable serves as an out-argument.
template <ExportedClass Class>
struct Boundary<Ref<Class>> {
  static constexpr TypeReference Type() {
    return {.type = BoundaryType::kClass, .class_table = &Class::Describe};
  }
  static Ref<Class> FromVariant(const Variant& value) {
    const Variant plain = value.Dereferenced();
    if (plain.Type() == VariantType::kEmpty) return nullptr;
    return Narrow(ToObject(plain));
  }
  static Variant ToVariant(Ref<Class> value) { return Variant(std::move(value)); }
  static Ref<Class> Narrow(const Ref<Object>& object) {
    if (!object) return nullptr;
    if (&object->GetInterface() != &Class::Describe()) Raise(runtime_error::kTypeMismatch);
    return static_cast<Class*>(object.Get());
  }
};

template <ExportedEnumeration E>
struct Boundary<E> {
  static const Enumeration& Table() { return DescribeEnumeration(E{}); }
  static constexpr TypeReference Type() {
    return {.type = BoundaryType::kEnumeration, .enumeration_table = &Table};
  }
  static E FromVariant(const Variant& value) { return static_cast<E>(ToLong(value)); }
  static Variant ToVariant(E value) { return Variant(static_cast<std::int32_t>(value)); }
};

/// How a C++ parameter is declared: by value, `const&`, `TextView` and `Class*` are in-arguments, a
/// plain reference is a by-reference argument.
template <class P>
struct ParameterForm {
  using Value = std::remove_cvref_t<P>;
  static constexpr bool kByReference =
      std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;
  static P Pass(Value& value) {
    if constexpr (std::is_reference_v<P>) {
      return value;
    } else {
      return std::move(value);
    }
  }
};
template <>
struct ParameterForm<TextView> {
  using Value = Text;
  static constexpr bool kByReference = false;
  static TextView Pass(Value& value) { return value; }
};
template <class Class>
struct ParameterForm<Class*> {
  using Value = Ref<Class>;
  static constexpr bool kByReference = false;
  static Class* Pass(Value& value) { return value.Get(); }
};

/// A parameter as the calling adapters see it: `Value&` for a by-reference one, `Value` for any
/// other.
template <class P>
using ArgumentOf =
    std::conditional_t<ParameterForm<P>::kByReference, typename ParameterForm<P>::Value&,
                       typename ParameterForm<P>::Value>;

/// The type of an argument or a result at the boundary.
template <class A>
constexpr TypeReference TypeReferenceOf() {
  if constexpr (std::is_void_v<A>) {
    return {};
  } else {
    TypeReference type = Boundary<std::remove_reference_t<A>>::Type();
    type.by_reference = std::is_lvalue_reference_v<A>;
    return type;
  }
}
template <class... A>
inline constexpr std::array<TypeReference, sizeof...(A)> kTypeReferences{TypeReferenceOf<A>()...};

/// A callable member: a member function, or a function that takes the object first.
///
/// What is made for each member is as little as can be, its `Target`: a function of the object and
/// the values of its arguments. All else is made once a signature, for all members that share it.
template <auto kMember>
struct MemberForm;

template <auto kMember, class C, class R, class... P>
struct MemberSignature {
  template <template <class...> class Receiver>
  using Apply = Receiver<std::remove_cvref_t<R>, ArgumentOf<P>...>;

  static std::remove_cvref_t<R> Target(Object& self, typename ParameterForm<P>::Value&... values) {
    C& object = static_cast<C&>(self);
    if constexpr (std::is_member_pointer_v<decltype(kMember)>) {
      return (object.*kMember)(ParameterForm<P>::Pass(values)...);
    } else {
      return kMember(object, ParameterForm<P>::Pass(values)...);
    }
  }
};

template <class C, class R, class... P, R (C::*kMember)(P...)>
struct MemberForm<kMember> : MemberSignature<kMember, C, R, P...> {};
template <class C, class R, class... P, R (C::*kMember)(P...) const>
struct MemberForm<kMember> : MemberSignature<kMember, C, R, P...> {};
template <class C, class R, class... P, R (*kMember)(C&, P...)>
struct MemberForm<kMember> : MemberSignature<kMember, C, R, P...> {};

/// Calls and writes by-reference arguments back, also when the call raises: a member has cleared
/// its out-arguments then, and the caller is to see that. The call's own error stays the one that
/// is told, whatever the writing meets.
template <class Call, class WriteBack>
void CallThenWriteBack(Call call, WriteBack write_back) {
  try {
    call();
  } catch (...) {
    try {
      write_back();
    } catch (...) {
      // The caller can't be told two errors.
    }
    throw;
  }
  write_back();
}

/// The same for a member itself, with its arguments converted: its error stands in `Err` also where
/// it has no handler, while that of an argument refused before leaves `Err` alone.
template <class Call, class WriteBack>
void CallMemberThenWriteBack(Call call, WriteBack write_back) {
  const auto call_member = [&call] {
    try {
      call();
    } catch (...) {
      ErrObject::KeepCurrent();
      throw;
    }
  };
  CallThenWriteBack(call_member, write_back);
}

}  // namespace veldmark
