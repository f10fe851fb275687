#include "storage/CPathNames.h"

#include "collections/CollectionTable.h"
#include "storage/CPathName.h"

namespace veldmark {

const Interface& CPathNames::Describe() {
  static const Interface table =
      CollectionTable<CPathNames>(u"CPathNames", u"The lines of a folder listing, found by path.")
          .Add(u"oPathName")
          .Item()
          .ItemByKey()
          .ItemByIndex()
          .Count()
          .Remove()
          .NewEnum();
  return table;
}

CollectionKey CPathNames::KeyOf(CPathName& path_name) {
  return CollectionKey::Encoded(path_name.PathName);
}

}  // namespace veldmark
