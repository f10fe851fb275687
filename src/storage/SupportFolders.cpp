#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "collections/Deliver.h"
#include "storage/CFile.h"
#include "storage/CFiles.h"
#include "storage/CFolder.h"
#include "storage/CFolders.h"
#include "storage/CPathName.h"
#include "storage/CPathNames.h"
#include "storage/EntryBuilder.h"
#include "storage/FolderListing.h"
#include "storage/PathForms.h"
#include "storage/PlatformFiles.h"

namespace veldmark {
namespace {

constexpr std::int32_t kObjectsPerQuestion = 1000;
constexpr TextView kEverything = u"*.*";

/// Walks a listing to its end: `on_folder` and `on_file` deliver one object each and answer whether
/// to go on. Where folders aren't wanted they count as files, "." and ".." too.
template <class OnFolder, class OnFile>
void Walk(FolderListing& listing, CStatus& status, bool get_folders, bool get_files,
          OnFolder&& on_folder, OnFile&& on_file) {
  std::int32_t folders = 0;
  std::int32_t files = 0;
  do {
    if (get_folders && listing.IsDirectory()) {
      if (!listing.IsDots()) {
        if (!on_folder()) return;
        ++folders;
      }
    } else if (get_files) {
      if (!on_file()) return;
      ++files;
    }
    status.RaiseStatus([&] {
      return u"Retrieved " + ToText(folders) + u" Folders, " + ToText(files) + u" Files";
    });
    if ((folders + files) % kObjectsPerQuestion == 0) {
      bool cancel = false;
      status.RaiseCancelLoading(folders + files, cancel);
      if (cancel) return;
    }
  } while (listing.Next());
}

bool IsDriveRoot(TextView path) { return path.size() == 2 && path[1] == u':'; }

/// "\\server\share" alone.
bool IsShareRoot(TextView path) {
  if (!path.starts_with(u"\\\\")) return false;
  const std::size_t server_end = path.find(u'\\', 2);
  return server_end != TextView::npos && path.find(u'\\', server_end + 1) == TextView::npos;
}

}  // namespace

bool CSupport::GetFolderContents(const Text& path, Ref<CFolders>& sub_folders, Ref<CFiles>& files,
                                 bool get_folders, bool get_files, bool async) {
  sub_folders = nullptr;
  files = nullptr;
  return ReRaising([&] {
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus([&] { return u"Retrieving Contents of Folder " + path; });
    const auto found_folders = get_folders && !async ? Make<CFolders>() : nullptr;
    const auto found_files = get_files && !async ? Make<CFiles>() : nullptr;
    if (path.empty()) return false;

    const Text folder = ApiFolderPath(path);
    EntryBuilder builder;
    FolderListing listing(Files(), folder + Text(kEverything));
    Walk(
        listing, *status, get_folders, get_files,
        [&] {
          return Deliver(*this, found_folders,
                         builder.Folder(folder + Text(listing.Name()), listing.Entry()), async);
        },
        [&] { return Deliver(*this, found_files, builder.File(folder, listing.Entry()), async); });
    sub_folders = found_folders;
    files = found_files;
    return true;
  });
}

Ref<CPathNames> CSupport::GetPathNames(const Text& path, bool get_folders, bool get_files,
                                       bool async) {
  return ReRaising([&]() -> Ref<CPathNames> {
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus([&] { return u"Retrieving Path Names in Folder " + path; });
    const auto names = async ? nullptr : Make<CPathNames>();
    if (path.empty()) return nullptr;

    const Text folder = ApiFolderPath(path);
    const Text plain_folder = PlainPath(folder);
    FolderListing listing(Files(), folder + Text(kEverything));
    const auto deliver = [&](bool is_directory) {
      const auto found = Make<CPathName>();
      found->PathName = plain_folder;
      found->PathName += listing.Name();
      found->IsDirectory = is_directory;
      return Deliver(*this, names, found, async);
    };
    Walk(
        listing, *status, get_folders, get_files, [&] { return deliver(true); },
        [&] { return deliver(false); });
    return names;
  });
}

Ref<CFolders> CSupport::GetFolders(const Text& path) {
  return ReRaising([&] {
    auto folders = Make<CFolders>();
    if (path.empty()) return folders;
    const Text folder = ApiFolderPath(path);
    EntryBuilder builder;
    FolderListing listing(Files(), folder + Text(kEverything));
    do {
      if (listing.IsDirectory() && !listing.IsDots()) {
        folders->Add(builder.Folder(folder + Text(listing.Name()), listing.Entry()).Get());
      }
    } while (listing.Next());
    return folders;
  });
}

Ref<CFolder> CSupport::GetFolder(const Text& path) {
  return ReRaising([&] {
    const Text bare = StripTrailingBackslash(path);
    if (IsDriveRoot(bare) || IsShareRoot(bare)) {
      auto root = Make<CFolder>();
      root->PutPath(bare + u"\\");
      root->SetAttributesField(FA_Directory);
      return root;
    }
    const Text long_path = StripTrailingBackslash(ApiFolderPath(bare));
    const FolderListing listing(Files(), long_path);
    return BuildFolderFromFindData(long_path, listing.Entry());
  });
}

bool CSupport::CreateFolder(const Text& full_path) {
  return ReRaising([&] {
    const SECURITY_ATTRIBUTES inherited{};
    if (!Files().CreateDirectoryW(full_path.c_str(), &inherited)) {
      RaisePlatformError(LastPlatformError());
    }
    return true;
  });
}

Ref<CFolder> CSupport::BuildFolderFromFindData(const Text& path,
                                               const WIN32_FIND_DATAW& find_data) {
  return EntryBuilder().Folder(path, find_data);
}

}  // namespace veldmark
