#include "platform/simulated/families/SimulatedPrinting.h"

#include <vector>

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/families/RecordBlock.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kFullLevel = 2;
constexpr TextView kServerNameStart = u"\\\\";

LPWSTR Put(const std::optional<Text>& text, RecordBlock& block) {
  return text ? block.Put(*text) : nullptr;
}

// `server` is "\\srv", or empty where none was named.
PRINTER_INFO_2W RecordOf(const Printer& printer, const Text& server, RecordBlock& block) {
  const Text name = server.empty() ? printer.name : server + u"\\" + printer.name;
  const DWORD usual = kPrinterAttributeLocal | (printer.share ? kPrinterAttributeShared : 0);
  return {.pServerName = server.empty() ? nullptr : block.Put(server),
          .pPrinterName = block.Put(printer.full_name.value_or(name)),
          .pShareName = Put(printer.share, block),
          .pPortName = Put(printer.port, block),
          .pDriverName = Put(printer.driver, block),
          .pComment = Put(printer.comment, block),
          .pLocation = Put(printer.location, block),
          .pDevMode = nullptr,
          .pSepFile = Put(printer.separator_page, block),
          .pPrintProcessor = Put(printer.print_processor, block),
          .pDatatype = Put(printer.datatype, block),
          .pParameters = Put(printer.parameters, block),
          .pSecurityDescriptor = nullptr,
          .Attributes = printer.attributes.value_or(usual),
          .Priority = printer.priority,
          .DefaultPriority = printer.default_priority,
          .StartTime = printer.start,
          .UntilTime = printer.until,
          .Status = printer.status,
          .cJobs = printer.jobs,
          .AveragePPM = printer.pages_per_minute};
}

// The server that a name stands for; null, and a code, for none.
Computer* ServerNamed(TextView name, Estate& estate, DWORD& code) {
  if (name.empty()) return &estate.local();
  if (!name.starts_with(kServerNameStart) || name.size() == kServerNameStart.size()) {
    code = kErrorInvalidName;
    return nullptr;
  }
  Computer* const server = estate.ReachComputer(name.substr(kServerNameStart.size()));
  if (server == nullptr) code = kErrorRpcServerUnavailable;
  return server;
}

}  // namespace

BOOL SimulatedPrinting::EnumPrintersW(DWORD flags, LPCWSTR name, DWORD level, BYTE* buffer,
                                      DWORD size, DWORD* needed, DWORD* returned) {
  const Call call = session_.Begin("EnumPrintersW", Noted(name, flags, level));
  if (const DWORD fault = call.fault()) return Fail(fault);
  if (needed == nullptr || returned == nullptr) return Fail(kErrorNullReference);
  *needed = *returned = 0;
  if (buffer == nullptr && size != 0) return Fail(kErrorInvalidUserBuffer);
  if (flags != kPrinterEnumName) return Fail(kErrorInvalidFlags);
  if (level != kFullLevel) return Fail(kErrorInvalidLevel);
  DWORD code = 0;
  const Computer* const computer = ServerNamed(ViewOf(name), session_.estate, code);
  if (computer == nullptr) return Fail(code);
  if (computer->spooler() == Spooler::Stopped) return Fail(kErrorRpcServerUnavailable);
  if (computer->spooler() == Spooler::Denied) return Fail(kErrorAccessDenied);

  std::vector<const Printer*> printers;
  for (const auto& [key, printer] : computer->printers()) printers.push_back(&printer);
  const Text server = ViewOf(name).empty() ? Text() : Text(kServerNameStart) + computer->name();
  const auto fill = [&](PRINTER_INFO_2W& record, const Printer* printer, RecordBlock& block) {
    record = RecordOf(*printer, server, block);
  };
  const std::span<const Printer* const> all(printers);
  *needed = static_cast<DWORD>(LayOut<PRINTER_INFO_2W>(all, fill, nullptr));
  if (size < *needed) return Fail(kErrorInsufficientBuffer);
  LayOut<PRINTER_INFO_2W>(all, fill, buffer);
  *returned = static_cast<DWORD>(all.size());
  return 1;
}

}  // namespace veldmark::simulated
