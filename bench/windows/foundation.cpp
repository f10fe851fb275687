// The hot paths of the foundation beside the bare platform calls, in one run:
//
//   bench_foundation.exe SERVER.dll FOLDER [FILES]
//
// FOLDER is made with FILES empty files (20,000) unless it is there, and stays for the next
// program.

#include <windows.h>

#include <oleauto.h>
#include <psapi.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "Measure.h"
#include "Veldmark2_h.h"

namespace {

using namespace bench;

// What a careful C++ program would do: name and size of each file of a folder.
std::size_t BareWalk(const std::wstring& folder, double& bytes) {
  std::size_t count = 0;
  WIN32_FIND_DATAW data;
  const HANDLE find = FindFirstFileW((L"\\\\?\\" + folder + L"\\*.*").c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) return 0;
  do {
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    const std::wstring name = data.cFileName;
    bytes += static_cast<double>(data.nFileSizeLow) + static_cast<double>(name.size() != 0);
    ++count;
  } while (FindNextFileW(find, &data));
  FindClose(find);
  return count;
}

std::size_t OurWalk(_SystemRoot* root, const std::wstring& path, double& bytes) {
  _CFiles* files = List(root, path);
  IEnumVARIANT* const enumerator = EnumeratorOf(files);
  std::size_t count = 0;
  VARIANT items[64];
  ULONG fetched = 0;
  do {
    enumerator->Next(64, items, &fetched);
    for (ULONG i = 0; i < fetched; ++i) {
      _CFile* file = nullptr;
      Check(V_DISPATCH(&items[i])->QueryInterface(IID__CFile, reinterpret_cast<void**>(&file)),
            "_CFile");
      BSTR name = nullptr;
      VARIANT size;
      VariantInit(&size);
      file->get_FileName(&name);
      file->get_FileSize(&size);
      bytes += V_R8(&size) + static_cast<double>(SysStringLen(name) != 0);
      SysFreeString(name);
      file->Release();
      VariantClear(&items[i]);
      ++count;
    }
  } while (fetched == 64);
  enumerator->Release();
  files->Release();
  return count;
}

void MeasureWalk(_SystemRoot* root, const std::wstring& folder, int files) {
  double bare_bytes = 0;
  double our_bytes = 0;
  if (BareWalk(folder, bare_bytes) != static_cast<std::size_t>(files) ||
      OurWalk(root, folder, our_bytes) != static_cast<std::size_t>(files) ||
      bare_bytes != our_bytes) {
    std::printf("the two walks disagree: %.0f and %.0f\n", bare_bytes, our_bytes);
    std::exit(1);
  }
  const double bare = Best([&] { BareWalk(folder, bare_bytes); });
  const double ours = Best([&] { OurWalk(root, folder, our_bytes); });
  Row("walk of the folder, early-bound, against FindFirstFileW", ours * 1000, bare * 1000, "ms",
      1.6);

  const auto used = [] {
    PROCESS_MEMORY_COUNTERS_EX counters;
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                         sizeof counters);
    return static_cast<double>(counters.WorkingSetSize);
  };
  // Several lists at once, so that what the heap had free from before doesn't flatter the figure.
  constexpr int kLists = 8;
  const double before = used();
  std::vector<_CFiles*> lists;
  for (int i = 0; i < kLists; ++i) lists.push_back(List(root, folder));
  const double after = used();
  for (_CFiles* list : lists) list->Release();
  Row("memory of a listed file, against 1 KiB", (after - before) / kLists / files, 1024, "B", 1);
}

void MeasureProperty(_SystemRoot* root, const std::wstring& folder) {
  const BSTR text = SysAllocString(folder.c_str());
  _CFolder* object = nullptr;
  Check(root->GetFolder(text, &object), "GetFolder");
  SysFreeString(text);
  DISPID id = 0;
  wchar_t name[] = L"FolderName";
  LPOLESTR names[] = {name};
  Check(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
  constexpr int kCalls = 300000;
  const double late = Best([&] {
    for (int i = 0; i < kCalls; ++i) {
      DISPPARAMS none = {};
      VARIANT result;
      VariantInit(&result);
      object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result,
                     nullptr, nullptr);
      VariantClear(&result);
    }
  });
  const double early = Best([&] {
    for (int i = 0; i < kCalls; ++i) {
      BSTR value = nullptr;
      object->get_FolderName(&value);
      SysFreeString(value);
    }
  });
  const double bare = Best([&] {
    for (int i = 0; i < kCalls; ++i) SysFreeString(SysAllocString(L"measured"));
  });
  Row("late-bound get of a text, against a bare BSTR copy", late / kCalls * 1e9,
      bare / kCalls * 1e9, "ns", 10);
  Row("early-bound get of a text, against a bare BSTR copy", early / kCalls * 1e9,
      bare / kCalls * 1e9, "ns", 3);
  object->Release();
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  const int files = argc > 3 ? _wtoi(argv[3]) : 20000;
  const std::wstring folder = MakeFolder(argv[2], files);

  _SystemRoot* root = CreateRoot(argv[1]);
  Head();
  MeasureWalk(root, folder, files);
  MeasureProperty(root, folder);
  root->Release();
  CoUninitialize();
  return 0;
}
