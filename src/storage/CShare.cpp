#include "storage/CShare.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CShare::Describe() {
  static const Interface table =
      Declare<CShare>(u"CShare", u"A shared folder or device of a computer.")
          .Stored<&CShare::ShareName>(u"ShareName", u"Its name in the network.");
  return table;
}

}  // namespace veldmark
