#pragma once

#include <cstdint>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "services/PrinterAttribute.h"
#include "services/PrinterStatus.h"

namespace veldmark {

class CSecurityDescriptor;

/// A printer of a computer, as it was when the printers were listed (`EnumPrintersW`, level 2).
/// Setting a value changes this object only.
class CPrinter : public Exported<CPrinter>, Counted<Counter::kPrinter> {
 public:
  static const Interface& Describe();

  /// Owner and list of the printer "\\server\printer"; see `CSupport::GetNamedSD`. Raises 1801
  /// where server and name stand for no printer.
  Ref<CSecurityDescriptor> GetSecurityDescriptor();

  Text PrinterName;  ///< the full name without its beginning, as long as "\\server\"
  Text Comment;
  Text Description;  ///< the full name
  PrinterAttributeEnum Attributes{};
  std::int32_t AveragePPM = 0;  ///< pages a minute
  std::int32_t NumJobs = 0;
  std::int32_t DefaultPriority = 0;
  std::int32_t Priority = 0;
  Date StartTime;  ///< minutes since midnight, UTC, as days
  Date UntilTime;  ///< the same
  PrinterStatusEnum Status{};
  Text Datatype;
  Text DriverName;
  Text Location;
  Text Parameters;
  Text PortName;
  Text PrintProcessor;
  Text SepFile;
  Text ShareName;
  Text ServerName;  ///< empty for one that came by an event
};

}  // namespace veldmark
