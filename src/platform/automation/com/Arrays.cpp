#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "platform/automation/Boundary.h"
#include "platform/automation/com/Elements.h"

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
  const std::size_t size = SafeArrayGetElemsize(array);
  if constexpr (std::is_arithmetic_v<T>) {
    if (size != sizeof(T)) Raise(runtime_error::kTypeMismatch);
    result.elements.assign(locked.Elements<T>(), locked.Elements<T>() + count);
  } else {
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
  array = Boundary<Array<T>>::FromVariant(ReadArray(type, source));
}

}  // namespace

Variant ReadArray(VARTYPE type, SAFEARRAY* array) {
  const auto nothing = [](const void*) { return 0; };
  switch (type) {
    case VT_UI1:
      return Variant(ReadElements<std::uint8_t>(array, nothing));
    case VT_I4:
    case VT_INT:
      return Variant(ReadElements<std::int32_t>(array, nothing));
    case VT_BSTR:
      return Variant(ReadElements<Text>(array, ReadText));
    default: {
      const std::size_t size = ElementSize(type);
      if (size == 0 || (array && SafeArrayGetElemsize(array) != size)) {
        Raise(runtime_error::kTypeMismatch);
      }
      return Variant(ReadElements<Variant>(
          array, [type](const void* element) { return ReadElement(type, element); }));
    }
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

void FreeArray(RawArray array) noexcept { SafeArrayDestroy(static_cast<SAFEARRAY*>(array)); }

void Read(RawArray raw, ByteArray& array) { com::ReadAs(VT_UI1, raw, array); }
void Read(RawArray raw, LongArray& array) { com::ReadAs(VT_I4, raw, array); }
void Read(RawArray raw, TextArray& array) { com::ReadAs(VT_BSTR, raw, array); }

}  // namespace veldmark::abi
