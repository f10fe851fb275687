#include "services/CPrinter.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CPrinter::Describe() {
  static const Interface table =
      Declare<CPrinter>(u"CPrinter", u"A printer of a computer.")
          .Stored<&CPrinter::PrinterName>(u"PrinterName", u"Its name, without the computer.");
  return table;
}

}  // namespace veldmark
