#pragma once

#include "automation/com/ComObject.h"
#include "automation/com/ComRef.h"
#include "automation/com/Face.h"

namespace veldmark::com {

/// The way to an object's event sinks. It keeps the object; the sinks that it adds don't.
class ConnectionPoint final : public ComObject<IConnectionPoint> {
 public:
  /// One for an object that has events.
  static ComRef<IConnectionPoint> Make(Object& object);

  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* listener, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 private:
  explicit ConnectionPoint(Object& object) : object_(object) {}

  Identity EventIdentity() const;

  ExternalReference object_;
};

}  // namespace veldmark::com
