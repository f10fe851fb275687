#include "storage/CVolumes.h"

#include "collections/CollectionTable.h"
#include "storage/CVolume.h"

namespace veldmark {

const Interface& CVolumes::Describe() {
  static const Interface table =
      CollectionTable<CVolumes>(u"CVolumes", u"Volumes, found by name.").Keyed(u"oVolume");
  return table;
}

CollectionKey CVolumes::KeyOf(CVolume& volume) { return CollectionKey::Encoded(volume.VolumeName); }

}  // namespace veldmark
