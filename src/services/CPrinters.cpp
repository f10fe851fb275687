#include "services/CPrinters.h"

#include "collections/CollectionTable.h"
#include "services/CPrinter.h"

namespace veldmark {

const Interface& CPrinters::Describe() {
  static const Interface table =
      CollectionTable<CPrinters>(u"CPrinters", u"Printers, found by name.").Keyed(u"oPrinter");
  return table;
}

CollectionKey CPrinters::KeyOf(CPrinter& printer) {
  return CollectionKey::Encoded(printer.PrinterName);
}

Ref<CPrinter> CPrinters::Add(CPrinter* oPrinter) {
  Err().Clear();
  Store(oPrinter);
  Err().Clear();
  return oPrinter;
}

}  // namespace veldmark
