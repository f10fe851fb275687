#include "services/PrinterAttribute.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(PrinterAttributeEnum) {
  static const Enumeration table =
      DeclareEnumeration<PrinterAttributeEnum>(u"PrinterAttributeEnum",
                                               u"What a printer is and does, bit by bit.")
          .Value(u"PRINTER_ATTRIBUTE_QUEUED", PRINTER_ATTRIBUTE_QUEUED,
                 u"Begins a document once all of it is spooled.")
          .Value(u"PRINTER_ATTRIBUTE_DIRECT", PRINTER_ATTRIBUTE_DIRECT,
                 u"Documents go to the printer without a spool file.")
          .Value(u"PRINTER_ATTRIBUTE_DEFAULT", PRINTER_ATTRIBUTE_DEFAULT, u"The default printer.")
          .Value(u"PRINTER_ATTRIBUTE_SHARED", PRINTER_ATTRIBUTE_SHARED, u"Shared.")
          .Value(u"PRINTER_ATTRIBUTE_NETWORK", PRINTER_ATTRIBUTE_NETWORK,
                 u"A connection to another computer's printer.")
          .Value(u"PRINTER_ATTRIBUTE_HIDDEN", PRINTER_ATTRIBUTE_HIDDEN, u"Hidden.")
          .Value(u"PRINTER_ATTRIBUTE_LOCAL", PRINTER_ATTRIBUTE_LOCAL, u"A printer of its computer.")
          .Value(u"PRINTER_ATTRIBUTE_ENABLE_DEVQ", PRINTER_ATTRIBUTE_ENABLE_DEVQ,
                 u"Holds documents that don't fit its settings.")
          .Value(u"PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS", PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS,
                 u"Keeps documents that are printed.")
          .Value(u"PRINTER_ATTRIBUTE_DO_COMPLETE_FIRST", PRINTER_ATTRIBUTE_DO_COMPLETE_FIRST,
                 u"Prefers documents that are spooled whole.")
          .Value(u"PRINTER_ATTRIBUTE_WORK_OFFLINE", PRINTER_ATTRIBUTE_WORK_OFFLINE,
                 u"Used offline.")
          .Value(u"PRINTER_ATTRIBUTE_ENABLE_BIDI", PRINTER_ATTRIBUTE_ENABLE_BIDI,
                 u"Talks in both directions.")
          .Value(u"PRINTER_ATTRIBUTE_RAW_ONLY", PRINTER_ATTRIBUTE_RAW_ONLY,
                 u"Takes raw documents only.")
          .Value(u"PRINTER_ATTRIBUTE_PUBLISHED", PRINTER_ATTRIBUTE_PUBLISHED,
                 u"Published in the directory.");
  return table;
}

}  // namespace veldmark
