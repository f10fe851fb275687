#include "storage/CFolders.h"

#include "apartment/CSupport.h"
#include "collections/CollectionTable.h"
#include "storage/CFolder.h"

namespace veldmark {

const Interface& CFolders::Describe() {
  static const Interface table =
      CollectionTable<CFolders>(u"CFolders", u"Folders, found by name.").Keyed(u"oFolder");
  return table;
}

CollectionKey CFolders::KeyOf(CFolder& folder) { return CollectionKey::Encoded(folder.FolderName); }

Ref<CFolder> CFolders::AddNewFolder(const Text& path) {
  if (!Engine().CreateFolder(path)) return nullptr;
  return Add(Engine().GetFolder(path).Get());
}

}  // namespace veldmark
