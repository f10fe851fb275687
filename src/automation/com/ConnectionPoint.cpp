#include "automation/com/ConnectionPoint.h"

#include "automation/CallInProgress.h"
#include "automation/Events.h"
#include "automation/Interface.h"
#include "automation/com/ListEnumerator.h"
#include "automation/com/ListenerSink.h"
#include "automation/com/SecondaryFace.h"

namespace veldmark::com {

ComRef<IConnectionPoint> ConnectionPoint::Make(Object& object) {
  ComRef<IConnectionPoint> point;
  *point.Receive() = new ConnectionPoint(object);
  return point;
}

Identity ConnectionPoint::EventIdentity() const {
  return object_->GetInterface().events->InterfaceIdentity();
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = AsIid(EventIdentity());
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  *container = nullptr;
  return SecondaryFace::Query(*object_, IID_IConnectionPointContainer,
                              reinterpret_cast<void**>(container));
}

HRESULT ConnectionPoint::Advise(IUnknown* listener, DWORD* cookie) {
  if (!cookie) return E_POINTER;
  *cookie = 0;
  if (!listener) return E_POINTER;
  Object& source = *object_;
  const CallInProgress in_progress(source);
  try {
    // The event interface is called late-bound too, so that its pointer is an IDispatch.
    ComRef<IDispatch> dispatch;
    if (FAILED(listener->QueryInterface(AsIid(EventIdentity()),
                                        reinterpret_cast<void**>(dispatch.Receive()))) &&
        FAILED(listener->QueryInterface(IID_IDispatch,
                                        reinterpret_cast<void**>(dispatch.Receive())))) {
      return CONNECT_E_CANNOTCONNECT;
    }
    *cookie = source.Events()->Advise(veldmark::Make<ListenerSink>(std::move(dispatch)));
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
  const CallInProgress in_progress(*object_);
  return object_->Events()->Unadvise(cookie) ? S_OK : CONNECT_E_NOCONNECTION;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  if (!connections) return E_POINTER;
  *connections = nullptr;
  return ListEnumerator<IEnumConnections, Connection>::Make(
      [&] {
        std::vector<Connection> list;
        for (const auto& [cookie, sink] : object_->Events()->Sinks()) {
          // The library's own sinks are nobody else's business.
          const auto* listener = dynamic_cast<const ListenerSink*>(sink.Get());
          if (listener) list.push_back({ComRef<IUnknown>(listener->Listener()), cookie});
        }
        return list;
      },
      connections);
}

}  // namespace veldmark::com
