#pragma once

#include <tuple>
#include <utility>

#include "automation/Abi.h"
#include "automation/Boundary.h"
#include "automation/CallInProgress.h"

namespace veldmark {

/// The raw form of a value at an early-bound call: `Read` converts an argument, `HandOut` makes
/// what the receiver owns, `Free` ends a raw value.
template <class T>
struct RawForm;

template <class T, class R>
struct ScalarRawForm {
  using Raw = R;
  static T Read(Raw raw) { return static_cast<T>(raw); }
  static Raw HandOut(const T& value) { return static_cast<Raw>(value); }
  static void Free(Raw&) {}
};
template <class T>
requires std::is_arithmetic_v<T>
struct RawForm<T> : ScalarRawForm<T, T> {
};
template <ExportedEnumeration E>
struct RawForm<E> : ScalarRawForm<E, std::int32_t> {};

template <>
struct RawForm<bool> {
  using Raw = std::int16_t;
  static bool Read(Raw raw) { return raw != 0; }
  static Raw HandOut(bool value) { return value ? -1 : 0; }
  static void Free(Raw&) {}
};
template <>
struct RawForm<Date> {
  using Raw = double;
  static Date Read(Raw raw) { return {raw}; }
  static Raw HandOut(Date value) { return value.days; }
  static void Free(Raw&) {}
};
template <>
struct RawForm<Currency> {
  using Raw = std::int64_t;
  static Currency Read(Raw raw) { return {raw}; }
  static Raw HandOut(Currency value) { return value.scaled; }
  static void Free(Raw&) {}
};
template <>
struct RawForm<Text> {
  using Raw = abi::RawText;
  static Text Read(Raw raw) { return Text(abi::View(raw)); }
  static Raw HandOut(const Text& value) { return abi::HandOutText(value); }
  static void Free(Raw& raw) { abi::Free(raw); }
};
template <>
struct RawForm<Variant> {
  using Raw = abi::RawVariant;
  static Variant Read(const Raw& raw) { return abi::Read(raw); }
  static Raw HandOut(const Variant& value) { return abi::HandOutVariant(value); }
  static void Free(Raw& raw) { abi::Free(raw); }
};
template <class Class>
struct RawForm<Ref<Class>> {
  using Raw = abi::RawObject;
  static Ref<Class> Read(Raw raw) {
    return Boundary<Ref<Class>>::FromVariant(Variant(abi::Read(raw)));
  }
  static Raw HandOut(const Ref<Class>& value) { return abi::HandOutObject(value.Get()); }
  static void Free(Raw& raw) { abi::FreeObject(raw); }
};
template <class T>
struct RawForm<Array<T>> {
  using Raw = abi::RawArray;
  static Array<T> Read(Raw raw) {
    Array<T> array;
    abi::Read(raw, array);
    return array;
  }
  static Raw HandOut(const Array<T>& value) { return abi::HandOutArray(value); }
  static void Free(Raw& raw) { abi::FreeArray(raw); }
};

template <class A>
using RawArgument = std::conditional_t<std::is_lvalue_reference_v<A>,
                                       typename RawForm<std::remove_reference_t<A>>::Raw*,
                                       typename RawForm<std::remove_reference_t<A>>::Raw>;

/// The early-bound work common to all members of a signature, with and without a result.
/// Out-arguments are cleared first and written back also when the member raises.
template <class Result, class... A>
struct EarlyBoundBody {
  using Target = Result (*)(Object& self, std::remove_reference_t<A>&... values);

 protected:
  template <class RawResult>
  static std::int32_t Run(Target target, BinaryFace* face, RawResult* result,
                          std::tuple<RawArgument<A>...> raw) noexcept {
    return RunWith(target, static_cast<Object&>(*face), result, raw,
                   std::index_sequence_for<A...>());
  }

 private:
  template <class RawResult, std::size_t... I>
  static std::int32_t RunWith(Target target, Object& self, RawResult* result,
                              [[maybe_unused]] std::tuple<RawArgument<A>...>& raw,
                              std::index_sequence<I...>) noexcept {
    if ((IsNull<A>(std::get<I>(raw)) || ...)) return abi::kNullPointer;
    const CallInProgress in_progress(self);
    try {
      [[maybe_unused]] std::tuple<std::remove_reference_t<A>...> values{
          Read<A>(std::get<I>(raw))...};
      const auto write_back = [&] { (WriteBack<A>(std::get<I>(raw), std::get<I>(values)), ...); };
      const auto call = [&] {
        if constexpr (std::is_void_v<Result>) {
          target(self, std::get<I>(values)...);
        } else {
          *result = RawForm<Result>::HandOut(target(self, std::get<I>(values)...));
        }
      };
      CallMemberThenWriteBack(call, write_back);
      return abi::kOk;
    } catch (...) {
      if constexpr (!std::is_void_v<Result>) {
        RawForm<Result>::Free(*result);
        *result = RawResult{};
      }
      return abi::Fail(self);
    }
  }

  template <class B>
  static bool IsNull(const RawArgument<B>& raw) {
    if constexpr (std::is_lvalue_reference_v<B>) {
      return raw == nullptr;
    } else {
      return false;
    }
  }
  template <class B>
  static auto Read(const RawArgument<B>& raw) {
    using Form = RawForm<std::remove_reference_t<B>>;
    if constexpr (std::is_lvalue_reference_v<B>) {
      return Form::Read(*raw);
    } else {
      return Form::Read(raw);
    }
  }
  template <class B>
  static void WriteBack([[maybe_unused]] RawArgument<B>& raw,
                        [[maybe_unused]] const std::remove_reference_t<B>& value) {
    if constexpr (std::is_lvalue_reference_v<B>) {
      using Value = std::remove_reference_t<B>;
      if (RawForm<Value>::Read(*raw) == value) return;
      if constexpr (std::is_same_v<Value, Variant>) {
        abi::Assign(*raw, value);
      } else if constexpr (requires { value.bounds; }) {
        abi::ReplaceArray(*raw, RawForm<Value>::HandOut(value));
      } else {
        auto old = std::exchange(*raw, RawForm<Value>::HandOut(value));
        RawForm<Value>::Free(old);
      }
    }
  }
};

/// The early-bound adapter of all members of a signature. `Thunk` is the function behind one slot
/// of a dual interface.
template <class Result, class... A>
struct EarlyBound : EarlyBoundBody<Result, A...> {
  using RawResult = typename RawForm<Result>::Raw;
  template <auto kTarget>
  static std::int32_t VELDMARK_STDCALL Thunk(BinaryFace* face, RawArgument<A>... raw,
                                             RawResult* result) noexcept {
    if (!result) return abi::kNullPointer;
    *result = RawResult{};
    return EarlyBound::Run(kTarget, face, result, std::tuple<RawArgument<A>...>(raw...));
  }
};
template <class... A>
struct EarlyBound<void, A...> : EarlyBoundBody<void, A...> {
  template <auto kTarget>
  static std::int32_t VELDMARK_STDCALL Thunk(BinaryFace* face, RawArgument<A>... raw) noexcept {
    return EarlyBound::template Run<void>(kTarget, face, nullptr,
                                          std::tuple<RawArgument<A>...>(raw...));
  }
};

}  // namespace veldmark
