#include <vector>

#include "apartment/Apartment.h"
#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "network/CServer.h"
#include "network/ServerNames.h"
#include "services/CPrinter.h"
#include "services/CPrinters.h"
#include "services/RecordBuffer.h"

namespace veldmark {
namespace {

constexpr DWORD kFullLevel = 2;

std::int32_t Signed(DWORD value) { return static_cast<std::int32_t>(value); }

/// The number of minutes itself, which clients read back.
Date DateOfMinutes(DWORD minutes) { return {static_cast<double>(Signed(minutes))}; }

/// `start` is how many characters stand before the printer in its full name.
Ref<CPrinter> PrinterFrom(const PRINTER_INFO_2W& record, const RecordBuffer& records,
                          std::size_t start) {
  auto printer = Make<CPrinter>();
  printer->Description = records.TextOf(record.pPrinterName);
  if (start < printer->Description.size()) {
    printer->PrinterName = printer->Description.substr(start);
  }
  printer->ShareName = records.TextOf(record.pShareName);
  printer->PortName = records.TextOf(record.pPortName);
  printer->DriverName = records.TextOf(record.pDriverName);
  printer->Comment = records.TextOf(record.pComment);
  printer->Location = records.TextOf(record.pLocation);
  printer->SepFile = records.TextOf(record.pSepFile);
  printer->PrintProcessor = records.TextOf(record.pPrintProcessor);
  printer->Datatype = records.TextOf(record.pDatatype);
  printer->Parameters = records.TextOf(record.pParameters);
  printer->Attributes = static_cast<PrinterAttributeEnum>(record.Attributes);
  printer->Priority = Signed(record.Priority);
  printer->DefaultPriority = Signed(record.DefaultPriority);
  printer->StartTime = DateOfMinutes(record.StartTime);
  printer->UntilTime = DateOfMinutes(record.UntilTime);
  printer->Status = static_cast<PrinterStatusEnum>(record.Status);
  printer->NumJobs = Signed(record.cJobs);
  printer->AveragePPM = Signed(record.AveragePPM);
  return printer;
}

}  // namespace

Ref<CPrinters> CSupport::GetPrinters(CServer& server, bool async) {
  return ReRaising([&] {
    const Ref<CServer> walked(&server);
    const Ref<CStatus> status(&StatusObject());
    status->RaiseStatus([&] { return u"Retrieving Printers from Server " + server.ServerName; });
    auto printers = Make<CPrinters>();
    const Text name = Text(kServerNameStart) + PlainServerName(server.ServerName);
    Printing& platform = Apartment::Current().platform.printers;
    DWORD needed = 0;
    DWORD returned = 0;
    const auto ask = [&](std::span<PRINTER_INFO_2W> table, DWORD size) {
      return platform.EnumPrintersW(kPrinterEnumName, name.c_str(), kFullLevel,
                                    reinterpret_cast<BYTE*>(table.data()), size, &needed,
                                    &returned);
    };
    PRINTER_INFO_2W none{};
    // It fails for want of room, and what else is wrong the next one says as well.
    ask({&none, 1}, 0);
    const DWORD size = needed;
    std::vector<PRINTER_INFO_2W> table(size / sizeof(PRINTER_INFO_2W) + 1);
    if (!ask(table, size)) RaisePlatformError(Err().LastDllError());
    const RecordBuffer records({reinterpret_cast<const std::uint8_t*>(table.data()), size});
    records.RequireRecords<PRINTER_INFO_2W>(returned);
    for (DWORD index = 0; index < returned; ++index) {
      const Ref<CPrinter> printer =
          PrinterFrom(records.RecordAt<PRINTER_INFO_2W>(index), records, name.size() + 1);
      if (async) {
        bool cancel = false;
        RaiseObjectFound(*printer, cancel);
        if (cancel) break;
      } else {
        printer->ServerName = server.ServerName;
      }
      printers->Add(printer.Get());
      status->RaiseStatus([&] { return u"Retrieved Printer " + printer->PrinterName; });
    }
    return printers;
  });
}

}  // namespace veldmark
