#pragma once

#include "automation/Text.h"
#include "platform/operations/Handles.h"

namespace veldmark {

/// A listing in progress, standing on an entry. Its find handle ends with it.
class FolderListing {
 public:
  /// Begins with the first entry that matches `pattern`, a path in its long form. Raises the
  /// platform's error when there is none.
  FolderListing(FileSystem& files, const Text& pattern);

  const WIN32_FIND_DATAW& Entry() const { return entry_; }
  TextView Name() const;
  bool IsDirectory() const { return (entry_.dwFileAttributes & kFileAttributeDirectory) != 0; }
  /// True for "." and "..".
  bool IsDots() const;

  /// Steps to the next entry; false at the end, and where the platform fails to go on.
  bool Next();

 private:
  FileSystem& files_;
  FindHandle find_;
  WIN32_FIND_DATAW entry_;
};

/// The long and the short name of an entry, cut at the first NUL; neither reads past its field.
TextView EntryName(const WIN32_FIND_DATAW& entry);
TextView EntryShortName(const WIN32_FIND_DATAW& entry);

}  // namespace veldmark
