#include "platform/windows/WineServices.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/operations/ErrorCodes.h"

namespace {

// The SDK's macro names a type that means ours inside our namespace.
const ::HKEY kLocalMachine = HKEY_LOCAL_MACHINE;

}  // namespace

namespace veldmark {
namespace {

struct Listed {
  std::wstring name;
  std::wstring display_name;
  ::SERVICE_STATUS status;
  std::vector<std::wstring> dependencies{};

  std::size_t size() const {
    return sizeof(::ENUM_SERVICE_STATUSW) + (name.size() + display_name.size() + 2) * sizeof(WCHAR);
  }
};

std::mutex names_turn;
std::map<::SC_HANDLE, std::wstring>& Names() {
  static std::map<::SC_HANDLE, std::wstring> names;
  return names;
}

bool IsSame(const std::wstring& name, const std::wstring& other) {
  return ::lstrcmpiW(name.c_str(), other.c_str()) == 0;
}

// All services of these types and states, by name.
DWORD List(::SC_HANDLE manager, DWORD service_type, DWORD service_state,
           std::vector<Listed>& listed) {
  std::vector<BYTE> buffer(4096);
  ::DWORD count = 0;
  for (;;) {
    ::DWORD needed = 0;
    ::DWORD resume = 0;
    auto* const records = reinterpret_cast<::ENUM_SERVICE_STATUSW*>(buffer.data());
    if (::EnumServicesStatusW(manager, service_type, service_state, records,
                              static_cast<::DWORD>(buffer.size()), &needed, &count, &resume)) {
      break;
    }
    const ::DWORD error = ::GetLastError();
    if (error != ERROR_MORE_DATA) return error;
    buffer.resize(buffer.size() + std::max<::DWORD>(needed, 4096));
  }
  const auto* const records = reinterpret_cast<const ::ENUM_SERVICE_STATUSW*>(buffer.data());
  for (::DWORD index = 0; index < count; ++index) {
    const ::ENUM_SERVICE_STATUSW& record = records[index];
    const bool is_shown = record.lpDisplayName != nullptr && *record.lpDisplayName != L'\0';
    listed.push_back({record.lpServiceName, is_shown ? record.lpDisplayName : record.lpServiceName,
                      record.ServiceStatus});
  }
  std::ranges::sort(listed, [](const Listed& one, const Listed& other) {
    return ::lstrcmpiW(one.name.c_str(), other.name.c_str()) < 0;
  });
  return kErrorSuccess;
}

// Puts services from one on into a buffer, as many as fit, and returns how many those are.
std::size_t Put(const std::vector<Listed>& listed, std::size_t first,
                ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed) {
  std::size_t count = 0;
  std::size_t used = 0;
  while (first + count < listed.size() && used + listed[first + count].size() <= size) {
    used += listed[first + count++].size();
  }
  auto* const start = reinterpret_cast<BYTE*>(services);
  auto* place = reinterpret_cast<wchar_t*>(start + count * sizeof(::ENUM_SERVICE_STATUSW));
  const auto put = [&](const std::wstring& text) {
    wchar_t* const begin = place;
    std::memcpy(begin, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    place += text.size() + 1;
    return begin;
  };
  for (std::size_t index = 0; index < count; ++index) {
    const Listed& service = listed[first + index];
    const ::ENUM_SERVICE_STATUSW record{put(service.name), put(service.display_name),
                                        service.status};
    std::memcpy(start + index * sizeof record, &record, sizeof record);
  }
  *needed = 0;
  for (std::size_t index = first + count; index < listed.size(); ++index) {
    *needed += static_cast<DWORD>(listed[index].size());
  }
  return count;
}

// The names of a service's dependencies, each with its NUL, which Wine keeps in the registry alone.
std::wstring DependencyList(const std::wstring& name) {
  const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\" + name;
  const auto read = [&](wchar_t* place, ::DWORD& size) {
    return ::RegGetValueW(kLocalMachine, key.c_str(), L"DependOnService", RRF_RT_REG_MULTI_SZ,
                          nullptr, place, &size) == ERROR_SUCCESS;
  };
  ::DWORD size = 0;
  if (!read(nullptr, size)) return {};
  std::wstring list(size / sizeof(wchar_t) + 1, L'\0');
  size = static_cast<::DWORD>(list.size() * sizeof(wchar_t));
  if (!read(list.data(), size)) return {};
  list.resize(list.find_last_not_of(L'\0') + 1);
  if (!list.empty()) list += L'\0';
  return list;
}

std::vector<std::wstring> DependenciesOf(const std::wstring& name) {
  std::vector<std::wstring> dependencies;
  const std::wstring list = DependencyList(name);
  for (std::size_t start = 0; start < list.size(); start += dependencies.back().size() + 1) {
    dependencies.emplace_back(list.c_str() + start);
  }
  return dependencies;
}

std::wstring NameOf(::SC_HANDLE service) {
  const std::lock_guard turn(names_turn);
  const auto found = Names().find(service);
  return found == Names().end() ? std::wstring() : found->second;
}

// Those of `all` that depend on a service, each behind those that depend on itself.
void Collect(const std::vector<Listed>& all, const std::wstring& name, std::vector<Listed>& found) {
  for (const Listed& service : all) {
    const bool depends = std::ranges::any_of(
        service.dependencies, [&](const std::wstring& needed) { return IsSame(needed, name); });
    const bool is_known = std::ranges::any_of(
        found, [&](const Listed& known) { return IsSame(known.name, service.name); });
    if (!depends || is_known) continue;
    const auto place = static_cast<std::ptrdiff_t>(found.size());
    found.push_back(service);
    Collect(all, service.name, found);
    std::rotate(found.begin() + place, found.begin() + place + 1, found.end());
  }
}

}  // namespace

DWORD WineServicesFrom(::SC_HANDLE manager, DWORD service_type, DWORD service_state,
                       ENUM_SERVICE_STATUSW* services, DWORD size, DWORD* needed, DWORD* returned,
                       DWORD* resume_handle) {
  if (needed == nullptr || returned == nullptr) return kErrorInvalidParameter;
  *needed = *returned = 0;
  std::vector<Listed> listed;
  if (const DWORD error = List(manager, service_type, service_state, listed)) return error;
  const std::size_t asked = resume_handle == nullptr ? 0 : *resume_handle;
  const std::size_t first = std::min(asked, listed.size());
  const std::size_t count = Put(listed, first, services, size, needed);
  *returned = static_cast<DWORD>(count);
  const bool is_all = first + count == listed.size();
  if (resume_handle != nullptr) {
    *resume_handle = is_all || count == 0 ? 0 : static_cast<DWORD>(first + count);
  }
  return is_all ? kErrorSuccess : kErrorMoreData;
}

DWORD WineDependents(::SC_HANDLE service, DWORD service_state, ENUM_SERVICE_STATUSW* services,
                     DWORD size, DWORD* needed, DWORD* returned) {
  if (needed == nullptr || returned == nullptr) return kErrorInvalidParameter;
  *needed = *returned = 0;
  if (service_state == 0 || service_state > SERVICE_STATE_ALL) return kErrorInvalidParameter;
  const std::wstring name = NameOf(service);
  if (name.empty()) return kErrorInvalidHandle;
  const ::SC_HANDLE manager =
      ::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_ENUMERATE_SERVICE);
  if (manager == nullptr) return ::GetLastError();
  std::vector<Listed> all;
  const DWORD error = List(manager, SERVICE_WIN32 | SERVICE_DRIVER, SERVICE_STATE_ALL, all);
  for (Listed& each : all) each.dependencies = DependenciesOf(each.name);
  ::CloseServiceHandle(manager);
  if (error != kErrorSuccess) return error;
  std::vector<Listed> found;
  Collect(all, name, found);
  std::erase_if(found, [&](const Listed& each) {
    const bool is_stopped = each.status.dwCurrentState == SERVICE_STOPPED;
    return (service_state & (is_stopped ? SERVICE_INACTIVE : SERVICE_ACTIVE)) == 0;
  });
  *returned = static_cast<DWORD>(Put(found, 0, services, size, needed));
  return *returned == found.size() ? kErrorSuccess : kErrorMoreData;
}

DWORD WineConfig(::SC_HANDLE service, QUERY_SERVICE_CONFIGW* config, DWORD size, DWORD* needed) {
  ::DWORD own = 0;
  ::QueryServiceConfigW(service, nullptr, 0, &own);
  if (const ::DWORD error = ::GetLastError(); error != ERROR_INSUFFICIENT_BUFFER) return error;
  const std::wstring name = NameOf(service);
  const std::wstring list = DependencyList(name);
  const std::size_t list_size = (list.size() + 1) * sizeof(wchar_t);
  const std::size_t name_size = (name.size() + 1) * sizeof(wchar_t);
  *needed = static_cast<DWORD>(own + list_size + name_size);
  if (size < *needed) return kErrorInsufficientBuffer;
  auto* const record = reinterpret_cast<::QUERY_SERVICE_CONFIGW*>(config);
  if (!::QueryServiceConfigW(service, record, own, &own)) return ::GetLastError();
  auto* const end = reinterpret_cast<BYTE*>(config) + *needed;
  const auto put = [](BYTE* place, const std::wstring& text, std::size_t bytes) {
    std::memcpy(place, text.c_str(), bytes);
    return reinterpret_cast<wchar_t*>(place);
  };
  record->lpDependencies = put(end - name_size - list_size, list, list_size);
  if (record->lpDisplayName == nullptr || *record->lpDisplayName == L'\0') {
    record->lpDisplayName = put(end - name_size, name, name_size);
  }
  return kErrorSuccess;
}

void RememberService(::SC_HANDLE service, LPCWSTR name) {
  const std::lock_guard turn(names_turn);
  Names()[service] = reinterpret_cast<const wchar_t*>(name);
}

void ForgetService(::SC_HANDLE service) {
  const std::lock_guard turn(names_turn);
  Names().erase(service);
}

}  // namespace veldmark
