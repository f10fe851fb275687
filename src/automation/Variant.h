#pragma once

#include <concepts>
#include <cstdint>
#include <variant>

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Values.h"

namespace veldmark {

class Variant;
using VariantArray = Array<Variant>;

/// The automation Null, which is no value at all and differs from an empty variant.
struct Null {
  bool operator==(const Null&) const = default;
};

/// The caller's variable behind a by-reference value. It must outlive the call that passes it.
using Reference = std::variant<bool*, std::uint8_t*, std::int16_t*, std::int32_t*, std::int64_t*,
                               double*, Currency*, Date*, Text*, Ref<Object>*, Variant*>;

/// The types a variant can hold, in the order of their alternatives.
enum class VariantType {
  kEmpty,
  kNull,
  kBoolean,
  kByte,
  kInteger,
  kLong,
  kLongLong,
  kDouble,
  kCurrency,
  kDate,
  kText,
  kObject,
  kStatus,
  kReference,
  kByteArray,
  kLongArray,
  kTextArray,
  kVariantArray,
};

template <class T, class Storage>
inline constexpr bool kIsAlternative = false;
template <class T, class... Alternatives>
inline constexpr bool kIsAlternative<T, std::variant<Alternatives...>> =
    (std::is_same_v<T, Alternatives> || ...);

template <class T, class Storage>
inline constexpr std::size_t kAlternative = 0;  // the end of the list
template <class T, class First, class... Rest>
inline constexpr std::size_t kAlternative<T, std::variant<First, Rest...>> =
    std::is_same_v<T, First> ? 0 : 1 + kAlternative<T, std::variant<Rest...>>;

/// One automation value. An empty object reference is Nothing and differs from an empty variant.
class Variant {
 public:
  using Storage = std::variant<std::monostate, Null, bool, std::uint8_t, std::int16_t, std::int32_t,
                               std::int64_t, double, Currency, Date, Text, Ref<Object>, Status,
                               Reference, ByteArray, LongArray, TextArray, VariantArray>;

  // In Variant.cpp: made in every source that holds a variant, they would take a good part of the
  // build.
  Variant() noexcept;
  Variant(const Variant& other);
  Variant(Variant&& other) noexcept;
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept;
  ~Variant();

  /// Only the exact types: nothing turns silently into a Boolean or a wider number.
  template <class T>
  requires kIsAlternative<std::remove_cvref_t<T>, Storage> Variant(T&& value)
      : storage_(std::in_place_type<std::remove_cvref_t<T>>, std::forward<T>(value)) {}
  Variant(TextView text) : storage_(std::in_place_type<Text>, text) {}
  Variant(const char16_t* text) : Variant(TextView(text)) {}
  template <class T>
  requires std::derived_from<T, Object> Variant(Ref<T> object)
      : storage_(std::in_place_type<Ref<Object>>, std::move(object)) {}

  /// What stands for an argument that the caller left out.
  static Variant Missing() { return Variant(Status{Status::kParameterNotFound}); }
  template <class T>
  static Variant ByReference(T& variable) {
    return Variant(Reference(&variable));
  }

  /// The type of variant that holds a `T`.
  template <class T>
  static constexpr VariantType kTypeOf = static_cast<VariantType>(kAlternative<T, Storage>);

  VariantType Type() const { return static_cast<VariantType>(storage_.index()); }
  bool IsMissing() const {
    const Status* status = If<Status>();
    return status && status->code == Status::kParameterNotFound;
  }
  template <class T>
  const T* If() const {
    return std::get_if<T>(&storage_);
  }
  template <class T>
  T* If() {
    return std::get_if<T>(&storage_);
  }
  const Storage& Get() const { return storage_; }

  /// The value itself: a by-reference variant is read through, however often it is nested.
  Variant Dereferenced() const;

  /// Writes through a by-reference variant, converting to the variable's type; any other variant is
  /// overwritten. Raises 13 or 6 where the value doesn't convert.
  void Assign(const Variant& value);

  bool operator==(const Variant& other) const;

 private:
  Storage storage_;
};

}  // namespace veldmark
