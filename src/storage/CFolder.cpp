#include "storage/CFolder.h"

#include <vector>

#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "security/CSecurityDescriptor.h"
#include "storage/CFile.h"
#include "storage/CFiles.h"
#include "storage/CFolders.h"
#include "storage/CPathNames.h"
#include "storage/PathForms.h"
#include "storage/PlatformFiles.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CFolder";
constexpr std::int32_t kAttributesNotSet = 911;
constexpr std::int32_t kFolderFoundEvent = 1;
constexpr std::int32_t kFileFoundEvent = 2;

const EventInterface& DescribeFolderEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CFolder", u"Objects that a walk finds, one by one.")
          .Event<Ref<CFolder>, bool&>(u"FolderFound", u"A folder; Cancel ends the walk.",
                                      {u"Folder", u"Cancel"})
          .Event<Ref<CFile>, bool&>(u"FileFound", u"A file; Cancel ends the walk.",
                                    {u"File", u"Cancel"});
  return table;
}

[[noreturn]] void RaiseErr() { Raise(Err().Number(), SourceOf(kClassName), Err().Description()); }

/// One folder on the way down a deletion.
struct DeletionLevel {
  Ref<CFolder> folder;
  Ref<CFolders> sub_folders;
  std::int32_t done = 0;
};

/// Lists a folder whose deletion begins and deletes its files where that is asked, counting them.
DeletionLevel BeginDeletion(Ref<CFolder> folder, bool delete_files_first, bool cascade,
                            std::int32_t& count) {
  DeletionLevel level{std::move(folder), {}};
  Ref<CFiles> files;
  if (delete_files_first || cascade) level.folder->GetFolderContents(level.sub_folders, files);
  if (delete_files_first) {
    if (!files) Raise(runtime_error::kObjectNotSet, SourceOf(kClassName));
    const std::int32_t total = files->Count();
    for (std::int32_t i = 1; i <= total; ++i) {
      if (!files->ItemByIndex(i)->Delete(true)) RaiseErr();
      ++count;
    }
  }
  if (cascade && !level.sub_folders) Raise(runtime_error::kObjectNotSet, SourceOf(kClassName));
  return level;
}

}  // namespace

const Interface& CFolder::Describe() {
  static const Interface table =
      Declare<CFolder>(u"CFolder", u"One folder.")
          .Method<&CFolder::Delete>(u"Delete", u"Removes the folder; the number of items removed.",
                                    {u"DeleteFilesFirst", u"Cascade"})
          .Remark(
              u"DeleteFilesFirst deletes the folder's files, read-only ones too. Cascade does "
              u"the same with its sub-folders, one after the other down to the last; without "
              u"DeleteFilesFirst it removes only those that hold no files. A junction or link "
              u"counts as a sub-folder: both flags together delete what it leads to. What "
              u"remains in the folder at the end raises 145, and whatever was deleted before "
              u"an error stays deleted. While AsyncFetch is on, either flag raises 91 and "
              u"nothing is deleted.")
          .Method<&CFolder::CreateSubFolder>(
              u"CreateSubFolder", u"Makes a sub-folder; False when that fails.", {u"FolderName"})
          .Method<&CFolder::GetFiles>(u"GetFiles",
                                      u"The files, with sub-folders listed as files too.")
          .Remark(
              u"\".\" and \"..\" are among them, except in a drive's root. Attributes tells "
              u"folders from files (FA_Directory); GetFolderContents lists files alone.")
          .Method<&CFolder::GetSubFolders>(u"GetSubFolders", u"The sub-folders.")
          .Method<&CFolder::GetFolderContents>(u"GetFolderContents",
                                               u"Sub-folders and files in one walk.",
                                               {u"SubFolders", u"Files"})
          .Remark(u"Its results are arguments by reference, which JScript doesn't have.")
          .Method<&CFolder::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                   u"The folder's security descriptor.")
          .Stored<&CFolder::FolderName>(u"FolderName", u"Name without the parent folder.")
          .Property<&CFolder::Path, &CFolder::PutPath>(u"Path", u"Full plain path.")
          .Stored<&CFolder::Size>(u"Size", u"Free for the caller's use.")
          .Stored<&CFolder::FolderType>(u"FolderType", u"Free for the caller's use.")
          .Property<&CFolder::Attributes, &CFolder::PutAttributes>(
              u"Attributes", u"Attributes; a change is written to disk and read back.")
          .Remark(
              u"Raises 911 where the folder has other attributes afterwards: so always for a "
              u"value without FA_Directory, the rest of which is written all the same.")
          .Stored<&CFolder::DateCreated>(u"DateCreated", u"Time of creation, local.")
          .Stored<&CFolder::DateLastAccessed>(u"DateLastAccessed", u"Time of last access, local.")
          .Stored<&CFolder::DateLastModified>(u"DateLastModified", u"Time of last change, local.")
          .Stored<&CFolder::IsRootFolder>(u"IsRootFolder", u"Free for the caller's use.")
          .Stored<&CFolder::ShortName>(u"ShortName", u"Name in 8.3 form.")
          .Stored<&CFolder::ShortPath>(u"ShortPath", u"Free for the caller's use.")
          .Property<&CFolder::AsyncFetch, &CFolder::PutAsyncFetch>(
              u"AsyncFetch", u"True to have objects delivered by events.")
          .Remark(
              u"While it is on, GetFiles, GetSubFolders, GetFolderContents and GetPathNames "
              u"return Nothing, and what GetPathNames finds has no event. An object also gets "
              u"the events of what any other one of its thread fetches so.")
          .Method<&CFolder::GetPathNames>(u"GetPathNames", u"The paths of what the folder holds.",
                                          {{u"bGetFolders", true}, {u"bGetFiles", true}})
          .Remark(
              u"Without folders, sub-folders are listed as files, \".\" and \"..\" among them, "
              u"and IsDirectory is False.")
          .Events(DescribeFolderEvents());
  return table;
}

std::int32_t CFolder::Delete(bool delete_files_first, bool cascade) {
  return ReRaising([&] {
    // What is tested below is what this deletion left there.
    Err().Clear();
    std::int32_t count = 0;
    if (path_.empty()) return count;
    // A list of levels in the place of recursion: long paths nest deeper than a small stack bears.
    std::vector<DeletionLevel> levels;
    levels.push_back(BeginDeletion(this, delete_files_first, cascade, count));
    while (!levels.empty()) {
      DeletionLevel& level = levels.back();
      if (cascade && level.done < level.sub_folders->Count()) {
        const Ref<CFolder> next = level.sub_folders->ItemByIndex(++level.done);
        levels.push_back(BeginDeletion(next, delete_files_first, cascade, count));
        continue;
      }
      if (!Files().RemoveDirectoryW(ApiFolderPath(level.folder->path_).c_str())) {
        RaisePlatformError(Err().LastDllError(), Err().Source());
      }
      ++count;
      levels.pop_back();
      if (!levels.empty() && Err().Number() != 0) RaiseErr();
    }
    return count;
  });
}

bool CFolder::CreateSubFolder(const Text& folder_name) {
  bool created = false;
  Swallow([&] { created = Engine().CreateFolder(ApiFolderPath(path_) + folder_name); });
  return created;
}

template <class Walk>
auto CFolder::WithEngine(Walk&& walk) {
  const Ref<CFolder> keep_alive(this);
  return ReRaising([&] {
    const Ref<CSupport> engine = subscribed_engine();
    const Text path = path_;
    return engine ? walk(*engine, path, true) : walk(Engine(), path, false);
  });
}

Ref<CFiles> CFolder::GetFiles() {
  return WithEngine([&](CSupport& engine, const Text& path, bool async) {
    Ref<CFolders> sub_folders;
    Ref<CFiles> files;
    engine.GetFolderContents(path, sub_folders, files, false, true, async);
    return files;
  });
}

Ref<CFolders> CFolder::GetSubFolders() {
  return WithEngine([&](CSupport& engine, const Text& path, bool async) {
    Ref<CFolders> sub_folders;
    Ref<CFiles> files;
    engine.GetFolderContents(path, sub_folders, files, true, false, async);
    return sub_folders;
  });
}

void CFolder::GetFolderContents(Ref<CFolders>& sub_folders, Ref<CFiles>& files) {
  sub_folders = nullptr;
  files = nullptr;
  WithEngine([&](CSupport& engine, const Text& path, bool async) {
    engine.GetFolderContents(path, sub_folders, files, true, true, async);
  });
}

Ref<CSecurityDescriptor> CFolder::GetSecurityDescriptor() {
  return ReRaising([&] { return Engine().GetFileSD(path_, *this); });
}

Ref<CPathNames> CFolder::GetPathNames(bool get_folders, bool get_files) {
  return WithEngine([&](CSupport& engine, const Text& path, bool async) {
    return engine.GetPathNames(path, get_folders, get_files, async);
  });
}

void CFolder::PutPath(const Text& path) { path_ = PlainPath(path); }

void CFolder::PutAttributes(FileAttribute value) {
  ReRaising([&] {
    if (value == attributes_) return;
    // An operation has succeeded only when it also left no error behind.
    const auto check = [](BOOL result) {
      const std::int32_t error = Err().LastDllError();
      if (!result || error != 0) RaisePlatformError(error, Err().Source());
    };
    const Text path = ApiFolderPath(path_);
    check(Files().SetFileAttributesW(path.c_str(), static_cast<DWORD>(value)));
    attributes_ = value;

    WIN32_FILE_ATTRIBUTE_DATA data{};
    check(Files().GetFileAttributesExW(path.c_str(), kGetFileExInfoStandard, &data));
    SetAttributesField(static_cast<std::int32_t>(data.dwFileAttributes));
    DateCreated = FileTimeToDate(data.ftCreationTime, true);
    DateLastAccessed = FileTimeToDate(data.ftLastAccessTime, true);
    DateLastModified = FileTimeToDate(data.ftLastWriteTime, true);
    if (value != attributes_) {
      Raise(kAttributesNotSet, SourceOf(kClassName), u"Folder attributes could not be set");
    }
  });
}

void CFolder::OnObjectFound(Object& object, bool& cancel) {
  Forward(object, cancel,
          {{&CFolder::Describe, kFolderFoundEvent}, {&CFile::Describe, kFileFoundEvent}});
}

}  // namespace veldmark
