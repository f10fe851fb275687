#include "automation/com/SecondaryFace.h"

#include "automation/com/ClassFace.h"
#include "automation/com/ConnectionPoint.h"
#include "automation/com/ListEnumerator.h"
#include "automation/com/TypeLibrary.h"

namespace veldmark::com {

HRESULT SecondaryFace::Query(Object& object, REFIID iid, void** out) noexcept {
  try {
    const bool errors = iid == IID_ISupportErrorInfo;
    const bool class_info = iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2;
    const bool events = iid == IID_IConnectionPointContainer && object.GetInterface().events;
    if (!errors && !class_info && !events) return E_NOINTERFACE;
    auto* face = new SecondaryFace(object);
    if (errors) {
      *out = static_cast<ISupportErrorInfo*>(face);
    } else if (class_info) {
      *out = static_cast<IProvideClassInfo2*>(face);
    } else {
      *out = static_cast<IConnectionPointContainer*>(face);
    }
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT SecondaryFace::QueryInterface(REFIID iid, void** out) {
  return com::QueryInterface(&*object_, iid, out);
}

ULONG SecondaryFace::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT SecondaryFace::InterfaceSupportsErrorInfo(REFIID iid) {
  return iid == ClassFace::Of(*object_).iid ? S_OK : S_FALSE;
}

HRESULT SecondaryFace::GetClassInfo(ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  const ComRef<ITypeLib> library = OwnTypeLibrary();
  if (!library) return TYPE_E_CANTLOADLIBRARY;
  return library->GetTypeInfoOfGuid(AsIid(Table().ClassIdentity()), info);
}

HRESULT SecondaryFace::GetGUID(DWORD kind, GUID* identity) {
  if (!identity) return E_POINTER;
  *identity = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  if (!Table().events) return TYPE_E_ELEMENTNOTFOUND;
  *identity = AsIid(Table().events->InterfaceIdentity());
  return S_OK;
}

HRESULT SecondaryFace::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (!points) return E_POINTER;
  *points = nullptr;
  return ListEnumerator<IEnumConnectionPoints, ComRef<IConnectionPoint>>::Make(
      [&] { return std::vector{ConnectionPoint::Make(*object_)}; }, points);
}

HRESULT SecondaryFace::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (!point) return E_POINTER;
  *point = nullptr;
  if (iid != AsIid(Table().events->InterfaceIdentity())) return CONNECT_E_NOCONNECTION;
  try {
    *point = ConnectionPoint::Make(*object_).Detach();
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace veldmark::com
