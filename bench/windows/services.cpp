// The services of this computer, of all types and states, listed by the library beside the same
// platform calls in the same slices, in one run:
//
//   bench_services.exe SERVER.dll FOLDER
//
// Both go through the platform that bridges what Wine does otherwise.

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <string>
#include <vector>

#include "Measure.h"
#include "Veldmark2_h.h"
#include "platform/operations/ServiceControl.h"
#include "platform/windows/WindowsPlatform.h"

namespace {

using namespace bench;

constexpr int kWalks = 20;

// What a careful C++ program would do: names and status of each.
std::size_t BareServices(const std::wstring& computer) {
  veldmark::ServiceControl& services = veldmark::WindowsPlatform().services;
  const veldmark::SC_HANDLE manager =
      services.OpenSCManagerW(reinterpret_cast<const char16_t*>(computer.c_str()),
                              u"ServicesActive", veldmark::kManagerEnumerateService);
  std::vector<std::array<std::u16string, 2>> texts;
  std::array<veldmark::ENUM_SERVICE_STATUSW, 257> table;
  veldmark::DWORD resume = 0;
  do {
    veldmark::DWORD needed = 0;
    veldmark::DWORD returned = 0;
    services.EnumServicesStatusW(manager, veldmark::kServiceTypeAll, veldmark::kServiceStateAll,
                                 table.data(), 256, &needed, &returned, &resume);
    for (veldmark::DWORD index = 0; index < returned; ++index) {
      texts.push_back({table[index].lpServiceName, table[index].lpDisplayName});
    }
  } while (resume != 0);
  services.CloseServiceHandle(manager);
  return texts.size();
}

std::size_t OurServices(_CServer* server) {
  _CServices* services = nullptr;
  Check(server->GetServices(static_cast<ServiceTypesEnum>(veldmark::kServiceTypeAll),
                            static_cast<ServiceStatesMaskEnum>(veldmark::kServiceStateAll),
                            &services),
        "GetServices");
  long count = 0;
  services->get_Count(&count);
  services->Release();
  return static_cast<std::size_t>(count);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) return 2;
  Check(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
  _SystemRoot* root = CreateRoot(argv[1]);
  BSTR name = nullptr;
  Check(root->get_LocalComputerName(&name), "LocalComputerName");
  const std::wstring computer = std::wstring(L"\\\\") + name;
  const BSTR domain = SysAllocString(L"");
  _CServer* server = nullptr;
  Check(root->GetServer(name, domain, &server), "GetServer");
  SysFreeString(name);
  SysFreeString(domain);
  if (BareServices(computer) != OurServices(server)) {
    std::printf("the two walks of services disagree\n");
    return 1;
  }
  Head();
  const auto repeat = [](auto&& walk) {
    return Best([&] {
      for (int i = 0; i < kWalks; ++i) walk();
    });
  };
  const double bare = repeat([&] { BareServices(computer); });
  const double ours = repeat([&] { OurServices(server); });
  Row("20 walks of all services, against EnumServicesStatusW", ours * 1000, bare * 1000, "ms", 1.4);
  server->Release();
  root->Release();
  CoUninitialize();
  return 0;
}
