// Registry values and keys beside the platform's own calls, in one run:
//
//   bench_registry.exe SERVER.dll
//
// Lists 10,000 values and 2,000 sub-keys of a key of its own. The bare loops make the calls that
// the lists can't do without: each value's data is read, and each sub-key's default value.

#include "Measure.h"

#include <vector>

namespace {

using namespace bench;

constexpr int kValues = 10000;
constexpr int kSubKeys = 2000;
constexpr wchar_t kPath[] = L"Software\\Veldmark2 bench";
constexpr ::REGSAM kRead = KEY_READ;

// The client's header has values of the same names.
const ::HKEY kRoot = reinterpret_cast<::HKEY>(static_cast<LONG_PTR>(-2147483647));
constexpr DWORD kText = 1;

void Furnish() {
  ::HKEY key = nullptr;
  Check(HRESULT_FROM_WIN32(
            RegCreateKeyExW(kRoot, kPath, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr)),
        "RegCreateKeyExW");
  for (int i = 0; i < kValues; ++i) {
    const std::wstring text = L"measured value " + std::to_wstring(i);
    RegSetValueExW(key, text.c_str(), 0, kText, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
  for (int i = 0; i < kSubKeys; ++i) {
    ::HKEY sub_key = nullptr;
    RegCreateKeyExW(key, (L"measured key " + std::to_wstring(i)).c_str(), 0, nullptr, 0,
                    KEY_ALL_ACCESS, nullptr, &sub_key, nullptr);
    RegSetValueExW(sub_key, nullptr, 0, kText, reinterpret_cast<const BYTE*>(L"default"), 16);
    RegCloseKey(sub_key);
  }
  RegCloseKey(key);
}

::HKEY Open(::HKEY parent, const wchar_t* path) {
  ::HKEY key = nullptr;
  RegOpenKeyExW(parent, path, 0, kRead, &key);
  return key;
}

std::size_t BareValues() {
  const ::HKEY key = Open(kRoot, kPath);
  DWORD longest = 0;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &longest,
                   nullptr, nullptr, nullptr);
  std::vector<wchar_t> name(longest + 1);
  std::vector<BYTE> data;
  std::size_t values = 0;
  for (DWORD index = 0;; ++index) {
    auto length = static_cast<DWORD>(name.size());
    DWORD type = 0;
    DWORD size = 0;
    if (RegEnumValueW(key, index, name.data(), &length, nullptr, &type, nullptr, &size) != 0) break;
    data.resize(size);
    if (RegQueryValueExW(key, name.data(), nullptr, &type, data.data(), &size) == 0) ++values;
  }
  RegCloseKey(key);
  return values;
}

std::size_t BareSubKeys() {
  const ::HKEY key = Open(kRoot, kPath);
  wchar_t name[256];
  std::vector<BYTE> data;
  std::size_t keys = 0;
  for (DWORD index = 0; RegEnumKeyW(key, index, name, 256) == 0; ++index) {
    const ::HKEY sub_key = Open(kRoot, (std::wstring(kPath) + L"\\" + name).c_str());
    DWORD type = 0;
    DWORD size = 0;
    RegQueryValueExW(sub_key, nullptr, nullptr, &type, nullptr, &size);
    data.resize(size);
    if (RegQueryValueExW(sub_key, nullptr, nullptr, &type, data.data(), &size) == 0) ++keys;
    RegCloseKey(sub_key);
  }
  RegCloseKey(key);
  return keys;
}

template <class List>
std::size_t CountAndRelease(List* list) {
  LONG count = 0;
  list->get_Count(&count);
  list->Release();
  return static_cast<std::size_t>(count);
}

std::size_t OurValues(_CRegKey* key) {
  _CRegValues* values = nullptr;
  Check(key->GetValues(&values), "GetValues");
  return CountAndRelease(values);
}

std::size_t OurSubKeys(_CRegKey* key) {
  _CRegKeys* keys = nullptr;
  Check(key->GetSubKeys(&keys), "GetSubKeys");
  return CountAndRelease(keys);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  Furnish();
  _SystemRoot* root = CreateRoot(argv[1]);
  _CRegistry* registry = nullptr;
  Check(root->GetRegistry(&registry), "GetRegistry");
  const BSTR path = SysAllocString(kPath);
  _CRegKey* key = nullptr;
  Check(registry->GetRegKey(static_cast<HKEY_VALUES>(0x80000001), path, &key), "GetRegKey");
  SysFreeString(path);

  bool agree = BareValues() == kValues && OurValues(key) == kValues;
  agree = agree && BareSubKeys() == kSubKeys && OurSubKeys(key) == kSubKeys;
  if (agree) {
    Head();
    Row("10,000 values of a key, early-bound", Best([&] { OurValues(key); }) * 1000,
        Best(BareValues) * 1000, "ms", 1.5);
    Row("2,000 sub-keys with their default values", Best([&] { OurSubKeys(key); }) * 1000,
        Best(BareSubKeys) * 1000, "ms", 1.5);
  } else {
    std::printf("the two listings disagree\n");
  }
  key->Release();
  registry->Release();
  root->Release();
  RegDeleteTreeW(kRoot, kPath);
  RegDeleteKeyW(kRoot, kPath);
  CoUninitialize();
  return agree ? 0 : 1;
}
