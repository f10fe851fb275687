#include "platform/operations/Printing.h"

#include <windows.h>

#include <winspool.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(PRINTER_INFO_2W, pServerName, pPrinterName, pShareName, pPortName, pDriverName,
                     pComment, pLocation, pDevMode, pSepFile, pPrintProcessor, pDatatype,
                     pParameters, pSecurityDescriptor, Attributes, Priority, DefaultPriority,
                     StartTime, UntilTime, Status, cJobs, AveragePPM);

static_assert(kPrinterEnumName == PRINTER_ENUM_NAME);
static_assert(kPrinterAttributeShared == PRINTER_ATTRIBUTE_SHARED);
static_assert(kPrinterAttributeLocal == PRINTER_ATTRIBUTE_LOCAL);

}  // namespace veldmark
