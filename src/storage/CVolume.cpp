#include "storage/CVolume.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CVolume::Describe() {
  static const Interface table =
      Declare<CVolume>(u"CVolume", u"A volume of a server.")
          .Stored<&CVolume::VolumeName>(u"VolumeName", u"Its name, by which the server lists it.");
  return table;
}

}  // namespace veldmark
