#include <memory>

#include "apartment/Apartment.h"
#include "automation/ModuleCount.h"
#include "automation/com/ComRef.h"
#include "automation/com/Face.h"
#include "automation/com/Sdk.h"
#include "automation/com/ThreadSlots.h"
#include "root/ObjectModel.h"
#include "server/ClassFactory.h"
#include "server/Registration.h"

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* process_ends) {
  // When the process ends, the other threads are gone already, wherever they were: nothing of
  // theirs is touched.
  if (reason == DLL_PROCESS_DETACH && !process_ends) veldmark::thread_slot::FreeAll();
  return TRUE;
}

HRESULT WINAPI DllGetClassObject(REFCLSID class_identifier, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  try {
    const veldmark::Interface* table =
        veldmark::FindClass(reinterpret_cast<const veldmark::Identity&>(class_identifier));
    if (!table) return CLASS_E_CLASSNOTAVAILABLE;
    veldmark::com::ComRef<IClassFactory> factory;
    *factory.Receive() = std::make_unique<veldmark::ClassFactory>(*table).release();
    return factory->QueryInterface(iid, out);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT WINAPI DllCanUnloadNow() {
  if (veldmark::ModuleHolds() != 0) return S_FALSE;
  // Here the thread may still do everything; in the unload that follows it holds the loader lock.
  veldmark::Apartment::End();
  veldmark::com::ForgetTypeLibrary();
  return S_OK;
}

HRESULT WINAPI DllRegisterServer() { return veldmark::RegisterServer(); }

HRESULT WINAPI DllUnregisterServer() { return veldmark::UnregisterServer(); }
}
