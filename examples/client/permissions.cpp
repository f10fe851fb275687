// An early-bound client in C++ that reads and changes permissions: it makes a file, shows its owner
// and entries, grants a right, saves, reads it back through a second object, and deletes the file.
//
//   permissions.exe [SID]
//
// SID is whom the right is granted to: the group Users (S-1-5-32-545) unless another is named.

#include "Automation.h"

namespace {

// Shows owner and entries of a descriptor.
HRESULT Show(_CSecurityDescriptor* descriptor) {
  Pointer<_CSid> owner;
  HRESULT result = descriptor->GetOwnerSid(&owner);
  if (SUCCEEDED(result) && owner.Get()) {
    Bstr text;
    result = owner->get_SidText(&text);
    std::fputs("  owner ", stdout);
    Print(text);
    std::puts("");
  }
  Pointer<_CAcl> list;
  Pointer<_CAces> entries;
  long count = 0;
  if (SUCCEEDED(result)) result = descriptor->GetDACL(&list);
  if (SUCCEEDED(result)) result = list->GetAces(&entries);
  if (SUCCEEDED(result)) result = entries->get_Count(&count);
  for (long index = 1; SUCCEEDED(result) && index <= count; ++index) {
    VARIANT position;
    V_VT(&position) = VT_I4;
    V_I4(&position) = index;
    Pointer<_CAce> entry;
    Pointer<_CSid> account;
    AceTypeEnum type{};
    Bstr sid;
    Bstr rights;
    if (FAILED(result = entries->get_Item(&position, &entry)) ||
        FAILED(result = entry->get_AceType(&type)) || FAILED(result = entry->GetSid(&account)) ||
        FAILED(result = account->get_SidText(&sid)) ||
        FAILED(result = entry->get_PermissionsString(&rights))) {
      return result;
    }
    std::fputs(type == ACCESS_ALLOWED_ACE_TYPE ? "  allows " : "  denies ", stdout);
    Print(sid);
    std::fputs(": ", stdout);
    Print(rights);
    std::puts("");
  }
  return result;
}

// The descriptor of the file as a new object reads it.
HRESULT Read(_SystemRoot* root, BSTR path, _CSecurityDescriptor** descriptor) {
  Pointer<_CFile> file;
  const HRESULT result = root->GetFile(path, &file);
  return SUCCEEDED(result) ? file->GetSecurityDescriptor(descriptor) : result;
}

HRESULT GrantAndShow(_SystemRoot* root, BSTR path, const wchar_t* account) {
  constexpr long kModify = 0x1301BF;
  Pointer<_CSecurityDescriptor> descriptor;
  Pointer<_CAcl> list;
  Pointer<_CAce> granted;
  HRESULT result = Read(root, path, &descriptor);
  if (SUCCEEDED(result)) std::puts("as it was made");
  if (SUCCEEDED(result)) result = Show(descriptor.Get());
  if (SUCCEEDED(result)) result = descriptor->GetDACL(&list);
  if (SUCCEEDED(result)) {
    result = list->Grant(Bstr(account), static_cast<AceTypeEnum>(ACCESS_ALLOWED_ACE_TYPE), kModify,
                         static_cast<AceFlagsEnum>(0), Bstr(L""), Bstr(L""), &granted);
  }
  if (SUCCEEDED(result)) std::puts("as it is to be");
  if (SUCCEEDED(result)) result = Show(descriptor.Get());
  if (SUCCEEDED(result)) result = descriptor->Save();
  Pointer<_CSecurityDescriptor> again;
  if (SUCCEEDED(result)) result = Read(root, path, &again);
  if (SUCCEEDED(result)) std::puts("as the file system kept it");
  return SUCCEEDED(result) ? Show(again.Get()) : result;
}

int Run(const wchar_t* account) {
  Pointer<_SystemRoot> root;
  HRESULT result = CoCreateInstance(CLSID_SystemRoot, nullptr, CLSCTX_INPROC_SERVER,
                                    IID__SystemRoot, reinterpret_cast<void**>(&root));
  if (FAILED(result)) return Fail(result);
  const Bstr path(L"C:\\Veldmark2 permissions sample.txt");
  VARIANT_BOOL done = VARIANT_FALSE;
  result = root->WriteTextFile(path, Bstr(L"sample"), VARIANT_FALSE, &done);
  if (FAILED(result)) return Fail(result);
  const HRESULT shown = GrantAndShow(root.Get(), path, account);
  if (FAILED(shown)) Fail(shown);

  Pointer<_CFile> file;
  result = root->GetFile(path, &file);
  if (SUCCEEDED(result)) result = file->Delete(VARIANT_FALSE, &done);
  if (FAILED(result)) return Fail(result);
  return FAILED(shown) ? 1 : 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  const int status = Run(argc > 1 ? argv[1] : L"S-1-5-32-545");
  CoUninitialize();
  return status;
}
