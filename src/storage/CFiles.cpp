#include "storage/CFiles.h"

#include "collections/CollectionTable.h"
#include "storage/CFile.h"

namespace veldmark {

const Interface& CFiles::Describe() {
  static const Interface table = CollectionTable<CFiles>(u"CFiles", u"Files, found by name.")
                                     .Plain(u"oFile")
                                     .ItemByIndex()
                                     .ItemByKey();
  return table;
}

CollectionKey CFiles::KeyOf(CFile& file) { return CollectionKey::Encoded(file.FileName); }

}  // namespace veldmark
