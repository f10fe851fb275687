// A whole file read beside the bare calls, in one run:
//
//   bench_contents.exe SERVER.dll FOLDER
//
// The file of 256 MiB lies beside FOLDER and goes again.

#include <windows.h>

#include <oleauto.h>

#include <cstring>
#include <vector>

#include "Measure.h"
#include "Veldmark2_h.h"

namespace {

using namespace bench;

constexpr DWORD kSize = 256u << 20;
constexpr int kPasses = 5;

void MakeFile(const std::wstring& path) {
  std::vector<BYTE> block(1 << 20);
  for (std::size_t i = 0; i < block.size(); ++i) block[i] = static_cast<BYTE>(i * 7 + i / 256);
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  for (DWORD done = 0; done < kSize; done += static_cast<DWORD>(block.size())) {
    WriteFile(file, block.data(), static_cast<DWORD>(block.size()), &written, nullptr);
  }
  CloseHandle(file);
}

// What a careful C++ program would do to hand an array out: read, and copy once.
unsigned BareRead(const std::wstring& path) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  const DWORD size = GetFileSize(file, nullptr);
  std::vector<BYTE> buffer(size);
  DWORD read = 0;
  ReadFile(file, buffer.data(), size, &read, nullptr);
  CloseHandle(file);
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, read);
  std::memcpy(array->pvData, buffer.data(), read);
  const unsigned last = static_cast<BYTE*>(array->pvData)[read - 1];
  SafeArrayDestroy(array);
  return read + last;
}

unsigned OurRead(_SystemRoot* root, BSTR path) {
  SAFEARRAY* array = nullptr;
  Check(root->ReadBinaryFileAPI(path, &array), "ReadBinaryFileAPI");
  const DWORD read = array->rgsabound[0].cElements;
  const unsigned last = static_cast<BYTE*>(array->pvData)[read - 1];
  SafeArrayDestroy(array);
  return read + last;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  const std::wstring path = std::wstring(argv[2]) + L" contents.bin";
  MakeFile(path);
  _SystemRoot* root = CreateRoot(argv[1]);
  const BSTR text = SysAllocString(path.c_str());
  const bool agree = BareRead(path) == OurRead(root, text);
  if (agree) {
    const double bare = Best([&] { BareRead(path); }, kPasses);
    const double ours = Best([&] { OurRead(root, text); }, kPasses);
    Head();
    Row("ReadBinaryFileAPI of 256 MiB, against ReadFile and a copy", ours * 1000, bare * 1000, "ms",
        1.1);
  } else {
    std::printf("the two readings disagree\n");
  }
  SysFreeString(text);
  root->Release();
  DeleteFileW(path.c_str());
  CoUninitialize();
  return agree ? 0 : 1;
}
