#include <memory>

#include "automation/ModuleCount.h"
#include "automation/com/ComRef.h"
#include "automation/com/Failure.h"
#include "automation/com/Sdk.h"
#include "automation/com/ThreadSlots.h"
#include "root/ObjectModel.h"
#include "server/ClassFactory.h"
#include "server/Registration.h"

// The tool chain's, declared in none of its headers: frees the memory that is set aside for an
// exception when there is no other.
namespace __gnu_cxx {
void __freeres();
}

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* process_ends) {
  // The module has created nothing when it goes before its process does. When the process ends, the
  // other threads are gone already, wherever they were: nothing of theirs is touched.
  if (reason == DLL_PROCESS_DETACH && !process_ends) {
    veldmark::thread_slot::FreeAll();
    __gnu_cxx::__freeres();
  }
  return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID class_identifier, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (!veldmark::thread_slot::Reserve()) {
    return veldmark::com::ReportError(veldmark::thread_slot::NoRoom(), IID_IClassFactory);
  }
  try {
    const veldmark::Interface* table =
        veldmark::FindClass(reinterpret_cast<const veldmark::Identity&>(class_identifier));
    if (!table) return CLASS_E_CLASSNOTAVAILABLE;
    // The 32-bit tool chain takes a thread-local index while the module loads, and never gives it
    // back: there the module stays from here on.
    if constexpr (sizeof(void*) == 4) veldmark::StayLoaded();
    veldmark::com::ComRef<IClassFactory> factory;
    *factory.Receive() = std::make_unique<veldmark::ClassFactory>(*table).release();
    return factory->QueryInterface(iid, out);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT WINAPI DllCanUnloadNow() { return veldmark::ModuleHolds() == 0 ? S_OK : S_FALSE; }

HRESULT WINAPI DllRegisterServer() {
  return veldmark::thread_slot::Reserve() ? veldmark::RegisterServer() : E_OUTOFMEMORY;
}

HRESULT WINAPI DllUnregisterServer() {
  return veldmark::thread_slot::Reserve() ? veldmark::UnregisterServer() : E_OUTOFMEMORY;
}
}
