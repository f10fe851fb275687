#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

#include "automation/Identity.h"
#include "automation/com/ComRef.h"

namespace veldmark {

/// A file of the build tree or the checkout as Windows names it.
inline std::wstring WindowsPath(std::string_view folder, std::wstring_view name) {
  std::wstring path = L"Z:" + std::wstring(folder.begin(), folder.end()) + L"\\";
  path += name;
  for (wchar_t& c : path) c = c == L'/' ? L'\\' : c;
  return path;
}

/// A server as it was built, loaded by its path.
class BuiltServer {
 public:
  explicit BuiltServer(std::wstring_view name = L"Veldmark2.dll")
      : path(WindowsPath(VELDMARK_BINARY_DIR, name)), module_(LoadLibraryW(path.c_str())) {}
  BuiltServer(const BuiltServer&) = delete;
  BuiltServer& operator=(const BuiltServer&) = delete;
  ~BuiltServer() {
    if (module_) FreeLibrary(module_);
  }

  HRESULT GetClassObject(REFCLSID class_identifier, REFIID iid, void** out) const {
    return Export<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject")(class_identifier,
                                                                                 iid, out);
  }
  HRESULT CanUnloadNow() const { return Call("DllCanUnloadNow"); }
  HRESULT Register() const { return Call("DllRegisterServer"); }
  HRESULT Unregister() const { return Call("DllUnregisterServer"); }

  com::ComRef<IClassFactory> Factory(const Identity& class_identity) const {
    com::ComRef<IClassFactory> factory;
    GetClassObject(reinterpret_cast<REFCLSID>(class_identity), IID_IClassFactory,
                   reinterpret_cast<void**>(factory.Receive()));
    return factory;
  }
  com::ComRef<IDispatch> Create(const Identity& class_identity) const {
    com::ComRef<IDispatch> object;
    if (const auto factory = Factory(class_identity)) {
      factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.Receive()));
    }
    return object;
  }

  const std::wstring path;

 private:
  template <class Function>
  Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  HRESULT Call(const char* name) const { return Export<HRESULT WINAPI()>(name)(); }

  ::HMODULE module_;
};

/// The thread's error information, "source|description", which is taken.
inline std::wstring ErrorInformation() {
  com::ComRef<IErrorInfo> information;
  if (GetErrorInfo(0, information.Receive()) != S_OK) return {};
  BSTR source = nullptr, description = nullptr;
  information->GetSource(&source);
  information->GetDescription(&description);
  std::wstring taken(source, source + SysStringLen(source));
  taken.append(L"|").append(description, SysStringLen(description));
  SysFreeString(source);
  SysFreeString(description);
  return taken;
}

}  // namespace veldmark
