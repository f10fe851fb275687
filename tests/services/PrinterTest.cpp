#include <cstring>
#include <functional>

#include "network/NetworkFixture.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "services/CPrinter.h"
#include "services/CPrinters.h"
#include "support/MixedPlatform.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

using simulated::Printer;

/// FS1 has a laser printer of which everything is known, and a plotter of which nothing is.
class PrintersWorld : public NetworkWorld {
 public:
  PrintersWorld() {
    Printer& laser = computer(u"FS1").AddPrinter(u"Laser");
    laser.comment = u"Duplex";
    laser.attributes = 0x80002048;
    laser.pages_per_minute = 30;
    laser.jobs = 4;
    laser.default_priority = 2;
    laser.priority = 99;
    laser.start = 60;
    laser.until = 0xFFFFFFFF;
    laser.status = 0x8000;
    laser.datatype = u"RAW";
    laser.driver = u"PS";
    laser.location = Text(u"1st\0floor", 9);
    laser.parameters = u"p";
    laser.port = u"LPT1:,LPT2:";
    laser.print_processor = u"winprint";
    laser.separator_page = u"sep";
    laser.share = u"LASER";
    computer(u"FS1").AddPrinter(u"Plotter");
    journal().Clear();
  }
  Ref<CServer> Server(TextView name = u"FS1") {
    auto server = Make<CServer>();
    server->ServerName = name;
    return server;
  }
};

class Printers : public TestIn<PrintersWorld> {};

TEST_F(Printers, ReadAsTheirRecordsSay) {
  const Ref<CPrinters> printers = Server()->GetPrinters();
  EXPECT_EQ(ValuesOf(*printers->ItemByKey(u"Laser")),
            "Laser|Duplex|\\\\FS1\\Laser|-2147475384|30|4|2|99|2/28/1900|12/29/1899|32768|RAW|PS|"
            "1st|p|LPT1:,LPT2:|winprint|sep|LASER|FS1");
  EXPECT_EQ(ValuesOf(*printers->ItemByKey(u"Plotter")),
            "Plotter||\\\\FS1\\Plotter|64|0|0|0|1|12:00:00 AM|12:00:00 AM|0|||||||||FS1");
  EXPECT_EQ(Server(u"PC1")->GetPrinters()->Count(), 0);
}

TEST_F(Printers, LoseAsManyCharactersAsTheirServersNameHas) {
  struct Case {
    TextView server;
    std::optional<Text> full_name;
    TextView name;
    TextView description;
  };
  const Case cases[] = {
      {u"fs1", std::nullopt, u"P", u"\\\\FS1\\P"},
      {u"\\\\FS1", std::nullopt, u"P", u"\\\\FS1\\P"},
      {u"FS1", u"\\\\OTHER\\P", u"R\\P", u"\\\\OTHER\\P"},
      {u"FS1", u"Laser 12", u"12", u"Laser 12"},
      {u"FS1", u"\\\\FS1\\", u"", u"\\\\FS1\\"},
      {u"FS1", u"P", u"", u"P"},
  };
  for (const Case& c : cases) {
    computer(u"FS1").AddPrinter(u"P").full_name = c.full_name;
    const Ref<CPrinter> printer = Server(c.server)->GetPrinters()->ItemByIndex(2);
    EXPECT_EQ(printer->PrinterName, c.name);
    EXPECT_EQ(printer->Description, c.description);
    EXPECT_EQ(printer->ServerName, c.server);
  }
}

TEST_F(Printers, AreListedAndDeliveredBothUntilAListenerCancels) {
  struct Case {
    bool async;
    int cancelled;
    const char* log;
    const char* names;
    const char* servers;
  };
  const Case cases[] = {
      {false, 0, "Retrieved Printer Laser\nRetrieved Printer Plotter\n", " Laser Plotter",
       " FS1 FS1"},
      {true, 0,
       "5 CPrinter Laser\nRetrieved Printer Laser\n5 CPrinter Plotter\nRetrieved Printer Plotter\n",
       " Laser Plotter", "  "},
      {true, 2, "5 CPrinter Laser\nRetrieved Printer Laser\n5 CPrinter Plotter\n", " Laser", " "},
      {true, 1, "5 CPrinter Laser\n", "", ""},
  };
  for (const Case& c : cases) {
    const Ref<CServer> source = Server();
    source->PutAsyncFetch(c.async);
    std::string log;
    Apartment::Current().status = Make<CStatus>();
    Log(log, source.Get(), u"PrinterName", c.cancelled);
    const Ref<CPrinters> printers = source->GetPrinters();
    EXPECT_EQ(log, std::string("Retrieving Printers from Server FS1\n") + c.log);
    EXPECT_EQ(NamesIn(printers, u"PrinterName"), c.names);
    EXPECT_EQ(NamesIn(printers, u"ServerName"), c.servers);
    EXPECT_EQ(Count("EnumPrintersW"), 2u);
  }
  Apartment::Current().status = Make<CStatus>();
}

TEST_F(Printers, HaveTheDescriptorOfTheirNameOnTheirServer) {
  const Ref<CServer> server = Server();
  server->PutAsyncFetch(true);
  const Ref<CPrinter> printer = server->GetPrinters()->ItemByKey(u"Laser");
  EXPECT_EQ(FailureOf([&] { printer->GetSecurityDescriptor(); }).substr(0, 23),
            u"1801|Veldmark2.CPrinter");
  printer->ServerName = u"FS1";
  const auto descriptor = printer->GetSecurityDescriptor();
  EXPECT_EQ(descriptor->ParentObjectType, u"CPrinter");
  EXPECT_EQ(descriptor->ParentObjectPath, u"\\\\FS1\\Laser");
  EXPECT_EQ(descriptor->GetOwnerSid()->ResidesOnServer(), u"FS1");
  computer(u"FS1").SetSpooler(simulated::Spooler::Stopped);
  EXPECT_EQ(ErrorOf([&] { printer->GetSecurityDescriptor(); }), 1722);
}

/// The estate's printers, with something happening between the two calls, or to their answer.
class TamperedPrinting final : public simulated::SimulatedPrinting {
 public:
  using Answer = void(PRINTER_INFO_2W* records, BYTE* end, DWORD& returned);
  using SimulatedPrinting::SimulatedPrinting;

  BOOL EnumPrintersW(DWORD flags, LPCWSTR name, DWORD level, BYTE* buffer, DWORD size,
                     DWORD* needed, DWORD* returned) override {
    if (size != 0 && between) between();
    const BOOL done =
        SimulatedPrinting::EnumPrintersW(flags, name, level, buffer, size, needed, returned);
    if (done && answer) {
      answer(reinterpret_cast<PRINTER_INFO_2W*>(buffer), buffer + size, *returned);
    }
    return done;
  }

  std::function<void()> between;
  Answer* answer = nullptr;
};

WCHAR* Odd(const void* place) {
  return reinterpret_cast<WCHAR*>(reinterpret_cast<std::uintptr_t>(place));
}

TEST(PrinterLists, ThatLeaveTheirBlockOrGrowOrCantBeHadAreErrors) {
  using simulated::Spooler;
  struct Case {
    const char* name;
    std::int32_t error;
    TamperedPrinting::Answer* answer;
    std::function<void(PrintersWorld&)> furnish = {};
    std::function<void(PrintersWorld&)> between = {};
    TextView server = u"FS1";
    std::int32_t count = 2;
  };
  using Records = PRINTER_INFO_2W*;
  const Case cases[] = {
      {"one more record", 13, [](Records, BYTE*, DWORD& count) { count = 0xFFFFFFFF; }},
      {"a text at the end", 13, [](Records r, BYTE* end, DWORD&) { r[1].pPrinterName = Odd(end); }},
      {"behind it", 13, [](Records r, BYTE* end, DWORD&) { r->pComment = Odd(end + 4096); }},
      {"before it", 13, [](Records r, BYTE*, DWORD&) { r->pLocation = Odd(&r[-1]); }},
      {"half a unit", 13, [](Records r, BYTE* end, DWORD&) { r->pSepFile = Odd(end - 1); }},
      {"without an end", 13,
       [](Records r, BYTE* end, DWORD&) {
         std::memset(r[1].pPrinterName, 'x',
                     static_cast<std::size_t>(end - reinterpret_cast<BYTE*>(r[1].pPrinterName)));
       }},
      {"at an odd address", 0,
       [](Records r, BYTE*, DWORD&) {
         auto* const text = reinterpret_cast<BYTE*>(r->pDriverName);
         std::memmove(text + 1, text, 6);
         r->pDriverName = Odd(text + 1);
       }},
      {"what isn't read", 0,
       [](Records r, BYTE* end, DWORD&) {
         r->pDevMode = r->pSecurityDescriptor = r->pServerName = Odd(end + 4096);
       }},
      {"without a name", 0, [](Records r, BYTE*, DWORD&) { r->pPrinterName = nullptr; }},
      {"fewer than before", 0, nullptr, {}, {}, u"PC1", 0},
      {"grows", 122, nullptr, {}, [](PrintersWorld& w) { w.computer(u"FS1").AddPrinter(u"X"); }},
      {"denied", 5, nullptr,
       [](PrintersWorld& w) { w.computer(u"FS1").SetSpooler(Spooler::Denied); }},
      {"stopped", 1722, nullptr,
       [](PrintersWorld& w) { w.computer(u"FS1").SetSpooler(Spooler::Stopped); }},
      {"switched off", 1722, nullptr, {}, {}, u"PC9"},
      {"nobody", 123, nullptr, {}, {}, u""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PrintersWorld world;
    if (c.furnish) c.furnish(world);
    const Ref<CServer> server = world.Server(c.server);
    TamperedPrinting printing(world.simulated.session());
    printing.answer = c.answer;
    if (c.between) printing.between = [&] { c.between(world); };
    Platform mixed = Mixed(world.platform, printing);
    Apartment::End();
    Apartment::Start(mixed);
    Ref<CPrinters> printers;
    EXPECT_EQ(ErrorOf([&] { printers = server->GetPrinters(); }), c.error);
    if (printers) {
      EXPECT_EQ(printers->Count(), c.count);
    }
    if (printers && c.count > 0) {
      EXPECT_EQ(printers->ItemByIndex(1)->DriverName, u"PS");
    }
    printers = nullptr;
    Apartment::End();
  }
}

TEST(PrinterLists, AndDescriptorsReportEveryFailure) {
  // Without the size that the first call of a walk tells, the second one finds no room.
  SweepFaults<PrintersWorld>(
      {"LocalFree"},
      [](PrintersWorld& world) {
        const Ref<CPrinters> printers = world.Server()->GetPrinters();
        printers->ItemByKey(u"Plotter")->GetSecurityDescriptor()->GetDACL();
      },
      [](PrintersWorld& world, const std::string& failed, bool raised) {
        EXPECT_EQ(raised, failed != "LocalFree");
        EXPECT_EQ(world.Server()->GetPrinters()->Count(), 2);
      },
      {"EnumPrintersW"});
}

}  // namespace
}  // namespace veldmark
