#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <utility>

#include "automation/Conversion.h"
#include "automation/Enumerator.h"
#include "automation/Error.h"
#include "automation/com/Elements.h"
#include "automation/com/Face.h"
#include "automation/com/Failure.h"

namespace veldmark::com {
namespace {

// References and arrays may nest; what nests deeper than this bites its own tail.
constexpr int kDeepestNesting = 128;

template <class T>
T Load(const void* data) {
  T value;
  std::memcpy(&value, data, sizeof value);
  return value;
}

[[noreturn]] void RaiseUnknownType() {
  Raise(458, {}, u"The value has an automation type that is not supported");
}

void Check(HRESULT result) {
  if (FAILED(result)) Raise(ToNumber(result));
}

Variant Whole(std::uint32_t value) {
  if (value <= INT32_MAX) return Variant(static_cast<std::int32_t>(value));
  return Variant(static_cast<std::int64_t>(value));
}
Variant Whole(std::uint64_t value) {
  if (value <= INT64_MAX) return Variant(static_cast<std::int64_t>(value));
  return Variant(static_cast<double>(value));
}

/// The variant at the end of a chain of references; each one counts in `depth`.
const VARIANT& Follow(const VARIANT& start, int& depth) {
  const VARIANT* variant = &start;
  for (; V_VT(variant) == (VT_BYREF | VT_VARIANT); ++depth) {
    variant = V_VARIANTREF(variant);
    if (!variant) Raise(abi::kNullPointer);
    if (depth >= kDeepestNesting) Raise(runtime_error::kTypeMismatch);
  }
  return *variant;
}

Variant ReadVariant(const VARIANT& start, int depth) {
  const VARIANT& variant = Follow(start, depth);
  const auto type = static_cast<VARTYPE>(V_VT(&variant) & ~VT_BYREF);
  if ((V_VT(&variant) & VT_BYREF) != 0) {
    if (!V_BYREF(&variant)) Raise(abi::kNullPointer);
    return ReadElement(type, V_BYREF(&variant), depth);
  }
  // A variant holds no other one in place: behind this record lies what isn't the caller's.
  if (type == VT_VARIANT) RaiseUnknownType();
  // A decimal fills the whole variant, the type lying within it.
  return ReadElement(type,
                     type == VT_DECIMAL ? static_cast<const void*>(&V_DECIMAL(&variant))
                                        : static_cast<const void*>(&V_I8(&variant)),
                     depth);
}

/// The type of ours that a platform type is exactly; empty for the others.
std::optional<VariantType> ExactType(VARTYPE type) {
  switch (type) {
    case VT_BOOL:
      return VariantType::kBoolean;
    case VT_UI1:
      return VariantType::kByte;
    case VT_I2:
      return VariantType::kInteger;
    case VT_I4:
      return VariantType::kLong;
    case VT_I8:
      return VariantType::kLongLong;
    case VT_R8:
      return VariantType::kDouble;
    case VT_CY:
      return VariantType::kCurrency;
    case VT_DATE:
      return VariantType::kDate;
    case VT_BSTR:
      return VariantType::kText;
    default:
      return {};
  }
}

/// A value in the very type that a caller's typed variable has.
void MakeTyped(VARTYPE type, const Variant& value, OwnedVariant& typed) {
  if (const auto exact = ExactType(type)) {
    typed.Get() = OwnedVariant(ConvertTo(value, *exact)).Detach();
    return;
  }
  if (type == (VT_ARRAY | VT_VARIANT)) {
    V_ARRAY(&typed.Get()) = static_cast<SAFEARRAY*>(HandOutVariantArray(LooseArray(value)));
    V_VT(&typed.Get()) = type;
    return;
  }
  OwnedVariant fresh(value);
  if (V_VT(&fresh.Get()) == type) {
    typed.Get() = fresh.Detach();
  } else if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    IUnknown* object = nullptr;
    if (V_VT(&fresh.Get()) == VT_DISPATCH || V_VT(&fresh.Get()) == VT_UNKNOWN) {
      object = V_UNKNOWN(&fresh.Get());
    } else if (V_VT(&fresh.Get()) != VT_EMPTY) {
      Raise(runtime_error::kTypeMismatch);
    }
    if (object) {
      Check(object->QueryInterface(type == VT_DISPATCH ? IID_IDispatch : IID_IUnknown,
                                   reinterpret_cast<void**>(&V_UNKNOWN(&typed.Get()))));
    }
    V_VT(&typed.Get()) = type;
  } else {
    if ((type & VT_ARRAY) != 0) Raise(runtime_error::kTypeMismatch);
    Check(VariantChangeTypeEx(&typed.Get(), &fresh.Get(), LOCALE_INVARIANT, 0, type));
  }
}

void AssignTyped(VARIANT& target, const Variant& value) {
  const auto type = static_cast<VARTYPE>(V_VT(&target) & ~VT_BYREF);
  void* const variable = V_BYREF(&target);
  if (!variable) Raise(abi::kNullPointer);
  OwnedVariant typed;
  MakeTyped(type, value, typed);
  if (type == VT_DECIMAL) {
    V_DECIMAL(&typed.Get()).wReserved = 0;  // the type stands there in a variant of its own
    std::memcpy(variable, &V_DECIMAL(&typed.Get()), sizeof(DECIMAL));
    V_VT(&typed.Get()) = VT_EMPTY;
    return;
  }
  if ((type & VT_ARRAY) != 0) {
    const abi::RawArray fresh = V_ARRAY(&typed.Get());
    typed.Detach();
    abi::ReplaceArray(*static_cast<abi::RawArray*>(variable), fresh);
    return;
  }
  const std::size_t size = ElementSize(type);
  if (size == 0) RaiseUnknownType();
  // Swapped, so that what the variable held is freed with `typed`.
  std::byte held[sizeof(std::int64_t)];
  std::memcpy(held, variable, size);
  std::memcpy(variable, &V_I8(&typed.Get()), size);
  std::memcpy(&V_I8(&typed.Get()), held, size);
}

}  // namespace

Variant ReadElement(VARTYPE type, const void* data, int depth) {
  if ((type & VT_ARRAY) != 0) {
    if (depth >= kDeepestNesting) Raise(runtime_error::kTypeMismatch);
    return ReadArray(static_cast<VARTYPE>(type & ~VT_ARRAY), Load<SAFEARRAY*>(data), depth + 1);
  }
  switch (type) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Variant(Null{});
    case VT_BOOL:
      return Variant(Load<VARIANT_BOOL>(data) != VARIANT_FALSE);
    case VT_I1:
      return Variant(static_cast<std::int16_t>(Load<std::int8_t>(data)));
    case VT_UI1:
      return Variant(Load<std::uint8_t>(data));
    case VT_I2:
      return Variant(Load<std::int16_t>(data));
    case VT_UI2:
      return Variant(static_cast<std::int32_t>(Load<std::uint16_t>(data)));
    case VT_I4:
    case VT_INT:
      return Variant(Load<std::int32_t>(data));
    case VT_UI4:
    case VT_UINT:
      return Whole(Load<std::uint32_t>(data));
    case VT_I8:
      return Variant(Load<std::int64_t>(data));
    case VT_UI8:
      return Whole(Load<std::uint64_t>(data));
    case VT_R4:
      return Variant(static_cast<double>(Load<float>(data)));
    case VT_R8:
      return Variant(Load<double>(data));
    case VT_CY:
      return Variant(Currency{Load<std::int64_t>(data)});
    case VT_DATE:
      return Variant(Date{Load<double>(data)});
    case VT_DECIMAL: {
      auto decimal = Load<DECIMAL>(data);
      double value = 0;
      Check(VarR8FromDec(&decimal, &value));
      return Variant(value);
    }
    case VT_ERROR:
      return Variant(Status{Load<std::int32_t>(data)});
    case VT_BSTR:
      return Variant(abi::View(Load<const char16_t*>(data)));
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return Variant(abi::Read(Load<abi::RawObject>(data)));
    case VT_VARIANT:
      return ReadVariant(*static_cast<const VARIANT*>(data), depth);
    default:
      RaiseUnknownType();
  }
}

std::size_t ElementSize(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_BOOL:
    case VT_I2:
    case VT_UI2:
      return 2;
    case VT_I4:
    case VT_INT:
    case VT_UI4:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

}  // namespace veldmark::com

namespace veldmark::abi {

TextView View(const char16_t* text) {
  if (!text) return {};
  const auto* units = reinterpret_cast<const wchar_t*>(text);
  return TextView(text, SysStringLen(const_cast<BSTR>(units)));
}

RawText HandOutText(TextView text) {
  if (text.size() > std::numeric_limits<std::int32_t>::max() / sizeof(char16_t)) {
    throw std::bad_alloc();
  }
  BSTR fresh = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                 static_cast<UINT>(text.size()));
  if (!fresh) throw std::bad_alloc();
  return reinterpret_cast<RawText>(fresh);
}

void Free(RawText text) noexcept { SysFreeString(com::AsBstr(text)); }

RawVariant HandOutVariant(const Variant& value) {
  RawVariant raw{};
  VARIANT& out = com::AsVariant(raw);
  const auto hand_out = [&]<class T>(const T& held) {
    if constexpr (std::is_same_v<T, std::monostate>) {
      // Empty is all zero.
    } else if constexpr (std::is_same_v<T, Null>) {
      V_VT(&out) = VT_NULL;
    } else if constexpr (std::is_same_v<T, bool>) {
      V_BOOL(&out) = held ? VARIANT_TRUE : VARIANT_FALSE;
      V_VT(&out) = VT_BOOL;
    } else if constexpr (std::is_same_v<T, std::uint8_t>) {
      V_UI1(&out) = held;
      V_VT(&out) = VT_UI1;
    } else if constexpr (std::is_same_v<T, std::int16_t>) {
      V_I2(&out) = held;
      V_VT(&out) = VT_I2;
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
      V_I4(&out) = held;
      V_VT(&out) = VT_I4;
    } else if constexpr (std::is_same_v<T, std::int64_t>) {
      V_I8(&out) = held;
      V_VT(&out) = VT_I8;
    } else if constexpr (std::is_same_v<T, double>) {
      V_R8(&out) = held;
      V_VT(&out) = VT_R8;
    } else if constexpr (std::is_same_v<T, Currency>) {
      V_CY(&out).int64 = held.scaled;
      V_VT(&out) = VT_CY;
    } else if constexpr (std::is_same_v<T, Date>) {
      V_DATE(&out) = held.days;
      V_VT(&out) = VT_DATE;
    } else if constexpr (std::is_same_v<T, Status>) {
      V_ERROR(&out) = held.code;
      V_VT(&out) = VT_ERROR;
    } else if constexpr (std::is_same_v<T, Text>) {
      V_BSTR(&out) = com::AsBstr(HandOutText(held));
      V_VT(&out) = VT_BSTR;
    } else if constexpr (std::is_same_v<T, Ref<Object>>) {
      const VARTYPE type = com::IsDispatch(held.Get()) ? VT_DISPATCH : VT_UNKNOWN;
      V_UNKNOWN(&out) = static_cast<IUnknown*>(com::HandOutAny(held.Get()));
      V_VT(&out) = type;
    } else if constexpr (std::is_same_v<T, Reference>) {
      raw = HandOutVariant(value.Dereferenced());
    } else if constexpr (std::is_same_v<T, VariantArray>) {
      V_ARRAY(&out) = static_cast<SAFEARRAY*>(com::HandOutVariantArray(held));
      V_VT(&out) = VT_ARRAY | VT_VARIANT;
    } else {
      V_ARRAY(&out) = static_cast<SAFEARRAY*>(HandOutArray(held));
      V_VT(&out) = VT_ARRAY | (std::is_same_v<T, ByteArray>   ? VT_UI1
                               : std::is_same_v<T, LongArray> ? VT_I4
                                                              : VT_BSTR);
    }
  };
  std::visit(hand_out, value.Get());
  return raw;
}

void Free(RawVariant& value) noexcept {
  VariantClear(&com::AsVariant(value));
  value = RawVariant{};
}

Variant Read(const RawVariant& value) { return com::ReadVariant(com::AsVariant(value), 0); }

void Assign(RawVariant& raw, const Variant& value) {
  int depth = 0;
  auto& target = const_cast<VARIANT&>(com::Follow(com::AsVariant(raw), depth));
  if ((V_VT(&target) & VT_BYREF) != 0) {
    com::AssignTyped(target, value);
    return;
  }
  com::OwnedVariant fresh(value);
  if ((V_VT(&target) & VT_ARRAY) != 0) {
    com::Check(VariantClear(&target));  // which refuses for an array in use
  }
  std::swap(target, fresh.Get());  // what it held may end in a call back to the caller
}

}  // namespace veldmark::abi
