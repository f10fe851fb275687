#include "services/CPrinter.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "security/CSecurityDescriptor.h"
#include "security/ObjectType.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CPrinter";
constexpr TextView kMinutesRemark =
    u"The minutes stand in the date as days: 60 reads as day 60 of the calendar, and not as "
    u"01:00. CLng gives the number back.";

}  // namespace

const Interface& CPrinter::Describe() {
  static const Interface table =
      Declare<CPrinter>(u"CPrinter", u"A printer of a computer, as it was when it was listed.")
          .Method<&CPrinter::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                    u"Who may use the printer.")
          .Remark(
              u"Of the printer PrinterName on ServerName, which is empty in a printer that came "
              u"by an event: set it first. Raises the platform's error, 1801 where there is no "
              u"such printer.")
          .Stored<&CPrinter::PrinterName>(u"PrinterName", u"Its name, without the computer.")
          .Remark(
              u"The full name without as many characters as \"\\\\server\\\" has, also where it "
              u"begins with something else. Description has it whole.")
          .Stored<&CPrinter::Comment>(u"Comment", u"What is said about it.")
          .Stored<&CPrinter::Description>(u"Description", u"Its full name, \\\\server\\printer.")
          .Stored<&CPrinter::Attributes>(u"Attributes", u"What it is and does, bit by bit.")
          .Stored<&CPrinter::AveragePPM>(u"AveragePPM", u"Pages that it prints in a minute.")
          .Stored<&CPrinter::NumJobs>(u"NumJobs", u"Documents that wait or are printed.")
          .Stored<&CPrinter::DefaultPriority>(u"DefaultPriority",
                                              u"The priority of documents that have none.")
          .Stored<&CPrinter::Priority>(u"Priority", u"The printer's own priority.")
          .Stored<&CPrinter::StartTime>(u"StartTime",
                                        u"When it begins to print: minutes since midnight, UTC.")
          .Remark(kMinutesRemark)
          .Stored<&CPrinter::UntilTime>(u"UntilTime",
                                        u"When it ceases to print: minutes since midnight, UTC.")
          .Remark(kMinutesRemark)
          .Stored<&CPrinter::Status>(u"Status", u"Its state, bit by bit; 0 for one that is ready.")
          .Remark(
              u"A printer that is starting has the bit 32768, which is not the value of "
              u"PRINTER_STATUS_INITIALIZING.")
          .Stored<&CPrinter::Datatype>(u"Datatype", u"The form of its documents, as RAW.")
          .Stored<&CPrinter::DriverName>(u"DriverName", u"Its driver.")
          .Stored<&CPrinter::Location>(u"Location", u"Where it stands.")
          .Stored<&CPrinter::Parameters>(u"Parameters", u"Parameters of the print processor.")
          .Stored<&CPrinter::PortName>(u"PortName", u"Its port; several are parted by commas.")
          .Stored<&CPrinter::PrintProcessor>(u"PrintProcessor", u"Its print processor.")
          .Stored<&CPrinter::SepFile>(u"SepFile", u"The file of its separator page.")
          .Stored<&CPrinter::ShareName>(u"ShareName", u"Its name as a share.")
          .Stored<&CPrinter::ServerName>(u"ServerName", u"The computer that it belongs to.");
  return table;
}

Ref<CSecurityDescriptor> CPrinter::GetSecurityDescriptor() {
  return ReRaisingAs(kClassName, [&] {
    return Engine().GetNamedSD(u"\\\\" + ServerName + u"\\" + PrinterName, SE_PRINTER, this, Text(),
                               Text(), Text(), Text());
  });
}

}  // namespace veldmark
