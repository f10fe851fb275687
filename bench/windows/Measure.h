// What the measuring programs share.

#pragma once

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Veldmark2_h.h"

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

inline void Heading() {
  std::printf("%-58s %10s %10s %-3s %7s\n", "", "ours", "bare", "", "ratio");
}

// The library's first object, made by its class object without a registration.
inline _SystemRoot* MakeRoot(const wchar_t* library) {
  const HMODULE server = LoadLibraryW(library);
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get_class_object = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(server, "DllGetClassObject")));
  if (!get_class_object) {
    std::puts("The server exports no class objects.");
    std::exit(1);
  }
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
