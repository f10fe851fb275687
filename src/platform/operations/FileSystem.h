#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr std::size_t kMaxPath = 260;

inline constexpr DWORD kFileAttributeReadOnly = 0x1;
inline constexpr DWORD kFileAttributeHidden = 0x2;
inline constexpr DWORD kFileAttributeSystem = 0x4;
inline constexpr DWORD kFileAttributeDirectory = 0x10;
inline constexpr DWORD kFileAttributeArchive = 0x20;
inline constexpr DWORD kFileAttributeNormal = 0x80;
inline constexpr DWORD kFileAttributeTemporary = 0x100;
inline constexpr DWORD kFileAttributeReparsePoint = 0x400;
inline constexpr DWORD kFileAttributeCompressed = 0x800;
inline constexpr DWORD kFileAttributeOffline = 0x1000;
inline constexpr DWORD kFileAttributeNotContentIndexed = 0x2000;
inline constexpr DWORD kFileAttributeEncrypted = 0x4000;

inline constexpr DWORD kGenericRead = 0x80000000;
inline constexpr DWORD kGenericWrite = 0x40000000;
inline constexpr DWORD kGenericAll = 0x10000000;
inline constexpr DWORD kDelete = 0x00010000;
inline constexpr DWORD kReadControl = 0x00020000;
inline constexpr DWORD kFileReadData = 0x1;
inline constexpr DWORD kFileWriteData = 0x2;
inline constexpr DWORD kFileAppendData = 0x4;
inline constexpr DWORD kFileWriteAttributes = 0x100;

inline constexpr DWORD kFileShareRead = 0x1;
inline constexpr DWORD kFileShareWrite = 0x2;
inline constexpr DWORD kFileShareDelete = 0x4;

inline constexpr DWORD kCreateNew = 1;
inline constexpr DWORD kCreateAlways = 2;
inline constexpr DWORD kOpenExisting = 3;
inline constexpr DWORD kOpenAlways = 4;
inline constexpr DWORD kTruncateExisting = 5;

inline constexpr DWORD kFileFlagBackupSemantics = 0x02000000;
inline constexpr DWORD kFileFlagDeleteOnClose = 0x04000000;
inline constexpr DWORD kFileFlagSequentialScan = 0x08000000;

inline constexpr DWORD kInvalidFileSize = 0xFFFFFFFF;
inline constexpr int kGetFileExInfoStandard = 0;

inline constexpr UINT kDriveNoRootDir = 1;
inline constexpr UINT kDriveRemovable = 2;
inline constexpr UINT kDriveFixed = 3;
inline constexpr UINT kDriveRemote = 4;
inline constexpr UINT kDriveCdrom = 5;
inline constexpr UINT kDriveRamdisk = 6;

// 100-nanosecond intervals since 1601-01-01 UTC, low half first.
struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

// One directory entry. 592 bytes; the names are NUL-terminated.
struct WIN32_FIND_DATAW {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  WCHAR cFileName[260];
  WCHAR cAlternateFileName[14];  // the 8.3 name; empty where the long name is one already
};

struct WIN32_FILE_ATTRIBUTE_DATA {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
};

struct SECURITY_ATTRIBUTES {
  DWORD nLength;
  void* lpSecurityDescriptor;
  BOOL bInheritHandle;
};

// Files, folders and drives. Every operation here reports a failure by its result and the reason by
// the last error (LastError.h).
//
// Path names are NUL-terminated. A plain path ("C:\Data\a.txt", "\\srv\share\a.txt", or relative to
// the current folder) is normalised: "/" counts as "\", "." and ".." are resolved, blanks and dots
// at the end of a name are dropped; its full form is limited to 259 characters (247 for a new
// folder). A long path ("\\?\C:\..." or "\\?\UNC\srv\share\...") is taken as it stands, up to 32767
// characters. The codes common to all operations that take a path:
//    2  the last name of the path doesn't exist
//    3  another name of the path, or its drive, doesn't exist; the path is empty
//    5  the caller lacks the access
//   21  there is no medium in the drive
//   53  the server doesn't exist or can't be reached
//   67  the server has no such share
//  123  a name has a character that names can't have, or more than 255 characters
//  206  a plain path over the limit (some operations and releases say 3)
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Begins a listing with the first entry that matches the last name of `file_name`, which may hold
  // wildcards ("*" and "?", matched against the long and the short name; "*.*" matches all). Fills
  // `data` and returns a find handle that the caller closes with FindClose; kInvalidHandleValue on
  // failure: 2 if nothing matches (also for a drive's root named without a pattern), 3 for a
  // missing folder, 5 where listing is denied, 123 for a pattern that can't be a name, 267 if what
  // should be the folder is a file. A folder's listing begins with "." and "..", except in a
  // drive's root.
  virtual HANDLE FindFirstFileW(LPCWSTR file_name, WIN32_FIND_DATAW* data) = 0;

  // Fills `data` with the next entry and returns non-zero; 0 at the end (18) or on failure (6: no
  // find handle).
  virtual BOOL FindNextFileW(HANDLE find, WIN32_FIND_DATAW* data) = 0;

  // Ends a listing and frees its handle. Non-zero on success; 0 with 6 if `find` is none. Find
  // handles are closed here only, never by CloseHandle.
  virtual BOOL FindClose(HANDLE find) = 0;

  // Creates a folder; its parent must exist. Non-zero on success. 183: the name exists, as a folder
  // or file; 3: the parent doesn't; 5: denied; 123 and 206 as above. `security` may be null; a
  // record of null members means the inherited default.
  virtual BOOL CreateDirectoryW(LPCWSTR path_name, const SECURITY_ATTRIBUTES* security) = 0;

  // Removes an empty folder. Non-zero on success. 145: not empty; 267: a file; 5: read-only, denied
  // or a drive's root; 32: in use, for example by an open handle or as the current folder.
  virtual BOOL RemoveDirectoryW(LPCWSTR path_name) = 0;

  // Fills a WIN32_FILE_ATTRIBUTE_DATA (`level` must be kGetFileExInfoStandard, else 87) and returns
  // non-zero. A trailing "\" is accepted for folders; behind a file's name it gives 123 or 3.
  virtual BOOL GetFileAttributesExW(LPCWSTR file_name, int level, void* information) = 0;

  // Stores the attributes that can be set (read-only, hidden, system, archive, temporary, offline,
  // not indexed); the others, directory among them, stay as they are. 0 or kFileAttributeNormal
  // clears. Non-zero on success.
  virtual BOOL SetFileAttributesW(LPCWSTR file_name, DWORD attributes) = 0;

  // Deletes a file. Non-zero on success. 5: a folder, read-only, or denied; 32: open elsewhere
  // without kFileShareDelete. A file that is open with it goes when its last handle is closed.
  virtual BOOL DeleteFileW(LPCWSTR file_name) = 0;

  // Opens or creates a file, or opens a folder (with kFileFlagBackupSemantics only, else 5).
  // Returns a handle that the caller closes with CloseHandle; kInvalidHandleValue on failure: 80
  // for kCreateNew of what exists; 32 if another open handle's access and sharing don't go with
  // these; 5: denied, writing to a read-only file, kCreateAlways over a hidden or system file
  // without naming those attributes, a folder; 87: unknown disposition, or kTruncateExisting
  // without write access. On success the last error is 183 if kCreateAlways replaced or kOpenAlways
  // opened an existing file, else 0. `template_file` must be null.
  virtual HANDLE CreateFileW(LPCWSTR file_name, DWORD desired_access, DWORD share_mode,
                             const SECURITY_ATTRIBUTES* security, DWORD creation_disposition,
                             DWORD flags_and_attributes, HANDLE template_file) = 0;

  // The same by a name in the system's code page, as "\\\\srv\\PIPE\\name" names a computer's pipe:
  // 2 or 53 where there is none.
  virtual HANDLE CreateFileA(LPCSTR file_name, DWORD desired_access, DWORD share_mode,
                             const SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags,
                             HANDLE template_file) = 0;

  // Reads up to `bytes_to_read` bytes at the handle's position and advances it. Non-zero on
  // success, with
  // `*bytes_read` smaller at the end of the file and 0 behind it. 0 on failure: 5 without read
  // access, 6 for no file handle. `overlapped` must be null.
  virtual BOOL ReadFile(HANDLE file, void* buffer, DWORD bytes_to_read, DWORD* bytes_read,
                        void* overlapped) = 0;

  // Writes at the handle's position, or at the end of the file if the handle has kFileAppendData
  // without kFileWriteData, and advances it. Non-zero on success, with `*bytes_written` set. 5
  // without write access, 6 for no file handle, 112 if the disk is full. `overlapped` must be null.
  virtual BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytes_to_write,
                         DWORD* bytes_written, void* overlapped) = 0;

  // Hands what was written to the disk. Non-zero on success; 5 without write access, 6.
  virtual BOOL FlushFileBuffers(HANDLE file) = 0;

  // The size in bytes. Non-zero on success; 6.
  virtual BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER* size) = 0;

  // The low half of the size, with the high half in `*size_high` (may be null). kInvalidFileSize on
  // failure (6), but also as the low half of a size: then the last error is 0.
  virtual DWORD GetFileSize(HANDLE file, DWORD* size_high) = 0;

  // Closes a handle of CreateFileW or a token. Non-zero on success; 6 for a handle that isn't open.
  virtual BOOL CloseHandle(HANDLE object) = 0;

  // Copies a file with its contents, attributes and time of the last write. Non-zero on success.
  // 80: the target exists and `fail_if_exists` is non-zero; 5: the target is read-only, hidden or a
  // folder, the source is a folder, or denied; 32: either is open in a way that doesn't allow it;
  // 2, 3, 53, 67, 123 for either path.
  virtual BOOL CopyFileW(LPCWSTR existing_file_name, LPCWSTR new_file_name,
                         BOOL fail_if_exists) = 0;

  // Writes the local drives' roots ("C:\", NUL, "D:\", NUL, NUL) and returns their length without
  // the last NUL. If `length` (in characters) is too small, writes nothing and returns the length
  // needed with it. 0 on failure.
  virtual DWORD GetLogicalDriveStringsW(DWORD length, LPWSTR buffer) = 0;

  // One of kDrive...: the type of the drive or share that the root path names (null: the current
  // folder's); kDriveNoRootDir if there is none.
  virtual UINT GetDriveTypeW(LPCWSTR root_path_name) = 0;

  // The bytes of the volume that a folder lies on: free to the caller by his quota, in all, and
  // free in all; each may be null, as may the folder: the current one. Non-zero on success; 3 for a
  // missing folder; 267: a file; 5, 21, 53, 67, 123. A drive needs no "\" behind it. A share's root
  // ought to have one; the platform takes it without, too.
  virtual BOOL GetDiskFreeSpaceExW(LPCWSTR folder, std::uint64_t* free_to_caller,
                                   std::uint64_t* total, std::uint64_t* total_free) = 0;

  // Describes the volume of a root path, which ends in "\" (null: the current folder's): its label
  // and file system as NUL-terminated texts in buffers of so many characters, its serial number,
  // the longest name, and the file system's flags. Every output may be null. Non-zero on success;
  // 3: no such drive; 144: a folder that is no root; 123: a share without the "\", or a drive
  // without it that has another current folder than its root; 234 for a buffer too small; 5, 21,
  // 53, 67.
  virtual BOOL GetVolumeInformationW(LPCWSTR root_path_name, LPWSTR volume_name,
                                     DWORD volume_name_size, DWORD* serial_number,
                                     DWORD* maximum_component_length, DWORD* flags,
                                     LPWSTR file_system_name, DWORD file_system_name_size) = 0;
};

}  // namespace veldmark
