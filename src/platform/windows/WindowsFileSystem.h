#pragma once

#include "platform/operations/FileSystem.h"

namespace veldmark {

/// Files, folders and drives of the operating system that this process runs on.
class WindowsFileSystem final : public FileSystem {
 public:
  HANDLE FindFirstFileW(LPCWSTR file_name, WIN32_FIND_DATAW* data) override;
  BOOL FindNextFileW(HANDLE find, WIN32_FIND_DATAW* data) override;
  BOOL FindClose(HANDLE find) override;
  BOOL CreateDirectoryW(LPCWSTR path_name, const SECURITY_ATTRIBUTES* security) override;
  BOOL RemoveDirectoryW(LPCWSTR path_name) override;
  BOOL GetFileAttributesExW(LPCWSTR file_name, int level, void* information) override;
  DWORD GetFileAttributesW(LPCWSTR file_name) override;
  BOOL SetFileAttributesW(LPCWSTR file_name, DWORD attributes) override;
  BOOL DeleteFileW(LPCWSTR file_name) override;
  HANDLE CreateFileW(LPCWSTR file_name, DWORD desired_access, DWORD share_mode,
                     const SECURITY_ATTRIBUTES* security, DWORD creation_disposition,
                     DWORD flags_and_attributes, HANDLE template_file) override;
  HANDLE CreateFileA(LPCSTR file_name, DWORD desired_access, DWORD share_mode,
                     const SECURITY_ATTRIBUTES* security, DWORD creation_disposition,
                     DWORD flags_and_attributes, HANDLE template_file) override;
  BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes_to_read, DWORD* bytes_read,
                void* overlapped) override;
  BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytes_to_write, DWORD* bytes_written,
                 void* overlapped) override;
  BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* new_position,
                        DWORD move_method) override;
  BOOL FlushFileBuffers(HANDLE file) override;
  BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER* size) override;
  DWORD GetFileSize(HANDLE file, DWORD* size_high) override;
  BOOL CloseHandle(HANDLE object) override;
  BOOL CopyFileW(LPCWSTR existing_file_name, LPCWSTR new_file_name, BOOL fail_if_exists) override;
  DWORD GetLogicalDriveStringsW(DWORD length, LPWSTR buffer) override;
  UINT GetDriveTypeW(LPCWSTR root_path_name) override;
  BOOL GetDiskFreeSpaceExW(LPCWSTR folder, std::uint64_t* free_to_caller, std::uint64_t* total,
                           std::uint64_t* total_free) override;
  BOOL GetVolumeInformationW(LPCWSTR root_path_name, LPWSTR volume_name, DWORD volume_name_size,
                             DWORD* serial_number, DWORD* maximum_component_length, DWORD* flags,
                             LPWSTR file_system_name, DWORD file_system_name_size) override;
};

}  // namespace veldmark
