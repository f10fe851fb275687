#include "storage/CDrives.h"

#include "collections/CollectionTable.h"
#include "storage/CDrive.h"

namespace veldmark {

const Interface& CDrives::Describe() {
  static const Interface table =
      CollectionTable<CDrives>(u"CDrives",
                               u"The drives of a computer, found by letter in any case.")
          .Add(u"oDrive")
          .Item(u"Nothing where there is no such drive, and no error; Remove raises 5 or 9.")
          .Count()
          .Remove()
          .NewEnum();
  return table;
}

CollectionKey CDrives::KeyOf(CDrive& drive) { return CollectionKey::Plain(drive.DriveLetter); }

Ref<CDrive> CDrives::Item(Variant& vntIndexKey) {
  Ref<CDrive> drive;
  Swallow([&] { drive = CollectionClass::Item(vntIndexKey); });
  return drive;
}

}  // namespace veldmark
