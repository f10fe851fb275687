#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "automation/Boundary.h"
#include "automation/com/Elements.h"
#include "automation/com/Failure.h"

namespace veldmark::com {
namespace {

/// The elements of a platform array, locked for as long as this lives.
class LockedArray {
 public:
  explicit LockedArray(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array, &data_))) Raise(runtime_error::kTypeMismatch);
  }
  LockedArray(const LockedArray&) = delete;
  LockedArray& operator=(const LockedArray&) = delete;
  ~LockedArray() { SafeArrayUnaccessData(array_); }

  template <class T>
  T* Elements() const {
    return static_cast<T*>(data_);
  }

 private:
  SAFEARRAY* array_;
  void* data_ = nullptr;
};

struct ArrayEnd {
  void operator()(SAFEARRAY* array) const { SafeArrayDestroy(array); }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayEnd>;

/// A new platform array of the same shape; its elements are zero.
template <class T>
OwnedArray MakeArray(VARTYPE type, const Array<T>& array) {
  std::vector<SAFEARRAYBOUND> bounds;
  std::uint64_t count = 1;
  for (const Bound& bound : array.bounds) {
    bounds.push_back({bound.count, bound.lower});
    count *= bound.count;
  }
  if (count != array.elements.size()) Raise(runtime_error::kSubscriptOutOfRange);
  OwnedArray made(SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data()));
  if (!made) throw std::bad_alloc();
  return made;
}

template <class T>
abi::RawArray HandOutPlain(VARTYPE type, const Array<T>& array) {
  OwnedArray made = MakeArray(type, array);
  if (!array.elements.empty()) {
    const LockedArray locked(made.get());
    std::memcpy(locked.Elements<T>(), array.elements.data(), array.elements.size() * sizeof(T));
  }
  return made.release();
}

/// The shape of a platform array; its element count goes to `count`.
std::vector<Bound> ReadBounds(SAFEARRAY* array, std::size_t& count) {
  std::vector<Bound> bounds(SafeArrayGetDim(array));
  if (bounds.empty()) Raise(runtime_error::kTypeMismatch);
  count = 1;
  for (std::size_t i = 0; i < bounds.size(); ++i) {
    LONG lower = 0;
    LONG upper = -1;
    const auto dimension = static_cast<UINT>(i + 1);
    SafeArrayGetLBound(array, dimension, &lower);
    SafeArrayGetUBound(array, dimension, &upper);
    bounds[i] = {lower, static_cast<std::uint32_t>(upper) - static_cast<std::uint32_t>(lower) + 1};
    count *= bounds[i].count;
  }
  return bounds;
}

template <class T, class ReadOne>
Array<T> ReadElements(SAFEARRAY* array, ReadOne read_one) {
  Array<T> result;
  if (!array) return result;
  std::size_t count = 0;
  result.bounds = ReadBounds(array, count);
  if (count == 0) return result;
  const LockedArray locked(array);
  if constexpr (std::is_arithmetic_v<T>) {
    result.elements.assign(locked.Elements<T>(), locked.Elements<T>() + count);
  } else {
    const std::size_t size = SafeArrayGetElemsize(array);
    result.elements.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      result.elements.push_back(read_one(locked.Elements<std::byte>() + i * size));
    }
  }
  return result;
}

Text ReadText(const void* element) {
  const char16_t* text = nullptr;
  std::memcpy(&text, element, sizeof text);
  return Text(abi::View(text));
}

/// One type for all that are read alike.
VARTYPE ReadLike(VARTYPE type) {
  switch (type) {
    case VT_INT:
      return VT_I4;
    case VT_UINT:
      return VT_UI4;
    case VT_DISPATCH:
      return VT_UNKNOWN;
    default:
      return type;
  }
}

/// What an array's features say about elements that own something; 0 for plain values.
USHORT OwningFeatures(VARTYPE type) {
  switch (ReadLike(type)) {
    case VT_BSTR:
      return FADF_BSTR;
    case VT_UNKNOWN:
      return FADF_UNKNOWN | FADF_DISPATCH;
    case VT_VARIANT:
      return FADF_VARIANT;
    default:
      return 0;
  }
}

/// Whether an array's elements are of a type, as far as its descriptor tells: one that a client
/// made piece by piece need not carry its type.
bool HasElements(SAFEARRAY* array, VARTYPE type) {
  const std::size_t size = ElementSize(type);
  if (size == 0) return false;
  if (!array) return true;
  if (SafeArrayGetElemsize(array) != size) return false;
  VARTYPE real = VT_EMPTY;
  if (SUCCEEDED(SafeArrayGetVartype(array, &real))) return ReadLike(real) == ReadLike(type);
  constexpr USHORT kOwning = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD;
  const auto owning = static_cast<USHORT>(array->fFeatures & kOwning);
  const USHORT wanted = OwningFeatures(type);
  return wanted == 0 ? owning == 0 : owning != 0 && (owning & ~wanted) == 0;
}

template <class T>
void ReadAs(VARTYPE own_type, abi::RawArray raw, Array<T>& array) {
  auto* source = static_cast<SAFEARRAY*>(raw);
  if (!source) {
    array = {};
    return;
  }
  VARTYPE type = VT_EMPTY;
  if (FAILED(SafeArrayGetVartype(source, &type)) || (type != own_type && type != VT_VARIANT)) {
    Raise(runtime_error::kTypeMismatch);
  }
  array = Boundary<Array<T>>::FromVariant(ReadArray(type, source, 1));
}

}  // namespace

Variant ReadArray(VARTYPE type, SAFEARRAY* array, int depth) {
  if (!HasElements(array, type)) Raise(runtime_error::kTypeMismatch);
  const auto nothing = [](const void*) { return 0; };
  switch (type) {
    case VT_UI1:
      return Variant(ReadElements<std::uint8_t>(array, nothing));
    case VT_I4:
    case VT_INT:
      return Variant(ReadElements<std::int32_t>(array, nothing));
    case VT_BSTR:
      return Variant(ReadElements<Text>(array, ReadText));
    default:
      return Variant(ReadElements<Variant>(
          array, [type, depth](const void* element) { return ReadElement(type, element, depth); }));
  }
}

abi::RawArray HandOutVariantArray(const VariantArray& array) {
  OwnedArray made = MakeArray(VT_VARIANT, array);
  if (!array.elements.empty()) {
    const LockedArray locked(made.get());
    std::ranges::transform(array.elements, locked.Elements<abi::RawVariant>(), abi::HandOutVariant);
  }
  return made.release();
}

VariantArray LooseArray(const Variant& array) {
  return std::visit(
      []<class T>(const T& held) -> VariantArray {
        if constexpr (std::is_same_v<T, VariantArray>) {
          return held;
        } else if constexpr (requires { held.bounds; }) {
          VariantArray loose;
          loose.bounds = held.bounds;
          loose.elements.assign(held.elements.begin(), held.elements.end());
          return loose;
        } else {
          Raise(runtime_error::kTypeMismatch);
        }
      },
      array.Get());
}

}  // namespace veldmark::com

namespace veldmark::abi {

RawArray HandOutArray(const ByteArray& array) { return com::HandOutPlain(VT_UI1, array); }
RawArray HandOutArray(const LongArray& array) { return com::HandOutPlain(VT_I4, array); }
RawArray HandOutArray(const TextArray& array) {
  com::OwnedArray made = com::MakeArray(VT_BSTR, array);
  if (!array.elements.empty()) {
    const com::LockedArray locked(made.get());
    std::ranges::transform(array.elements, locked.Elements<RawText>(), HandOutText);
  }
  return made.release();
}

void ReplaceArray(RawArray& variable, RawArray fresh) {
  com::OwnedArray owned(static_cast<SAFEARRAY*>(fresh));
  auto* old = static_cast<SAFEARRAY*>(variable);
  // What lies within a client's own storage can't be freed in favour of another.
  constexpr USHORT kClientsOwn = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  const auto clients_own = static_cast<USHORT>(old ? old->fFeatures & kClientsOwn : 0);
  // An array of the same shape is filled where it lies: it may be fixed, or in use.
  if (old && owned && SUCCEEDED(SafeArrayCopyData(owned.get(), old))) {
    old->fFeatures |= clients_own;  // some platforms copy the features as well
    return;
  }
  if (clients_own != 0 || (old && FAILED(SafeArrayDestroy(old)))) {
    Raise(com::ToNumber(DISP_E_ARRAYISLOCKED));
  }
  variable = owned.release();
}

void FreeArray(RawArray array) noexcept { SafeArrayDestroy(static_cast<SAFEARRAY*>(array)); }

void Read(RawArray raw, ByteArray& array) { com::ReadAs(VT_UI1, raw, array); }
void Read(RawArray raw, LongArray& array) { com::ReadAs(VT_I4, raw, array); }
void Read(RawArray raw, TextArray& array) { com::ReadAs(VT_BSTR, raw, array); }

}  // namespace veldmark::abi
