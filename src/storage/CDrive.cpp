#include "storage/CDrive.h"

#include "platform/automation/Declare.h"

namespace veldmark {

const Interface& CDrive::Describe() {
  static const Interface table = Declare<CDrive>(u"CDrive", u"A drive of this computer.")
                                     .Stored<&CDrive::DriveLetter>(u"DriveLetter", u"One letter.");
  return table;
}

}  // namespace veldmark
