#include <cstring>
#include <functional>
#include <optional>

#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "services/CPrinter.h"
#include "services/CPrinters.h"
#include "support/MixedPlatform.h"
#include "support/NetworkFixture.h"

namespace veldmark {
namespace {

/// FS1 has a laser printer of which everything is known, and a plotter of which nothing is.
class PrintersWorld : public NetworkWorld {
 public:
  PrintersWorld() {
    simulated::Printer& laser = computer(u"FS1").AddPrinter(u"Laser");
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
};

class Printers : public TestIn<PrintersWorld> {};

TEST_F(Printers, ReadAsTheirRecordsSay) {
  const Ref<CPrinters> printers = Server(u"FS1")->GetPrinters();
  EXPECT_EQ(ValuesOf(*printers->ItemByKey(u"Laser")),
            "Laser|Duplex|\\\\FS1\\Laser|-2147475384|30|4|2|99|2/28/1900|12/29/1899|32768|RAW|PS|"
            "1st|p|LPT1:,LPT2:|winprint|sep|LASER|FS1");
  EXPECT_EQ(ValuesOf(*printers->ItemByKey(u"Plotter")),
            "Plotter||\\\\FS1\\Plotter|64|0|0|0|1|12:00:00 AM|12:00:00 AM|0|||||||||FS1");
  EXPECT_EQ(Server(u"PC1")->GetPrinters()->Count(), 0);
  EXPECT_EQ(ErrorOf([&] { Server(u"PC9")->GetPrinters(); }), 1722) << "switched off";
}

TEST_F(Printers, LoseAsManyCharactersAsTheirServersNameHas) {
  const struct {
    TextView server;
    std::optional<Text> full_name;
    const char* shown;
  } cases[] = {
      {u"fs1", std::nullopt, "P|\\\\FS1\\P|fs1"},
      {u"\\\\FS1", std::nullopt, "P|\\\\FS1\\P|\\\\FS1"},
      {u"FS1", u"\\\\OTHER\\P", "R\\P|\\\\OTHER\\P|FS1"},
      {u"FS1", u"Laser 12", "12|Laser 12|FS1"},
      {u"FS1", u"\\\\FS1\\", "|\\\\FS1\\|FS1"},
      {u"FS1", u"P", "|P|FS1"},
  };
  for (const auto& c : cases) {
    computer(u"FS1").AddPrinter(u"P").full_name = c.full_name;
    EXPECT_EQ(ValuesOf(*Server(c.server)->GetPrinters()->ItemByIndex(2),
                       {u"PrinterName", u"Description", u"ServerName"}),
              c.shown);
  }
}

TEST_F(Printers, AreListedAndDeliveredBothUntilAListenerCancels) {
  const struct {
    bool async;
    int cancelled;
    const char* log;
    const char* printers;
  } cases[] = {
      {false, 0, "Retrieved Printer Laser\nRetrieved Printer Plotter\n", "Laser|FS1, Plotter|FS1"},
      {true, 0,
       "5 CPrinter Laser\nRetrieved Printer Laser\n5 CPrinter Plotter\nRetrieved Printer Plotter\n",
       "Laser|, Plotter|"},
      {true, 2, "5 CPrinter Laser\nRetrieved Printer Laser\n5 CPrinter Plotter\n", "Laser|"},
      {true, 1, "5 CPrinter Laser\n", ""},
  };
  for (const auto& c : cases) {
    const Ref<CServer> source = Server(u"FS1");
    source->PutAsyncFetch(c.async);
    std::string log;
    Apartment::Current().status = Make<CStatus>();
    Log(log, source.Get(), u"PrinterName", c.cancelled);
    EXPECT_EQ(ListOf(source->GetPrinters(), {u"PrinterName", u"ServerName"}), c.printers);
    EXPECT_EQ(log, std::string("Retrieving Printers from Server FS1\n") + c.log);
  }
  EXPECT_EQ(journal().Count("EnumPrintersW"), 8u);
}

TEST_F(Printers, HaveTheDescriptorOfTheirNameOnTheirServer) {
  const Ref<CServer> server = Server(u"FS1");
  server->PutAsyncFetch(true);
  const Ref<CPrinter> printer = server->GetPrinters()->ItemByKey(u"Laser");
  EXPECT_EQ(FailureOf([&] { printer->GetSecurityDescriptor(); }).substr(0, 23),
            u"1801|Veldmark2.CPrinter");
  printer->ServerName = u"FS1";
  const auto descriptor = printer->GetSecurityDescriptor();
  EXPECT_EQ(descriptor->ParentObjectType + descriptor->ParentObjectPath, u"CPrinter\\\\FS1\\Laser");
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
  using Records = PRINTER_INFO_2W*;
  const struct {
    const char* name;
    std::int32_t error;
    TamperedPrinting::Answer* answer;
    void (*furnish)(PrintersWorld&) = nullptr;
    void (*between)(PrintersWorld&) = nullptr;
  } cases[] = {
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
      {"grows", 122, nullptr, nullptr,
       [](PrintersWorld& w) { w.computer(u"FS1").AddPrinter(u"X"); }},
      {"denied", 5, nullptr,
       [](PrintersWorld& w) { w.computer(u"FS1").SetSpooler(simulated::Spooler::Denied); }},
      {"stopped", 1722, nullptr,
       [](PrintersWorld& w) { w.computer(u"FS1").SetSpooler(simulated::Spooler::Stopped); }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    MixedWorld<PrintersWorld, TamperedPrinting> world;
    if (c.furnish) c.furnish(world);
    world.own.answer = c.answer;
    if (c.between) world.own.between = [&] { c.between(world); };
    Ref<CPrinters> printers;
    EXPECT_EQ(ErrorOf([&] { printers = world.Server(u"FS1")->GetPrinters(); }), c.error);
    if (!printers) continue;
    EXPECT_EQ(ListOf(printers, {u"DriverName"}), "PS, ");
  }
}

TEST(PrinterLists, AndDescriptorsReportEveryFailure) {
  // Without the size that the first call of a walk tells, the second one finds no room.
  SweepFaults<PrintersWorld>(
      {"LocalFree"},
      [](PrintersWorld& world) {
        const Ref<CPrinters> printers = world.Server(u"FS1")->GetPrinters();
        printers->ItemByKey(u"Plotter")->GetSecurityDescriptor()->GetDACL();
      },
      [](PrintersWorld& world, const std::string& failed, bool raised) {
        EXPECT_EQ(raised, failed != "LocalFree");
        EXPECT_EQ(world.Server(u"FS1")->GetPrinters()->Count(), 2);
      },
      {"EnumPrintersW"});
}

}  // namespace
}  // namespace veldmark
