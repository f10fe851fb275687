// An early-bound client in C++: it lists a folder through the dual interfaces, with the header that
// widl makes of model/Veldmark2.idl.
//
//   client.exe [FOLDER]

#include <windows.h>

#include <oleauto.h>

#include <cstdio>

#include "Veldmark2_h.h"

namespace {

// Sole owner of an interface pointer.
template <class Interface>
class Pointer {
 public:
  Pointer() = default;
  Pointer(const Pointer&) = delete;
  Pointer& operator=(const Pointer&) = delete;
  ~Pointer() {
    if (pointer_) pointer_->Release();
  }
  Interface** operator&() { return &pointer_; }
  Interface* operator->() const { return pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

// Sole owner of an automation text.
class Bstr {
 public:
  explicit Bstr(const wchar_t* text = nullptr) : text_(SysAllocString(text)) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }
  BSTR* operator&() { return &text_; }
  operator BSTR() const { return text_; }

 private:
  BSTR text_;
};

void Print(const wchar_t* text) {
  char bytes[4096];
  if (WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr) > 0) {
    std::fputs(bytes, stdout);
  }
}

// Prints the error that the latest failed call left behind.
int Fail(HRESULT result) {
  Pointer<IErrorInfo> error;
  Bstr description;
  if (GetErrorInfo(0, &error) == S_OK) error->GetDescription(&description);
  std::printf("error 0x%08lX: ", static_cast<unsigned long>(result));
  Print(description ? static_cast<const wchar_t*>(description) : L"no description");
  std::puts("");
  return 1;
}

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
