#pragma once

#include "apartment/AsyncFetching.h"
#include "apartment/Counted.h"
#include "automation/Events.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "storage/FileAttribute.h"

namespace veldmark {

class CSecurityDescriptor;

/// One folder, local or on a share: a snapshot of the moment when it was listed, and the start of
/// walks over what it holds.
///
/// The walks of a folder with `AsyncFetch` on deliver each object by the events FolderFound and
/// FileFound and return Nothing. It then also passes on what any other walk of the apartment
/// delivers by events.
class CFolder : public AsyncFetching<CFolder>, Counted<Counter::kFolder> {
 public:
  static const Interface& Describe();

  /// Removes the folder and returns how many files and folders went, itself included: 0 for an
  /// object without a path. `delete_files_first` deletes its files, read-only ones too, and
  /// `cascade` its sub-folders in the same way. Raises the platform's error at the first item that
  /// stays; what went before it is gone. Between sub-folders an error that still stands in `Err`
  /// is raised as well. With `AsyncFetch` on, a list that is asked for is Nothing: 91.
  std::int32_t Delete(bool delete_files_first, bool cascade);
  /// Makes a sub-folder; False when that fails, for whatever reason.
  bool CreateSubFolder(const Text& folder_name);
  /// The files of this folder, and its sub-folders too, "." and ".." among them, as files.
  Ref<CFiles> GetFiles();
  Ref<CFolders> GetSubFolders();
  /// Sub-folders and files in one walk, each entry in its own list.
  void GetFolderContents(Ref<CFolders>& sub_folders, Ref<CFiles>& files);
  /// Owner and list as they are now, by `GetFileSecurityW`; see `CSupport::GetFileSD`. Raises the
  /// platform's error.
  Ref<CSecurityDescriptor> GetSecurityDescriptor();
  /// The paths of what the folder holds. Without `get_folders`, folders count as files.
  Ref<CPathNames> GetPathNames(bool get_folders, bool get_files);

  /// Full plain path; the put takes the long form too.
  const Text& Path() const { return path_; }
  void PutPath(const Text& path);

  /// A put that changes the value writes it to disk, then reads attributes and dates back. Raises
  /// the platform's error, or 911 when the disk holds other attributes than were asked for; a
  /// folder's always have `FA_Directory`.
  FileAttribute Attributes() const { return attributes_; }
  void PutAttributes(FileAttribute value);

  Text FolderName;
  Variant Size;      ///< as stored by a caller; no walk fills it
  Text FolderType;   ///< as stored by a caller
  Date DateCreated;  ///< local time
  Date DateLastAccessed;
  Date DateLastModified;
  bool IsRootFolder = false;  ///< as stored by a caller
  Text ShortName;             ///< the 8.3 name; empty where the name is one itself
  Text ShortPath;             ///< as stored by a caller

  /// Stores the attributes without touching the disk.
  void SetAttributesField(std::int32_t value) { attributes_ = static_cast<FileAttribute>(value); }
  /// Stores a path that is in its plain form already.
  void SetPlainPath(Text path) { path_ = std::move(path); }

 private:
  void OnObjectFound(Object& object, bool& cancel) override;

  /// Calls `walk` with the engine to use, the path and whether it delivers by events. The folder
  /// outlives the walk, whatever a listener lets go, and the path is that of its beginning.
  template <class Walk>
  auto WithEngine(Walk&& walk);

  Text path_;
  FileAttribute attributes_ = FA_Normal;
};

}  // namespace veldmark
