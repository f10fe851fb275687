#include "automation/CallInProgress.h"
#include "automation/Enumerator.h"
#include "automation/com/ClassFace.h"
#include "automation/com/Face.h"

namespace veldmark::com {
namespace {

Enumerator& EnumeratorOf(BinaryFace* face) { return static_cast<Enumerator&>(ObjectOf(face)); }

/// Runs one function's body; what it raises becomes error information and a failure code.
template <class Body>
HRESULT Guarded(Enumerator& self, Body body) noexcept {
  const CallInProgress in_progress(self);
  try {
    return body();
  } catch (...) {
    return abi::Fail(self);
  }
}

HRESULT STDMETHODCALLTYPE Next(BinaryFace* face, ULONG count, VARIANT* items,
                               ULONG* fetched) noexcept {
  if (fetched) *fetched = 0;
  if (!items || (!fetched && count != 1)) return E_INVALIDARG;
  for (ULONG i = 0; i < count; ++i) VariantInit(&items[i]);
  Enumerator& self = EnumeratorOf(face);
  const HRESULT outcome = Guarded(self, [&] {
    for (ULONG i = 0; i < count; ++i) {
      Variant item;
      if (!self.Next(item)) return S_FALSE;
      AsRaw(items[i]) = abi::HandOutVariant(item);
      if (fetched) *fetched = i + 1;
    }
    return S_OK;
  });
  if (FAILED(outcome)) {
    for (ULONG i = 0; i < count; ++i) VariantClear(&items[i]);
    if (fetched) *fetched = 0;
  }
  return outcome;
}

HRESULT STDMETHODCALLTYPE Skip(BinaryFace* face, ULONG count) noexcept {
  Enumerator& self = EnumeratorOf(face);
  return Guarded(self, [&] { return self.Skip(count) ? S_OK : S_FALSE; });
}

HRESULT STDMETHODCALLTYPE Reset(BinaryFace* face) noexcept {
  Enumerator& self = EnumeratorOf(face);
  return Guarded(self, [&] {
    self.Reset();
    return S_OK;
  });
}

HRESULT STDMETHODCALLTYPE Clone(BinaryFace* face, IEnumVARIANT** out) noexcept {
  if (!out) return E_POINTER;
  *out = nullptr;
  Enumerator& self = EnumeratorOf(face);
  return Guarded(self, [&] {
    *out = static_cast<IEnumVARIANT*>(HandOutAny(self.Clone().Get()));
    return S_OK;
  });
}

}  // namespace

const void* const* EnumeratorFunctionTable() {
  static const void* const slots[] = {nullptr,    Slot(QueryInterface), Slot(AddRef), Slot(Release),
                                      Slot(Next), Slot(Skip),           Slot(Reset),  Slot(Clone)};
  return slots + 1;
}

}  // namespace veldmark::com
