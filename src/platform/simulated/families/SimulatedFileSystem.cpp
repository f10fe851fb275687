#include "platform/simulated/families/SimulatedFileSystem.h"

#include <algorithm>
#include <cstring>

#include "automation/CaseMapping.h"
#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/FileAccess.h"
#include "platform/simulated/estate/FileNames.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kMaxNewFolderPath = 248;
constexpr std::uint64_t kMaxContent = std::uint64_t{1} << 31;
constexpr DWORD kSettableAttributes =
    kFileAttributeReadOnly | kFileAttributeHidden | kFileAttributeSystem | kFileAttributeArchive |
    kFileAttributeTemporary | kFileAttributeOffline | kFileAttributeNotContentIndexed;

HANDLE FailHandle(DWORD code) { return Fail(code, kInvalidHandleValue); }

template <std::size_t kSize>
void CopyName(WCHAR (&field)[kSize], TextView name) {
  const std::size_t length = std::min(name.size(), kSize - 1);
  std::copy_n(name.begin(), length, field);
  field[length] = u'\0';
}

// Fills the fields that find data and attribute data have in common, under the same names.
template <typename Record>
void FillRecord(Record& record, const FileNode& node) {
  record.dwFileAttributes = node.attributes();
  record.ftCreationTime = ToFileTime(node.created());
  record.ftLastAccessTime = ToFileTime(node.accessed());
  record.ftLastWriteTime = ToFileTime(node.written());
  record.nFileSizeHigh = static_cast<DWORD>(node.size() >> 32);
  record.nFileSizeLow = static_cast<DWORD>(node.size());
}

void FillFindData(WIN32_FIND_DATAW& data, const FileNode& node, TextView name,
                  TextView short_name) {
  data = {};
  FillRecord(data, node);
  CopyName(data.cFileName, name);
  CopyName(data.cAlternateFileName, short_name);
}

bool IsListed(TextView pattern, TextView name, TextView short_name) {
  return MatchesPattern(pattern, ToUpper(name)) ||
         (!short_name.empty() && MatchesPattern(pattern, ToUpper(short_name)));
}

// The connection that an open file of this path goes through, as WNetCancelConnection2W names it;
// empty for local files.
Text ConnectionOf(const Path& path, const Estate& estate) {
  if (path.drive == 0) return ToUpper(u"\\\\" + path.server + u"\\" + path.share);
  return estate.mapped_drives().contains(path.drive) ? Text{path.drive, u':'} : Text();
}

// These two hand out what there is a place for; false for a buffer that is too small.
bool Deliver(TextView text, LPWSTR buffer, DWORD size) {
  return buffer == nullptr || CopyText(text, buffer, size);
}

template <typename T>
void Deliver(T value, T* output) {
  if (output != nullptr) *output = value;
}

}  // namespace

SimulatedFileSystem::~SimulatedFileSystem() {
  for (auto& [value, find] : finds_)
    find->folder->RemoveOpen(&find->sharing, session_.estate.now());
  for (auto& [value, file] : session_.files) Release(*file);
  session_.files.clear();
}

HANDLE SimulatedFileSystem::FindFirstFileW(LPCWSTR file_name, WIN32_FIND_DATAW* data) {
  const Call call = session_.Begin("FindFirstFileW", ViewOf(file_name));
  if (const DWORD fault = call.fault()) return FailHandle(fault);
  Path path = Path::Parse(ViewOf(file_name), session_.estate);
  if (path.error != 0) return FailHandle(path.error);
  if (path.is_plain_too_long()) return FailHandle(kErrorPathNotFound);
  Text pattern;
  if (!path.trailing_backslash && !path.names.empty()) {
    pattern = std::move(path.names.back());
    path.names.pop_back();
  } else if (!path.trailing_backslash && path.drive == 0) {
    // A share itself is no entry of any folder.
    const DWORD error = FindRoot(path, session_.estate).error;
    return FailHandle(error != 0 ? error : kErrorBadNetName);
  }
  const Place place = Find(path, session_.estate);
  if (place.node == nullptr) {
    const bool is_file = place.error == kErrorInvalidName && path.trailing_backslash;
    path.trailing_backslash = false;
    if (is_file && Find(path, session_.estate).node != nullptr) return FailHandle(kErrorDirectory);
    return FailHandle(place.error == kErrorFileNotFound ? kErrorPathNotFound : place.error);
  }
  if (!place.node->is_folder()) return FailHandle(kErrorDirectory);
  if (place.node->list_denied() || place.node->is_delete_pending() ||
      !Grants(place, kFileListDirectory | kSynchronize)) {
    return FailHandle(kErrorAccessDenied);
  }
  if (pattern.empty()) return FailHandle(kErrorFileNotFound);
  if (!IsValidPattern(pattern)) return FailHandle(kErrorInvalidName);

  auto find = std::make_unique<OpenFind>();
  find->folder = place.node;
  find->pattern = TranslatePattern(pattern, path.ends_in_dot);
  find->dots = place.node->parent() == nullptr ? 2 : 0;
  find->sharing = {.reads = true, .lets_read = true, .lets_write = true};
  if (!Advance(*find, data)) return FailHandle(kErrorFileNotFound);
  const std::uintptr_t value = session_.NewHandle();
  find->folder->AddOpen(&find->sharing);
  finds_[value] = std::move(find);
  session_.ledger.Opened(Resource::FindHandle, value, "FindFirstFileW", ToUtf8(ViewOf(file_name)));
  return HandleOf(value);
}

BOOL SimulatedFileSystem::FindNextFileW(HANDLE find, WIN32_FIND_DATAW* data) {
  const Call call = session_.Begin("FindNextFileW");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const auto found = finds_.find(ValueOf(find));
  if (found == finds_.end()) {
    session_.ledger.Misused(Resource::FindHandle, ValueOf(find), "FindNextFileW");
    return Fail(kErrorInvalidHandle);
  }
  return Advance(*found->second, data) ? 1 : Fail(kErrorNoMoreFiles);
}

BOOL SimulatedFileSystem::FindClose(HANDLE find) {
  const Call call = session_.Begin("FindClose");
  const DWORD fault = call.fault();
  const auto found = finds_.find(ValueOf(find));
  if (!session_.ledger.Closed(Resource::FindHandle, ValueOf(find), "FindClose")) {
    return Fail(kErrorInvalidHandle);
  }
  found->second->folder->RemoveOpen(&found->second->sharing, session_.estate.now());
  finds_.erase(found);
  return fault == 0 ? 1 : Fail(fault);
}

BOOL SimulatedFileSystem::CreateDirectoryW(LPCWSTR path_name, const SECURITY_ATTRIBUTES*) {
  const Call call = session_.Begin("CreateDirectoryW", ViewOf(path_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Path path = Path::Parse(ViewOf(path_name), session_.estate);
  if (path.error == 0 && !path.is_long && path.length >= kMaxNewFolderPath) {
    return Fail(kErrorFilenameExcedRange);
  }
  Path without_backslash = path;
  without_backslash.trailing_backslash = false;
  const Place place = Find(without_backslash, session_.estate);
  if (place.node != nullptr) {
    // A root is refused before anybody looks whether it exists.
    return Fail(place.folder == nullptr ? kErrorAccessDenied : kErrorAlreadyExists);
  }
  if (const DWORD error = AdditionError(place, kFileAddSubdirectory)) return Fail(error);
  Add(place, true);
  return 1;
}

BOOL SimulatedFileSystem::RemoveDirectoryW(LPCWSTR path_name) {
  const Call call = session_.Begin("RemoveDirectoryW", ViewOf(path_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Place place = Find(ViewOf(path_name), session_.estate);
  if (place.node == nullptr) return Fail(place.error);
  FileNode& folder = *place.node;
  if (!folder.is_folder()) return Fail(kErrorDirectory);
  if (folder.parent() == nullptr) return Fail(kErrorAccessDenied);
  if (const DWORD error = DeletionError(place)) return Fail(error);
  if (IsCurrentFolder(folder)) return Fail(kErrorSharingViolation);
  if (!folder.children().empty()) return Fail(kErrorDirNotEmpty);
  folder.Delete(session_.estate.now());
  return 1;
}

BOOL SimulatedFileSystem::GetFileAttributesExW(LPCWSTR file_name, int level, void* information) {
  const Call call = session_.Begin("GetFileAttributesExW", ViewOf(file_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (level != kGetFileExInfoStandard || information == nullptr) {
    return Fail(kErrorInvalidParameter);
  }
  const Place place = Find(ViewOf(file_name), session_.estate);
  if (place.node == nullptr) return Fail(place.error);
  if (place.node->is_delete_pending() || !Grants(place, kFileReadAttributes)) {
    return Fail(kErrorAccessDenied);
  }
  WIN32_FILE_ATTRIBUTE_DATA record{};
  FillRecord(record, *place.node);
  std::memcpy(information, &record, sizeof record);
  return 1;
}

BOOL SimulatedFileSystem::SetFileAttributesW(LPCWSTR file_name, DWORD attributes) {
  const Call call = session_.Begin("SetFileAttributesW", ViewOf(file_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Place place = Find(ViewOf(file_name), session_.estate);
  if (place.node == nullptr) return Fail(place.error);
  FileNode& node = *place.node;
  if (node.write_denied() || node.is_delete_pending() || !Grants(place, kFileWriteAttributes)) {
    return Fail(kErrorAccessDenied);
  }
  if (node.is_folder() && (attributes & kFileAttributeTemporary) != 0) {
    return Fail(kErrorInvalidParameter);
  }
  node.Attributes((node.attributes() & ~kSettableAttributes) | (attributes & kSettableAttributes));
  return 1;
}

BOOL SimulatedFileSystem::DeleteFileW(LPCWSTR file_name) {
  const Call call = session_.Begin("DeleteFileW", ViewOf(file_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Place place = Find(ViewOf(file_name), session_.estate);
  if (place.node == nullptr) return Fail(place.error);
  if (place.node->is_folder()) return Fail(kErrorAccessDenied);
  if (const DWORD error = DeletionError(place)) return Fail(error);
  place.node->Delete(session_.estate.now());
  return 1;
}

HANDLE SimulatedFileSystem::CreateFileW(LPCWSTR file_name, DWORD desired_access, DWORD share_mode,
                                        const SECURITY_ATTRIBUTES*, DWORD creation_disposition,
                                        DWORD flags_and_attributes, HANDLE template_file) {
  const TextView name = ViewOf(file_name);
  const Call call = session_.Begin("CreateFileW", name);
  if (const DWORD fault = call.fault()) return FailHandle(fault);
  return Open("CreateFileW", name, desired_access, share_mode, creation_disposition,
              flags_and_attributes, template_file);
}

HANDLE SimulatedFileSystem::CreateFileA(LPCSTR file_name, DWORD desired_access, DWORD share_mode,
                                        const SECURITY_ATTRIBUTES*, DWORD creation, DWORD flags,
                                        HANDLE template_file) {
  const Text name = file_name == nullptr ? Text() : FromUtf8(file_name);
  const Call call = session_.Begin("CreateFileA", name);
  if (const DWORD fault = call.fault()) return FailHandle(fault);
  return Open("CreateFileA", name, desired_access, share_mode, creation, flags, template_file);
}

HANDLE SimulatedFileSystem::Open(std::string_view operation, TextView file_name,
                                 DWORD desired_access, DWORD share_mode, DWORD creation_disposition,
                                 DWORD flags_and_attributes, HANDLE template_file) {
  if (creation_disposition < kCreateNew || creation_disposition > kTruncateExisting ||
      template_file != nullptr) {
    return FailHandle(kErrorInvalidParameter);
  }
  const auto named = NetworkName::Parse(file_name);
  if (named && EqualNoCase(named->share, u"PIPE"))
    return OpenPipe(operation, *named, desired_access, creation_disposition);
  const bool everything = (desired_access & kGenericAll) != 0;
  const bool reads = everything || (desired_access & (kGenericRead | kFileReadData)) != 0;
  const bool writes =
      everything || (desired_access & (kGenericWrite | kFileWriteData | kFileAppendData)) != 0;
  const bool deletes_on_close = (flags_and_attributes & kFileFlagDeleteOnClose) != 0;
  if (creation_disposition == kTruncateExisting &&
      (desired_access & (kGenericWrite | kGenericAll)) == 0) {
    return FailHandle(kErrorInvalidParameter);
  }
  Path path = Path::Parse(file_name, session_.estate);
  Place place = Find(path, session_.estate);
  const bool existed = place.node != nullptr;
  const bool replaces =
      creation_disposition == kCreateAlways || creation_disposition == kTruncateExisting;
  const DWORD new_attributes = flags_and_attributes & kSettableAttributes;
  // Every handle can be waited for and tell attributes.
  DWORD access = desired_access | kSynchronize | kFileReadAttributes;
  if (deletes_on_close) access |= kDelete;
  const bool deletes = everything || deletes_on_close || (desired_access & kDelete) != 0;
  Sharing sharing{.lets_read = (share_mode & kFileShareRead) != 0,
                  .lets_write = (share_mode & kFileShareWrite) != 0,
                  .lets_delete = (share_mode & kFileShareDelete) != 0};
  const auto share_as = [&](DWORD granted) {
    sharing.reads = (granted & kFileReadData) != 0;
    sharing.writes = (granted & (kFileWriteData | kFileAppendData)) != 0;
    sharing.deletes = (granted & kDelete) != 0;
  };
  if (existed) {
    const FileNode& node = *place.node;
    if (creation_disposition == kCreateNew) return FailHandle(kErrorFileExists);
    if (node.is_folder() && (replaces || (flags_and_attributes & kFileFlagBackupSemantics) == 0)) {
      return FailHandle(kErrorAccessDenied);
    }
    const bool read_only = !node.is_folder() && (node.attributes() & kFileAttributeReadOnly) != 0;
    constexpr DWORD kGuarded = kFileAttributeHidden | kFileAttributeSystem;
    const bool unnamed = creation_disposition == kCreateAlways &&
                         (node.attributes() & kGuarded & ~new_attributes) != 0;
    const bool read_denied = node.is_folder() ? node.list_denied() : node.read_denied();
    if (node.is_delete_pending() || (reads && read_denied) ||
        ((writes || replaces) && (node.write_denied() || read_only)) ||
        (deletes && node.delete_denied()) || (deletes_on_close && read_only) || unnamed) {
      return FailHandle(kErrorAccessDenied);
    }
    const Token& token = session_.estate.token();
    const bool backs_up = (flags_and_attributes & kFileFlagBackupSemantics) != 0;
    const DWORD needed = access | (replaces ? kFileWriteData : 0);
    const FileAccess checked = CheckFileAccess(token, place, needed, backs_up);
    if (checked.error != 0) return FailHandle(checked.error);
    const bool overrides = backs_up && token.IsEnabled(Privilege::Backup);
    if (node.security_denied() && (checked.granted & kReadControl) != 0 && !overrides) {
      return FailHandle(kErrorAccessDenied);
    }
    share_as(checked.granted);
    // Replacing needs the right to write, but the handle writes only if that was asked for.
    const bool may_write = (MapGeneric(desired_access, kFileMapping) & kFileWriteData) != 0 ||
                           (desired_access & kMaximumAllowed) != 0;
    access = may_write ? checked.granted : checked.granted & ~kFileWriteData;
    if (!node.CanOpen(sharing)) return FailHandle(kErrorSharingViolation);
  } else {
    const bool creates = creation_disposition == kCreateNew ||
                         creation_disposition == kCreateAlways ||
                         creation_disposition == kOpenAlways;
    if (!creates) return FailHandle(place.error);
    if (const DWORD error = AdditionError(place, kFileAddFile)) return FailHandle(error);
    if (path.trailing_backslash) return FailHandle(kErrorInvalidName);
    place.node = Add(place, false);
    // Who makes a file has what he asks for, whatever its descriptor says.
    if ((access & kMaximumAllowed) != 0) access |= kFileMapping.GenericAll;
    access = MapGeneric(access & ~kMaximumAllowed, kFileMapping);
    share_as(access);
    place.node->Attributes(new_attributes | kFileAttributeArchive);
  }
  if (existed && replaces) {
    place.node->Truncate(session_.estate.now());
    if (creation_disposition == kCreateAlways) {
      place.node->Attributes(new_attributes | kFileAttributeArchive);
    }
  }

  const HANDLE handle = HandOut({.node = place.node,
                                 .sharing = sharing,
                                 .access = access,
                                 .deletes_on_close = deletes_on_close},
                                operation, file_name);
  Text connection = ConnectionOf(path, session_.estate);
  if (!connection.empty()) session_.network_handles[ValueOf(handle)] = std::move(connection);
  if (existed && (creation_disposition == kCreateAlways || creation_disposition == kOpenAlways)) {
    SetLastPlatformError(kErrorAlreadyExists);
  }
  return handle;
}

HANDLE SimulatedFileSystem::OpenPipe(std::string_view operation, const NetworkName& name,
                                     DWORD desired_access, DWORD creation_disposition) {
  Estate& estate = session_.estate;
  const Computer* const computer =
      name.server == u"." ? &estate.local() : estate.ReachServer(name.server.c_str());
  if (computer == nullptr) return FailHandle(kErrorBadNetPath);
  if (creation_disposition == kCreateNew) return FailHandle(kErrorAccessDenied);
  if (!computer->OffersPipe(name.below)) return FailHandle(kErrorFileNotFound);
  // What goes through it doesn't matter here: a file that nobody else has stands for its end.
  return HandOut({.node = std::make_shared<FileNode>(name.below, false, estate.now()),
                  .sharing = {.reads = true, .lets_read = true, .lets_write = true},
                  .access = MapGeneric(desired_access, kFileMapping)},
                 operation, name.below);
}

HANDLE SimulatedFileSystem::HandOut(OpenFile file, std::string_view operation, TextView file_name) {
  const std::uintptr_t value = session_.NewHandle();
  OpenFile& kept = *(session_.files[value] = std::make_unique<OpenFile>(std::move(file)));
  kept.node->AddOpen(&kept.sharing);
  session_.ledger.Opened(Resource::FileHandle, value, operation, ToUtf8(file_name));
  return HandleOf(value);
}

BOOL SimulatedFileSystem::ReadFile(HANDLE file, void* buffer, DWORD bytes_to_read,
                                   DWORD* bytes_read, void* overlapped) {
  const Call call = session_.Begin("ReadFile");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (bytes_read != nullptr) *bytes_read = 0;
  OpenFile* const open = Lookup(file, "ReadFile");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  if (!open->reads()) return Fail(kErrorAccessDenied);
  if (open->node->is_folder()) return Fail(kErrorInvalidFunction);
  if (overlapped != nullptr || bytes_read == nullptr) return Fail(kErrorInvalidParameter);
  *bytes_read = static_cast<DWORD>(open->node->Read(open->position, buffer, bytes_to_read));
  open->position += *bytes_read;
  return 1;
}

BOOL SimulatedFileSystem::WriteFile(HANDLE file, const void* buffer, DWORD bytes_to_write,
                                    DWORD* bytes_written, void* overlapped) {
  const Call call = session_.Begin("WriteFile");
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (bytes_written != nullptr) *bytes_written = 0;
  OpenFile* const open = Lookup(file, "WriteFile");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  if (!open->writes()) return Fail(kErrorAccessDenied);
  if (open->node->is_folder()) return Fail(kErrorInvalidParameter);
  if (overlapped != nullptr || bytes_written == nullptr) return Fail(kErrorInvalidParameter);
  if (open->appends_only()) open->position = open->node->size();
  // What is written is kept in memory, so that a far position fills the disk.
  if (open->position > kMaxContent - bytes_to_write) return Fail(kErrorDiskFull);
  open->node->Write(open->position, buffer, bytes_to_write, session_.estate.now());
  open->position += bytes_to_write;
  *bytes_written = bytes_to_write;
  return 1;
}

BOOL SimulatedFileSystem::FlushFileBuffers(HANDLE file) {
  const Call call = session_.Begin("FlushFileBuffers");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const OpenFile* const open = Lookup(file, "FlushFileBuffers");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  return open->writes() ? 1 : Fail(kErrorAccessDenied);
}

BOOL SimulatedFileSystem::GetFileSizeEx(HANDLE file, LARGE_INTEGER* size) {
  const Call call = session_.Begin("GetFileSizeEx");
  if (const DWORD fault = call.fault()) return Fail(fault);
  const OpenFile* const open = Lookup(file, "GetFileSizeEx");
  if (open == nullptr) return Fail(kErrorInvalidHandle);
  *size = static_cast<LARGE_INTEGER>(open->node->size());
  return 1;
}

DWORD SimulatedFileSystem::GetFileSize(HANDLE file, DWORD* size_high) {
  const Call call = session_.Begin("GetFileSize");
  DWORD error = call.fault();
  if (error == 0) {
    if (const OpenFile* const open = Lookup(file, "GetFileSize")) {
      if (size_high != nullptr) *size_high = static_cast<DWORD>(open->node->size() >> 32);
      return static_cast<DWORD>(open->node->size());
    }
    error = kErrorInvalidHandle;
  }
  return Fail(error, kInvalidFileSize);
}

BOOL SimulatedFileSystem::CloseHandle(HANDLE object) {
  const Call call = session_.Begin("CloseHandle");
  const DWORD fault = call.fault();
  if (session_.tokens.erase(ValueOf(object)) > 0) {
    session_.ledger.Closed(Resource::TokenHandle, ValueOf(object), "CloseHandle");
    return fault == 0 ? 1 : Fail(fault);
  }
  if (!session_.ledger.Closed(Resource::FileHandle, ValueOf(object), "CloseHandle")) {
    return Fail(kErrorInvalidHandle);
  }
  const auto found = session_.files.find(ValueOf(object));
  Release(*found->second);
  session_.files.erase(found);
  session_.network_handles.erase(ValueOf(object));
  return fault == 0 ? 1 : Fail(fault);
}

BOOL SimulatedFileSystem::CopyFileW(LPCWSTR existing_file_name, LPCWSTR new_file_name,
                                    BOOL fail_if_exists) {
  const TextView source_name = ViewOf(existing_file_name);
  const TextView target_name = ViewOf(new_file_name);
  const Call call = session_.Begin("CopyFileW", Text(source_name) + u" -> " + Text(target_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Place source = Find(source_name, session_.estate);
  if (source.node == nullptr) return Fail(source.error);
  if (source.node->is_folder() || source.node->read_denied() || source.node->is_delete_pending() ||
      !Grants(source, kFileReadData | kFileReadAttributes | kSynchronize)) {
    return Fail(kErrorAccessDenied);
  }
  const Sharing reading{.reads = true, .lets_read = true, .lets_write = true};
  if (!source.node->CanOpen(reading)) return Fail(kErrorSharingViolation);

  Place target = Find(target_name, session_.estate);
  if (target.node == nullptr) {
    if (const DWORD error = AdditionError(target, kFileAddFile)) return Fail(error);
    target.node = Add(target, false);
  } else {
    constexpr DWORD kGuarded = kFileAttributeReadOnly | kFileAttributeHidden | kFileAttributeSystem;
    if (fail_if_exists != 0) return Fail(kErrorFileExists);
    if (target.node == source.node) return Fail(kErrorSharingViolation);
    if (target.node->is_folder() || target.node->write_denied() ||
        target.node->is_delete_pending() || (target.node->attributes() & kGuarded) != 0 ||
        !Grants(target, kFileWriteData | kFileWriteAttributes | kSynchronize)) {
      return Fail(kErrorAccessDenied);
    }
    if (!target.node->CanOpen({.writes = true})) return Fail(kErrorSharingViolation);
  }
  target.node->CopyDataFrom(*source.node);
  return 1;
}

DWORD SimulatedFileSystem::GetLogicalDriveStringsW(DWORD length, LPWSTR buffer) {
  const Call call = session_.Begin("GetLogicalDriveStringsW");
  if (const DWORD fault = call.fault()) return Fail(fault, DWORD{0});
  std::map<char16_t, bool> letters;
  for (const auto& [letter, drive] : session_.estate.local().drives()) letters[letter] = true;
  for (const auto& [letter, target] : session_.estate.mapped_drives()) letters[letter] = true;
  Text roots;
  for (const auto& [letter, present] : letters) {
    roots += letter;
    roots += TextView(u":\\\0", 3);
  }
  if (!CopyText(roots, buffer, length)) return static_cast<DWORD>(roots.size() + 1);
  return static_cast<DWORD>(roots.size());
}

UINT SimulatedFileSystem::GetDriveTypeW(LPCWSTR root_path_name) {
  const Call call = session_.Begin("GetDriveTypeW", ViewOf(root_path_name));
  if (call.fault() != 0) return kDriveNoRootDir;
  Path path = Path::Parse(
      root_path_name == nullptr ? session_.estate.current_folder() : ViewOf(root_path_name),
      session_.estate);
  // A drive alone stands for its root, whatever folder is current there.
  const bool is_bare_drive = ViewOf(root_path_name).size() == 2 && path.drive != 0;
  if (root_path_name == nullptr || is_bare_drive) path.names.clear();
  if (path.error != 0 || !path.names.empty()) return kDriveNoRootDir;
  const Place root = FindRoot(path, session_.estate);
  if (root.node == nullptr && root.error != kErrorNotReady) return kDriveNoRootDir;
  const auto& drives = session_.estate.local().drives();
  const auto drive = drives.find(path.drive);
  return drive == drives.end() ? kDriveRemote : drive->second.type;
}

BOOL SimulatedFileSystem::GetDiskFreeSpaceExW(LPCWSTR folder, std::uint64_t* free_to_caller,
                                              std::uint64_t* total, std::uint64_t* total_free) {
  const Call call = session_.Begin("GetDiskFreeSpaceExW", ViewOf(folder));
  if (const DWORD fault = call.fault()) return Fail(fault);
  const Path path = Path::Parse(
      folder == nullptr ? session_.estate.current_folder() : ViewOf(folder), session_.estate);
  const Place place = Find(path, session_.estate);
  if (place.node == nullptr) {
    return Fail(place.error == kErrorFileNotFound ? kErrorPathNotFound : place.error);
  }
  if (!place.node->is_folder()) return Fail(kErrorDirectory);
  if (place.node->list_denied()) return Fail(kErrorAccessDenied);
  const Volume& volume = place.drive->volume;
  Deliver(volume.free_to_caller.value_or(volume.free), free_to_caller);
  Deliver(volume.total, total);
  Deliver(volume.free, total_free);
  return 1;
}

BOOL SimulatedFileSystem::GetVolumeInformationW(LPCWSTR root_path_name, LPWSTR volume_name,
                                                DWORD volume_name_size, DWORD* serial_number,
                                                DWORD* maximum_component_length, DWORD* flags,
                                                LPWSTR file_system_name,
                                                DWORD file_system_name_size) {
  const Call call = session_.Begin("GetVolumeInformationW", ViewOf(root_path_name));
  if (const DWORD fault = call.fault()) return Fail(fault);
  Path path = Path::Parse(
      root_path_name == nullptr ? session_.estate.current_folder() : ViewOf(root_path_name),
      session_.estate);
  if (path.error != 0) return Fail(path.error);
  const TextView given = ViewOf(root_path_name);
  if (root_path_name == nullptr) {
    path.names.clear();
  } else if (!path.names.empty()) {
    // A drive alone stands for the folder that is current there.
    return Fail(given.ends_with(u':') ? kErrorInvalidName : kErrorDirNotRoot);
  } else if (path.drive == 0 && !given.ends_with(u'\\')) {
    return Fail(kErrorInvalidName);
  }
  const Place root = FindRoot(path, session_.estate);
  if (root.node == nullptr) return Fail(root.error);
  const Volume& volume = root.drive->volume;
  Deliver(volume.serial, serial_number);
  Deliver(volume.maximum_component_length, maximum_component_length);
  Deliver(volume.flags, flags);
  const bool fits = Deliver(volume.label, volume_name, volume_name_size) &&
                    Deliver(volume.file_system, file_system_name, file_system_name_size);
  return fits ? 1 : Fail(kErrorMoreData);
}

bool SimulatedFileSystem::Advance(OpenFind& find, WIN32_FIND_DATAW* data) const {
  const FileNode& folder = *find.folder;
  while (find.dots < 2) {
    const bool is_self = find.dots++ == 0;
    const TextView name = is_self ? u"." : u"..";
    if (!IsListed(find.pattern, name, {})) continue;
    const FileNode* const parent = folder.parent();
    FillFindData(*data, is_self || parent == nullptr ? folder : *parent, name, {});
    return true;
  }
  const auto& children = folder.children();
  for (auto entry = children.upper_bound(find.last_key); entry != children.end(); ++entry) {
    const FileNode& node = *entry->second;
    find.last_key = entry->first;
    if (!IsListed(find.pattern, node.name(), node.short_name())) continue;
    FillFindData(*data, node, node.name(), node.short_name());
    return true;
  }
  return false;
}

OpenFile* SimulatedFileSystem::Lookup(HANDLE file, std::string_view operation) {
  const auto found = session_.files.find(ValueOf(file));
  if (found != session_.files.end()) return found->second.get();
  session_.ledger.Misused(Resource::FileHandle, ValueOf(file), operation);
  return nullptr;
}

void SimulatedFileSystem::Release(OpenFile& file) {
  file.node->RemoveOpen(&file.sharing, session_.estate.now());
  if (file.deletes_on_close && !file.node->is_delete_pending()) {
    file.node->Delete(session_.estate.now());
  }
}

bool SimulatedFileSystem::Grants(const Place& place, DWORD access) const {
  return CheckFileAccess(session_.estate.token(), place, access).error == 0;
}

DWORD SimulatedFileSystem::DeletionError(const Place& place) const {
  const FileNode& node = *place.node;
  if (node.is_delete_pending() || node.delete_denied() || !Grants(place, kDelete)) {
    return kErrorAccessDenied;
  }
  const Sharing wanted{.deletes = true, .lets_read = true, .lets_write = true, .lets_delete = true};
  if (!node.CanOpen(wanted)) return kErrorSharingViolation;
  if ((node.attributes() & kFileAttributeReadOnly) != 0) return kErrorAccessDenied;
  return 0;
}

DWORD SimulatedFileSystem::AdditionError(const Place& place, DWORD access) const {
  if (place.error != kErrorFileNotFound) return place.error;
  if (place.folder->write_denied()) return kErrorAccessDenied;
  return CheckFolderAccess(session_.estate.token(), place, access).error;
}

std::shared_ptr<FileNode> SimulatedFileSystem::Add(const Place& place, bool is_folder) {
  const auto node = place.folder->AddChild(place.name, is_folder, session_.estate.now());
  node->Own(session_.estate.token());
  return node;
}

bool SimulatedFileSystem::IsCurrentFolder(const FileNode& node) {
  const Path path = Path::Parse(session_.estate.current_folder(), session_.estate);
  return Find(path, session_.estate).node.get() == &node;
}

}  // namespace veldmark::simulated
