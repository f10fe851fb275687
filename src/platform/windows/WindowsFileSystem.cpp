#include "platform/windows/WindowsFileSystem.h"

#include <string>

#include "platform/operations/ErrorCodes.h"
#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"
#include "platform/windows/WineDifferences.h"

namespace veldmark {
namespace {

template <typename Call>
auto RecordedOn(LPCWSTR path, Call&& call) {
  const auto result = Recorded(call);
  SetLastPlatformError(PublishedPathError(path, LastPlatformError()));
  return result;
}

}  // namespace

HANDLE WindowsFileSystem::FindFirstFileW(LPCWSTR file_name, WIN32_FIND_DATAW* data) {
  return RecordedOn(file_name, [&] { return ::FindFirstFileW(Sdk(file_name), Sdk(data)); });
}

BOOL WindowsFileSystem::FindNextFileW(HANDLE find, WIN32_FIND_DATAW* data) {
  return Recorded([&] { return ::FindNextFileW(find, Sdk(data)); });
}

BOOL WindowsFileSystem::FindClose(HANDLE find) {
  return Recorded([&] { return ::FindClose(find); });
}

BOOL WindowsFileSystem::CreateDirectoryW(LPCWSTR path_name, const SECURITY_ATTRIBUTES* security) {
  return RecordedOn(path_name,
                    [&] { return ::CreateDirectoryW(Sdk(path_name), SdkReadOnly(security)); });
}

BOOL WindowsFileSystem::RemoveDirectoryW(LPCWSTR path_name) {
  return RecordedOn(path_name, [&] { return ::RemoveDirectoryW(Sdk(path_name)); });
}

BOOL WindowsFileSystem::GetFileAttributesExW(LPCWSTR file_name, int level, void* information) {
  return RecordedOn(file_name, [&] {
    return ::GetFileAttributesExW(Sdk(file_name), static_cast<::GET_FILEEX_INFO_LEVELS>(level),
                                  information);
  });
}

BOOL WindowsFileSystem::SetFileAttributesW(LPCWSTR file_name, DWORD attributes) {
  return RecordedOn(file_name, [&] { return ::SetFileAttributesW(Sdk(file_name), attributes); });
}

BOOL WindowsFileSystem::DeleteFileW(LPCWSTR file_name) {
  return RecordedOn(file_name, [&] { return ::DeleteFileW(Sdk(file_name)); });
}

HANDLE WindowsFileSystem::CreateFileW(LPCWSTR file_name, DWORD desired_access, DWORD share_mode,
                                      const SECURITY_ATTRIBUTES* security,
                                      DWORD creation_disposition, DWORD flags_and_attributes,
                                      HANDLE template_file) {
  return RecordedOn(file_name, [&] {
    return ::CreateFileW(Sdk(file_name), desired_access, share_mode, SdkReadOnly(security),
                         creation_disposition, flags_and_attributes, template_file);
  });
}

HANDLE WindowsFileSystem::CreateFileA(LPCSTR file_name, DWORD desired_access, DWORD share_mode,
                                      const SECURITY_ATTRIBUTES* security,
                                      DWORD creation_disposition, DWORD flags_and_attributes,
                                      HANDLE template_file) {
  std::u16string name(kMaxPath, u'\0');
  const int size = ::MultiByteToWideChar(CP_ACP, 0, file_name, -1, Sdk(name.data()),
                                         static_cast<int>(name.size()));
  return RecordedOn(size > 0 ? name.c_str() : nullptr, [&] {
    return ::CreateFileA(file_name, desired_access, share_mode, SdkReadOnly(security),
                         creation_disposition, flags_and_attributes, template_file);
  });
}

BOOL WindowsFileSystem::ReadFile(HANDLE file, void* buffer, DWORD bytes_to_read, DWORD* bytes_read,
                                 void* overlapped) {
  return Recorded([&] {
    return ::ReadFile(file, buffer, bytes_to_read, Sdk(bytes_read),
                      static_cast<::OVERLAPPED*>(overlapped));
  });
}

BOOL WindowsFileSystem::WriteFile(HANDLE file, const void* buffer, DWORD bytes_to_write,
                                  DWORD* bytes_written, void* overlapped) {
  return Recorded([&] {
    return ::WriteFile(file, buffer, bytes_to_write, Sdk(bytes_written),
                       static_cast<::OVERLAPPED*>(overlapped));
  });
}

BOOL WindowsFileSystem::FlushFileBuffers(HANDLE file) {
  return Recorded([&] { return ::FlushFileBuffers(file); });
}

BOOL WindowsFileSystem::GetFileSizeEx(HANDLE file, LARGE_INTEGER* size) {
  return Recorded([&] { return ::GetFileSizeEx(file, Sdk(size)); });
}

DWORD WindowsFileSystem::GetFileSize(HANDLE file, DWORD* size_high) {
  return Recorded([&] { return ::GetFileSize(file, Sdk(size_high)); });
}

BOOL WindowsFileSystem::CloseHandle(HANDLE object) {
  return Recorded([&] { return ::CloseHandle(object); });
}

BOOL WindowsFileSystem::CopyFileW(LPCWSTR existing_file_name, LPCWSTR new_file_name,
                                  BOOL fail_if_exists) {
  const BOOL copied = Recorded(
      [&] { return ::CopyFileW(Sdk(existing_file_name), Sdk(new_file_name), fail_if_exists); });
  SetLastPlatformError(PublishedCopyError(existing_file_name, new_file_name, LastPlatformError()));
  return copied;
}

DWORD WindowsFileSystem::GetLogicalDriveStringsW(DWORD length, LPWSTR buffer) {
  return Recorded([&] { return ::GetLogicalDriveStringsW(length, Sdk(buffer)); });
}

UINT WindowsFileSystem::GetDriveTypeW(LPCWSTR root_path_name) {
  return Recorded([&] { return ::GetDriveTypeW(Sdk(root_path_name)); });
}

BOOL WindowsFileSystem::GetDiskFreeSpaceExW(LPCWSTR folder, std::uint64_t* free_to_caller,
                                            std::uint64_t* total, std::uint64_t* total_free) {
  const BOOL told = RecordedOn(folder, [&] {
    return ::GetDiskFreeSpaceExW(Sdk(folder), reinterpret_cast<::ULARGE_INTEGER*>(free_to_caller),
                                 reinterpret_cast<::ULARGE_INTEGER*>(total),
                                 reinterpret_cast<::ULARGE_INTEGER*>(total_free));
  });
  // Wine tells a missing folder as a missing file.
  if (LastPlatformError() == kErrorFileNotFound && RunsUnderWine()) {
    SetLastPlatformError(kErrorPathNotFound);
  }
  return told;
}

BOOL WindowsFileSystem::GetVolumeInformationW(LPCWSTR root_path_name, LPWSTR volume_name,
                                              DWORD volume_name_size, DWORD* serial_number,
                                              DWORD* maximum_component_length, DWORD* flags,
                                              LPWSTR file_system_name,
                                              DWORD file_system_name_size) {
  return RecordedOn(root_path_name, [&] {
    return ::GetVolumeInformationW(Sdk(root_path_name), Sdk(volume_name), volume_name_size,
                                   Sdk(serial_number), Sdk(maximum_component_length), Sdk(flags),
                                   Sdk(file_system_name), file_system_name_size);
  });
}

}  // namespace veldmark
