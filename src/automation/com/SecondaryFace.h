#pragma once

#include "automation/Interface.h"
#include "automation/com/Face.h"
#include "automation/com/Sdk.h"

namespace veldmark::com {

/// The interfaces of an object beside its dual one. Each request makes a new one of these, which
/// keeps the object and forwards its identity.
class SecondaryFace final : public ISupportErrorInfo,
                            public IProvideClassInfo2,
                            public IConnectionPointContainer {
 public:
  /// Hands out one of these interfaces of an object.
  static HRESULT Query(Object& object, REFIID iid, void** out) noexcept;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* identity) override;
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

 private:
  explicit SecondaryFace(Object& object) : object_(object) {}
  ~SecondaryFace() = default;

  const Interface& Table() const { return object_->GetInterface(); }

  ExternalReference object_;
  ULONG references_ = 1;
};

}  // namespace veldmark::com
