// An early-bound client in C++: it lists a folder through the dual interfaces, with the header that
// widl makes of model/Veldmark2.idl.
//
//   client.exe [FOLDER]

#include "Automation.h"

namespace {

int List(const wchar_t* path) {
  Pointer<_SystemRoot> root;
  HRESULT result = CoCreateInstance(CLSID_SystemRoot, nullptr, CLSCTX_INPROC_SERVER,
                                    IID__SystemRoot, reinterpret_cast<void**>(&root));
  if (FAILED(result)) return Fail(result);

  Pointer<_CFolder> folder;
  result = root->GetFolder(Bstr(path), &folder);
  if (FAILED(result)) return Fail(result);

  Pointer<_CFolders> folders;
  Pointer<_CFiles> files;
  result = folder->GetFolderContents(&folders, &files);
  if (FAILED(result)) return Fail(result);

  long count = 0;
  files->get_Count(&count);
  for (long i = 1; i <= count; ++i) {
    Pointer<_CFile> file;
    Bstr name;
    VARIANT size;
    VariantInit(&size);
    if (FAILED(result = files->get_ItemByIndex(i, &file)) ||
        FAILED(result = file->get_FileName(&name)) || FAILED(result = file->get_FileSize(&size))) {
      return Fail(result);
    }
    std::printf("%14.0f  ", V_R8(&size));
    Print(name);
    std::puts("");
  }
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  const int status = List(argc > 1 ? argv[1] : L"C:\\windows");
  CoUninitialize();
  return status;
}
