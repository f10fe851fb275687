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

/// The object that a member without arguments hands out.
inline com::ComRef<IDispatch> ObjectFrom(IDispatch* object, const wchar_t* member) {
  LPOLESTR name = const_cast<LPOLESTR>(member);
  DISPID id = DISPID_UNKNOWN;
  DISPPARAMS none{};
  VARIANT result;
  VariantInit(&result);
  com::ComRef<IDispatch> found;
  if (SUCCEEDED(object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id)) &&
      SUCCEEDED(object->Invoke(id, IID_NULL, 0, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                               &result, nullptr, nullptr)) &&
      result.vt == VT_DISPATCH) {
    *found.Receive() = result.pdispVal;
  } else {
    VariantClear(&result);
  }
  return found;
}

}  // namespace veldmark
