#include "platform/simulated/estate_file/PrinterReader.h"

#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

void ReadText(const Node& node, const char* field, std::optional<Text>& text) {
  if (const auto given = node.Field(field)) text = given->String();
}

void ReadNumber(const Node& node, const char* field, DWORD& number) {
  if (const auto given = node.Field(field)) number = given->Unsigned32();
}

}  // namespace

void ReadPrinters(const Node& node, Computer& computer, const Estate& estate) {
  for (const Node& place : node.Elements()) {
    place.OnlyFields({"name",     "security",   "fullName",   "share",         "port",
                      "driver",   "comment",    "location",   "separatorPage", "printProcessor",
                      "datatype", "parameters", "attributes", "priority",      "defaultPriority",
                      "start",    "until",      "status",     "jobs",          "pagesPerMinute"});
    const Node name = place.Required("name");
    const Text text = name.String();
    if (text.empty()) name.Complain("needs a name");
    if (computer.FindPrinter(text) != nullptr) name.Complain("there is a printer of this name");
    const auto security = place.Field("security");
    Printer& printer = computer.AddPrinter(
        text, security ? std::optional(ReadSecurity(*security, estate)) : std::nullopt);
    ReadText(place, "fullName", printer.full_name);
    ReadText(place, "share", printer.share);
    ReadText(place, "port", printer.port);
    ReadText(place, "driver", printer.driver);
    ReadText(place, "comment", printer.comment);
    ReadText(place, "location", printer.location);
    ReadText(place, "separatorPage", printer.separator_page);
    ReadText(place, "printProcessor", printer.print_processor);
    ReadText(place, "datatype", printer.datatype);
    ReadText(place, "parameters", printer.parameters);
    if (const auto bits = place.Field("attributes")) printer.attributes = bits->Unsigned32();
    ReadNumber(place, "priority", printer.priority);
    ReadNumber(place, "defaultPriority", printer.default_priority);
    ReadNumber(place, "start", printer.start);
    ReadNumber(place, "until", printer.until);
    ReadNumber(place, "status", printer.status);
    ReadNumber(place, "jobs", printer.jobs);
    ReadNumber(place, "pagesPerMinute", printer.pages_per_minute);
  }
}

}  // namespace veldmark::simulated
