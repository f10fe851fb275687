#include "EventSink.h"

namespace scripthost {
namespace {

// The default source interface: the object says so itself, and the type library describes it.
bool FindEvents(IDispatch* source, GUID* events, Reference<ITypeInfo>* description) {
  Reference<IProvideClassInfo2> provider;
  if (FAILED(source->QueryInterface(IID_IProvideClassInfo2,
                                    reinterpret_cast<void**>(provider.Receive()))) ||
      FAILED(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, events))) {
    return false;
  }
  Reference<ITypeInfo> type;
  Reference<ITypeLib> library;
  UINT index = 0;
  if (FAILED(source->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.Receive())) &&
      FAILED(provider->GetClassInfo(type.Receive()))) {
    return false;
  }
  return SUCCEEDED(type->GetContainingTypeLib(library.Receive(), &index)) &&
         SUCCEEDED(library->GetTypeInfoOfGuid(*events, description->Receive()));
}

}  // namespace

Reference<EventSink> EventSink::Connect(IDispatch* source, IDispatch* script, std::wstring prefix,
                                        std::function<void()> on_failure) {
  Reference<EventSink> sink(new EventSink);
  Reference<IConnectionPointContainer> container;
  if (!FindEvents(source, &sink->events_, &sink->description_) ||
      FAILED(source->QueryInterface(IID_IConnectionPointContainer,
                                    reinterpret_cast<void**>(container.Receive()))) ||
      FAILED(container->FindConnectionPoint(sink->events_, sink->point_.Receive()))) {
    return {};
  }
  sink->prefix_ = std::move(prefix);
  sink->on_failure_ = std::move(on_failure);
  sink->script_ = Reference<IDispatch>::Share(script);
  sink->source_ = Reference<IDispatch>::Share(source);
  if (FAILED(sink->point_->Advise(sink.Get(), &sink->cookie_))) return {};
  return sink;
}

void EventSink::Disconnect() {
  if (point_) point_->Unadvise(cookie_);
  point_ = {};
  source_ = {};
  script_ = {};
}

bool EventSink::Listens(IDispatch* source) const { return source_.Get() == source; }

HRESULT EventSink::Invoke(DISPID id, REFIID, LCID locale, WORD, DISPPARAMS* parameters, VARIANT*,
                          EXCEPINFO*, UINT*) {
  BSTR member = nullptr;
  UINT count = 0;
  if (!script_ || FAILED(description_->GetNames(id, &member, 1, &count)) || count == 0) return S_OK;
  std::wstring name = prefix_ + std::wstring(member, SysStringLen(member));
  SysFreeString(member);

  Reference<IDispatch> script = script_;
  LPOLESTR names[] = {name.data()};
  DISPID procedure = DISPID_UNKNOWN;
  if (FAILED(script->GetIDsOfNames(IID_NULL, names, 1, locale, &procedure))) return S_OK;

  // Wine's script engines write back only to a variant, not to a variable of a plain type: such an
  // argument goes in as a variant, and what comes out is converted to the caller's type.
  std::vector<Value> held(parameters->cArgs);
  std::vector<VARIANT> passed(parameters->cArgs);
  for (UINT i = 0; i < parameters->cArgs; ++i) {
    const VARIANT& argument = parameters->rgvarg[i];
    passed[i] = argument;
    if ((argument.vt & VT_BYREF) && argument.vt != (VT_BYREF | VT_VARIANT)) {
      VariantCopyInd(&held[i], Readable(&argument));
      passed[i].vt = VT_BYREF | VT_VARIANT;
      passed[i].pvarVal = &held[i];
    }
  }
  DISPPARAMS forwarded{passed.data(), nullptr, parameters->cArgs, 0};
  const HRESULT outcome = script->Invoke(procedure, IID_NULL, locale, DISPATCH_METHOD, &forwarded,
                                         nullptr, nullptr, nullptr);
  if (FAILED(outcome)) on_failure_();
  for (UINT i = 0; i < parameters->cArgs; ++i) {
    VARIANT& argument = parameters->rgvarg[i];
    if (passed[i].vt == argument.vt) continue;
    if (argument.vt == (VT_BYREF | VT_BOOL)) {
      Value truth;
      if (SUCCEEDED(VariantChangeType(&truth, &held[i], 0, VT_BOOL))) {
        *argument.pboolVal = truth.boolVal;
      }
    } else if (argument.vt == (VT_BYREF | VT_I4)) {
      Value number;
      if (SUCCEEDED(VariantChangeType(&number, &held[i], 0, VT_I4))) *argument.plVal = number.lVal;
    } else if (argument.vt == (VT_BYREF | VT_BSTR)) {
      Value text;
      if (SUCCEEDED(VariantChangeType(&text, &held[i], 0, VT_BSTR))) {
        SysFreeString(*argument.pbstrVal);
        *argument.pbstrVal = std::exchange(text.bstrVal, nullptr);
        text.vt = VT_EMPTY;
      }
    }
  }
  return outcome;
}

}  // namespace scripthost
