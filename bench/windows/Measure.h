#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Veldmark2_h.h"

namespace bench {

constexpr int kRuns = 7;

inline void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  std::printf("%s failed: 0x%08lX\n", what, static_cast<unsigned long>(result));
  std::exit(1);
}

// The best of several runs, in seconds: what disturbs a run only adds to it.
template <class Work>
double Best(Work&& work, int runs = kRuns) {
  double best = 1e9;
  for (int i = 0; i < runs; ++i) {
    const auto start = std::chrono::steady_clock::now();
    work();
    best = std::min(
        best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

inline void Row(const char* what, double ours, double bare, const char* unit, double aim) {
  std::printf("%-58s %10.3f %10.3f %-3s %7.2f   (at most %.2f)\n", what, ours, bare, unit,
              ours / bare, aim);
}

inline void Head() { std::printf("%-58s %10s %10s %-3s %7s\n", "", "ours", "bare", "", "ratio"); }

// A folder of this many small files, made unless it is there.
inline std::wstring MakeFolder(const wchar_t* folder, int files) {
  CreateDirectoryW(folder, nullptr);
  const std::wstring last =
      std::wstring(folder) + L"\\measured file " + std::to_wstring(files - 1) + L".dat";
  if (GetFileAttributesW(last.c_str()) == INVALID_FILE_ATTRIBUTES) {
    for (int i = 0; i < files; ++i) {
      const std::wstring name =
          std::wstring(folder) + L"\\measured file " + std::to_wstring(i) + L".dat";
      const HANDLE file = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
      DWORD written = 0;
      WriteFile(file, name.data(), static_cast<DWORD>(i % 64), &written, nullptr);
      CloseHandle(file);
    }
  }
  return folder;
}

// The root object of a server that need not be registered.
inline _SystemRoot* CreateRoot(const wchar_t* server_path) {
  const HMODULE server = LoadLibraryW(server_path);
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get_class_object = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")));
  if (!get_class_object) std::exit(1);
  IClassFactory* factory = nullptr;
  Check(get_class_object(CLSID_SystemRoot, IID_IClassFactory, reinterpret_cast<void**>(&factory)),
        "factory");
  _SystemRoot* root = nullptr;
  Check(factory->CreateInstance(nullptr, IID__SystemRoot, reinterpret_cast<void**>(&root)),
        "SystemRoot");
  factory->Release();
  return root;
}

// The files of a folder, as the library lists them.
inline _CFiles* List(_SystemRoot* root, const std::wstring& path) {
  const BSTR text = SysAllocString(path.c_str());
  _CFolder* folder = nullptr;
  Check(root->GetFolder(text, &folder), "GetFolder");
  SysFreeString(text);
  _CFolders* folders = nullptr;
  _CFiles* files = nullptr;
  Check(folder->GetFolderContents(&folders, &files), "GetFolderContents");
  folders->Release();
  folder->Release();
  return files;
}

// What For Each goes through a list with.
template <class Items>
IEnumVARIANT* EnumeratorOf(Items* items) {
  IUnknown* unknown = nullptr;
  Check(items->get_NewEnum(&unknown), "NewEnum");
  IEnumVARIANT* enumerator = nullptr;
  Check(unknown->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&enumerator)),
        "IEnumVARIANT");
  unknown->Release();
  return enumerator;
}

}  // namespace bench
