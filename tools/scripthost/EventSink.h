#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Dispatch.h"

namespace scripthost {

// Listens to an object's default event interface and calls the script's procedures of the same
// names behind a prefix.
class EventSink final : public UntypedDispatch {
 public:
  // Subscribes; the sink belongs to the returned reference. Empty when the object has no events
  // that can be found out from its type library. `on_failure` is called after a procedure failed,
  // which the engine has reported by then.
  static Reference<EventSink> Connect(IDispatch* source, IDispatch* script, std::wstring prefix,
                                      std::function<void()> on_failure);

  // Ends the subscription and lets go of the source.
  void Disconnect();
  bool Listens(IDispatch* source) const;

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override;

 private:
  bool Implements(REFIID iid) const override {
    return UntypedDispatch::Implements(iid) || IsEqualIID(iid, events_);
  }

  DWORD cookie_ = 0;
  GUID events_{};
  std::wstring prefix_;
  std::function<void()> on_failure_;
  Reference<IDispatch> source_;
  Reference<IDispatch> script_;
  Reference<IConnectionPoint> point_;
  Reference<ITypeInfo> description_;
};

}  // namespace scripthost
