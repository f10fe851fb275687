#include "storage/CDrives.h"

#include "collections/CollectionTable.h"
#include "storage/CDrive.h"

namespace veldmark {

const Interface& CDrives::Describe() {
  static const Interface table =
      CollectionTable<CDrives>(u"CDrives",
                               u"The drives of a computer, found by letter in any case.")
          .Plain(u"oDrive");
  return table;
}

CollectionKey CDrives::KeyOf(CDrive& drive) { return CollectionKey::Plain(drive.DriveLetter); }

Ref<CDrive> CDrives::Item(Variant& vntIndexKey) {
  Ref<CDrive> drive;
  Swallow([&] { drive = CollectionClass::Item(vntIndexKey); });
  return drive;
}

}  // namespace veldmark
