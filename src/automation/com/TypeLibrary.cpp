#include "automation/com/TypeLibrary.h"

#include <atomic>
#include <string>

namespace veldmark::com {
namespace {

std::atomic<ITypeLib*> loaded = nullptr;

std::wstring OwnFile() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&loaded), &module);
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const auto size = static_cast<DWORD>(file.size());
    const DWORD length = GetModuleFileNameW(module, file.data(), size);
    if (length < size) {
      file.resize(length);
      return file;
    }
    file.resize(file.size() * 2);
  }
}

}  // namespace

ComRef<ITypeLib> OwnTypeLibrary() noexcept {
  if (ITypeLib* present = loaded.load()) return ComRef<ITypeLib>(present);
  try {
    ComRef<ITypeLib> fresh;
    if (FAILED(LoadTypeLibEx(OwnFile().c_str(), REGKIND_NONE, fresh.Receive()))) return {};
    ITypeLib* none = nullptr;
    if (loaded.compare_exchange_strong(none, fresh.Get())) fresh->AddRef();
    return fresh;
  } catch (...) {
    return {};
  }
}

}  // namespace veldmark::com
