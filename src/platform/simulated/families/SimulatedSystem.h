#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "platform/operations/System.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// Names, zone and clock of an estate's local computer.
class SimulatedSystem final : public System {
 public:
  explicit SimulatedSystem(Session& session) : session_(session) {}

  BOOL GetUserNameW(LPWSTR buffer, DWORD* size) override;
  BOOL GetComputerNameW(LPWSTR buffer, DWORD* size) override;
  DWORD GetTimeZoneInformation(TIME_ZONE_INFORMATION* information) override;
  BOOL FileTimeToLocalFileTime(const FILETIME* file_time, FILETIME* local_file_time) override;
  BOOL FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time) override;
  BOOL SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time) override;
  INT VariantTimeToSystemTime(double variant_time, SYSTEMTIME* system_time) override;
  INT SystemTimeToVariantTime(const SYSTEMTIME* system_time, double* variant_time) override;
  std::u16string ModuleFolder() override;
  Ref<Object> CreateObject(LPCWSTR program_identity) override;
  INT MultiByteToWideChar(UINT code_page, DWORD flags, LPCSTR multi_byte, INT multi_byte_size,
                          LPWSTR wide, INT wide_size) override;
  INT WideCharToMultiByte(UINT code_page, DWORD flags, LPCWSTR wide, INT wide_size,
                          char* multi_byte, INT multi_byte_size, LPCSTR default_character,
                          BOOL* used_default) override;
  INT LCMapStringW(DWORD locale, DWORD flags, LPCWSTR text, INT text_size, LPWSTR mapped,
                   INT mapped_size) override;
  DWORD ExpandEnvironmentStringsW(LPCWSTR source, LPWSTR target, DWORD size) override;
  INT lstrlenW(LPCWSTR text) override;
  void* CoTaskMemAlloc(std::size_t size) override;
  void CoTaskMemFree(void* memory) override;
  HLOCAL LocalAlloc(UINT flags, std::size_t size) override;
  HLOCAL LocalFree(HLOCAL memory) override;

 private:
  Session& session_;
  std::map<void*, std::vector<std::byte>> blocks_;
};

}  // namespace veldmark::simulated
