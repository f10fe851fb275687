#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CFolder;

/// Folders, found by name.
class CFolders : public KeyedCollectionClass<CFolders, CFolder>, Counted<Counter::kFolders> {
 public:
  static const Interface& Describe();
  static CollectionKey KeyOf(CFolder& folder);

  /// Makes the folder at `path` on disk, adds it to the list and returns it. Raises the platform's
  /// error where it can't be made or read back; the list then stays as it was.
  Ref<CFolder> AddNewFolder(const Text& path);
};

}  // namespace veldmark
