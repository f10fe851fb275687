#pragma once

#include <map>
#include <memory>

#include "platform/operations/FileSystem.h"
#include "platform/simulated/estate/Path.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The files of an estate's computers, kept and named as the system's own file system does.
class SimulatedFileSystem final : public FileSystem {
 public:
  explicit SimulatedFileSystem(Session& session) : session_(session) {}
  ~SimulatedFileSystem() override;

  HANDLE FindFirstFileW(LPCWSTR file_name, WIN32_FIND_DATAW* data) override;
  BOOL FindNextFileW(HANDLE find, WIN32_FIND_DATAW* data) override;
  BOOL FindClose(HANDLE find) override;
  BOOL CreateDirectoryW(LPCWSTR path_name, const SECURITY_ATTRIBUTES* security) override;
  BOOL RemoveDirectoryW(LPCWSTR path_name) override;
  BOOL GetFileAttributesExW(LPCWSTR file_name, int level, void* information) override;
  BOOL SetFileAttributesW(LPCWSTR file_name, DWORD attributes) override;
  BOOL DeleteFileW(LPCWSTR file_name) override;
  HANDLE CreateFileW(LPCWSTR file_name, DWORD desired_access, DWORD share_mode,
                     const SECURITY_ATTRIBUTES* security, DWORD creation_disposition,
                     DWORD flags_and_attributes, HANDLE template_file) override;
  HANDLE CreateFileA(LPCSTR file_name, DWORD desired_access, DWORD share_mode,
                     const SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                     HANDLE template_file) override;
  BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes_to_read, DWORD* bytes_read,
                void* overlapped) override;
  BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytes_to_write, DWORD* bytes_written,
                 void* overlapped) override;
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

 private:
  struct OpenFind {
    std::shared_ptr<FileNode> folder;
    Text pattern;
    int dots = 0;   // how many of "." and ".." have been considered
    Text last_key;  // the entry delivered last; a listing goes on behind it, whatever changed
                    // meanwhile
    Sharing sharing;
  };

  // What opening by either kind of name does, once the call has begun.
  HANDLE Open(std::string_view operation, TextView file_name, DWORD desired_access,
              DWORD share_mode, DWORD creation_disposition, DWORD flags_and_attributes,
              HANDLE template_file);
  HANDLE OpenPipe(std::string_view operation, const NetworkName& name, DWORD desired_access,
                  DWORD creation_disposition);
  // A handle for what is open now.
  HANDLE HandOut(OpenFile file, std::string_view operation, TextView file_name);
  bool Advance(OpenFind& find, WIN32_FIND_DATAW* data) const;
  OpenFile* Lookup(HANDLE file, std::string_view operation);
  void Release(OpenFile& file);
  // Whether the caller's token is granted this of what the path led to.
  bool Grants(const Place& place, DWORD access) const;
  // What stands in the way of opening an existing file or folder to delete it.
  DWORD DeletionError(const Place& place) const;
  // What stands in the way of a new name in a folder; `access` is the right to add it.
  DWORD AdditionError(const Place& place, DWORD access) const;
  // Adds what nothing stands in the way of.
  std::shared_ptr<FileNode> Add(const Place& place, bool is_folder);
  bool IsCurrentFolder(const FileNode& node);

  Session& session_;
  std::map<std::uintptr_t, std::unique_ptr<OpenFind>> finds_;
};

}  // namespace veldmark::simulated
