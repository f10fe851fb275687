#include "server/ClassFactory.h"

#include "apartment/Apartment.h"
#include "automation/com/Face.h"
#include "automation/com/Failure.h"
#include "server/ServerPlatform.h"

namespace veldmark {

void StayLoaded() {
  ::HMODULE module = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                          reinterpret_cast<::LPCWSTR>(&StayLoaded), &module)) {
    Raise(runtime_error::kCannotCreateObject);
  }
}

::HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  try {
    if (!Apartment::TryCurrent()) StayLoaded();
    Apartment::Start(ServerPlatform());
    const Ref<Object> object = table_.create();
    return com::QueryObject(*object, reinterpret_cast<const Identity&>(iid), out);
  } catch (...) {
    return com::ReportError(CurrentError(), IID_IClassFactory);
  }
}

::HRESULT ClassFactory::LockServer(::BOOL lock) {
  lock ? HoldModule() : ReleaseModule();
  return S_OK;
}

}  // namespace veldmark
