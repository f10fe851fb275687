// Version fields beside the platform's own calls, in one run:
//
//   bench_versions.exe SERVER.dll
//
// Reads every field of every file of the system's own folder.

#include "Measure.h"

#include <winver.h>

#include <cstring>
#include <vector>

namespace {

using namespace bench;

constexpr int kPasses = 5;

struct Total {
  std::size_t files = 0;
  std::size_t characters = 0;
  bool operator==(const Total&) const = default;
};

std::vector<std::wstring> PathsIn(const std::wstring& folder) {
  std::vector<std::wstring> paths;
  WIN32_FIND_DATAW data;
  const HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) return paths;
  do {
    if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
    paths.push_back(L"\\\\?\\" + folder + L"\\" + data.cFileName);
  } while (FindNextFileW(find, &data));
  FindClose(find);
  return paths;
}

Total BareRead(const std::vector<std::wstring>& paths) {
  static const wchar_t* const kNames[] = {
      L"FileDescription", L"CompanyName",     L"ProductName",      L"InternalName",
      L"LegalCopyright",  L"LegalTrademarks", L"OriginalFilename", L"Comments"};
  Total total;
  for (const std::wstring& path : paths) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    if (size == 0) continue;
    std::vector<BYTE> bytes(size);
    if (!GetFileVersionInfoW(path.c_str(), 0, size, bytes.data())) continue;
    ++total.files;
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(bytes.data(), L"\\VarFileInfo\\Translation", &value, &length)) continue;
    WORD translation[2];
    std::memcpy(translation, value, sizeof translation);
    for (const wchar_t* name : kNames) {
      wchar_t query[80];
      swprintf(query, 80, L"\\StringFileInfo\\%04X%04X\\%ls", translation[0], translation[1], name);
      if (VerQueryValueW(bytes.data(), query, &value, &length) && length != 0) {
        const std::wstring text(static_cast<const wchar_t*>(value));
        total.characters += text.size();
      }
    }
  }
  return total;
}

Total OurRead(_CFiles* files) {
  using Get = HRESULT (STDMETHODCALLTYPE _CFile::*)(BSTR*);
  static constexpr Get kFields[] = {&_CFile::get_Description,      &_CFile::get_CompanyName,
                                    &_CFile::get_ProductName,      &_CFile::get_InternalName,
                                    &_CFile::get_LegalCopyright,   &_CFile::get_LegalTrademarks,
                                    &_CFile::get_OriginalFilename, &_CFile::get_Comments};
  Total total;
  IEnumVARIANT* const enumerator = EnumeratorOf(files);
  VARIANT item;
  while (enumerator->Next(1, &item, nullptr) == S_OK) {
    _CFile* file = nullptr;
    Check(V_DISPATCH(&item)->QueryInterface(IID__CFile, reinterpret_cast<void**>(&file)), "_CFile");
    BSTR text = nullptr;
    if (SUCCEEDED(file->get_Version(&text))) {
      SysFreeString(text);
      ++total.files;
      for (const Get field : kFields) {
        (file->*field)(&text);
        total.characters += SysStringLen(text);
        SysFreeString(text);
      }
    }
    file->Release();
    VariantClear(&item);
  }
  enumerator->Release();
  return total;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  const std::wstring folder = system;
  _SystemRoot* root = CreateRoot(argv[1]);

  const std::vector<std::wstring> paths = PathsIn(folder);
  // A file keeps what it has read, so that every pass needs a list of its own.
  std::vector<_CFiles*> lists;
  for (int i = 0; i < kPasses + 1; ++i) lists.push_back(List(root, folder));
  const Total bare_total = BareRead(paths);
  const Total our_total = OurRead(lists.back());
  if (bare_total != our_total || bare_total.files == 0) {
    std::printf(
        "the two readings disagree: %zu files, %zu characters and %zu files, %zu characters\n",
        bare_total.files, bare_total.characters, our_total.files, our_total.characters);
    return 1;
  }
  const double bare = Best([&] { BareRead(paths); }, kPasses);
  std::size_t next = 0;
  const double ours = Best([&] { OurRead(lists[next++]); }, kPasses);
  Head();
  Row("version fields of a folder's files, early-bound", ours * 1000, bare * 1000, "ms", 1.2);
  std::printf("(%zu files, %zu of them with a version)\n", paths.size(), bare_total.files);
  for (_CFiles* files : lists) files->Release();
  root->Release();
  CoUninitialize();
  return 0;
}
