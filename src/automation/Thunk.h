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

template <class P>
using RawParameter = std::conditional_t<ParameterForm<P>::kByReference,
                                        typename RawForm<typename ParameterForm<P>::Value>::Raw*,
                                        typename RawForm<typename ParameterForm<P>::Value>::Raw>;

/// The early-bound work common to members with and without a result. Out-arguments are cleared
/// first and written back also when the member raises.
template <class Constant, class Class, class Result, class... P>
struct ThunkBody {
 protected:
  template <class RawResult>
  static std::int32_t Run(BinaryFace* face, RawResult* result,
                          std::tuple<RawParameter<P>...> raw) noexcept {
    return RunWith(static_cast<Class&>(static_cast<Object&>(*face)), result, raw,
                   std::index_sequence_for<P...>());
  }

 private:
  using Form = MemberForm<Constant::value>;

  template <class RawResult, std::size_t... I>
  static std::int32_t RunWith(Class& self, RawResult* result,
                              [[maybe_unused]] std::tuple<RawParameter<P>...>& raw,
                              std::index_sequence<I...>) noexcept {
    if ((IsNull<P>(std::get<I>(raw)) || ...)) return abi::kNullPointer;
    const CallInProgress in_progress(self);
    try {
      [[maybe_unused]] std::tuple<typename ParameterForm<P>::Value...> values{
          Read<P>(std::get<I>(raw))...};
      const auto write_back = [&] { (WriteBack<P>(std::get<I>(raw), std::get<I>(values)), ...); };
      const auto call = [&] {
        if constexpr (std::is_void_v<Result>) {
          Form::Call(self, ParameterForm<P>::Pass(std::get<I>(values))...);
        } else {
          *result = RawForm<Result>::HandOut(
              Form::Call(self, ParameterForm<P>::Pass(std::get<I>(values))...));
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

  template <class Q>
  static bool IsNull(const RawParameter<Q>& raw) {
    if constexpr (ParameterForm<Q>::kByReference) {
      return raw == nullptr;
    } else {
      return false;
    }
  }
  template <class Q>
  static auto Read(const RawParameter<Q>& raw) {
    using Value = RawForm<typename ParameterForm<Q>::Value>;
    if constexpr (ParameterForm<Q>::kByReference) {
      return Value::Read(*raw);
    } else {
      return Value::Read(raw);
    }
  }
  template <class Q>
  static void WriteBack([[maybe_unused]] RawParameter<Q>& raw,
                        [[maybe_unused]] const typename ParameterForm<Q>::Value& value) {
    if constexpr (ParameterForm<Q>::kByReference) {
      using Value = typename ParameterForm<Q>::Value;
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

/// The function behind one slot of a dual interface.
template <class Constant, class Class, class Result, class... P>
struct Thunk : ThunkBody<Constant, Class, Result, P...> {
  using RawResult = typename RawForm<Result>::Raw;
  static std::int32_t VELDMARK_STDCALL Call(BinaryFace* face, RawParameter<P>... raw,
                                            RawResult* result) noexcept {
    if (!result) return abi::kNullPointer;
    *result = RawResult{};
    return Thunk::Run(face, result, std::tuple<RawParameter<P>...>(raw...));
  }
};
template <class Constant, class Class, class... P>
struct Thunk<Constant, Class, void, P...> : ThunkBody<Constant, Class, void, P...> {
  static std::int32_t VELDMARK_STDCALL Call(BinaryFace* face, RawParameter<P>... raw) noexcept {
    return Thunk::template Run<void>(face, nullptr, std::tuple<RawParameter<P>...>(raw...));
  }
};

}  // namespace veldmark
