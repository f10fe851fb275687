#include "server/ClassFactory.h"

#include "apartment/Apartment.h"
#include "automation/com/Face.h"
#include "automation/com/Failure.h"
#include "server/ServerPlatform.h"

namespace veldmark {
namespace {

/// Keeps this module loaded till the process ends. An apartment belongs to its thread, caches and
/// subscriptions included, and ends with it. An unload can't wait for that: it comes under the
/// loader lock, where an apartment mustn't be ended, least of all another thread's; and no thread
/// is to lose its apartment because a client asked whether the module could go, which it may do at
/// any time and without unloading anything. So the module goes only where no thread has had one
/// yet.
void StayLoaded() {
  ::HMODULE module = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                          reinterpret_cast<::LPCWSTR>(&StayLoaded), &module)) {
    Raise(runtime_error::kCannotCreateObject);
  }
}

}  // namespace

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
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

HRESULT ClassFactory::LockServer(BOOL lock) {
  lock ? HoldModule() : ReleaseModule();
  return S_OK;
}

}  // namespace veldmark
