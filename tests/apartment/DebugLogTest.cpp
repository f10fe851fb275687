#include "apartment/DebugLog.h"

#include <gtest/gtest.h>

#include "apartment/Errors.h"
#include "collections/Collection.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"

namespace veldmark {
namespace {

constexpr TextView kLog = u"C:\\Program Files\\Veldmark2\\VK2_DEBUG.LOG";

class Logging : public ApartmentFixture {
 protected:
  Logging() {
    local().AddFolder(u"C:\\Program Files\\Veldmark2");
    Apartment::Current().debug = true;
  }
};

TEST_F(Logging, LinesAreAppendedInTheSystemsCodePageWhileTheFlagIsOn) {
  Apartment::Current().debug = false;
  DebugLog(u"unheard");
  EXPECT_EQ(ContentOf(kLog), "no file");
  EXPECT_TRUE(journal().entries().empty());

  Apartment::Current().debug = true;
  DebugLog(u"first");
  EXPECT_EQ(journal().Count("CloseHandle"), 1u);
  DebugLog(u"");
  DebugLog(u"Gr\u00F6\u00DFe 5 \u20AC, \u4E2D");
  EXPECT_EQ(ContentOf(kLog),
            "first\r\n\r\nGr\xF6\xDF"
            "e 5 \x80, ?\r\n");

  estate().SetModuleFolder(u"C:\\");
  DebugLog(u"at the root");
  EXPECT_EQ(ContentOf(u"C:\\VK2_DEBUG.LOG"), "at the root\r\n");
}

TEST_F(Logging, AFolderThatCannotBeWrittenRaisesTheFileError) {
  estate().SetModuleFolder(u"C:\\Missing");
  EXPECT_EQ(FailureOf([] { DebugLog(u"lost"); }), u"76|Veldmark2|Path not found");
}

struct LoggingWorld : SimulatedApartment {
  LoggingWorld() {
    local().AddFolder(u"C:\\Program Files\\Veldmark2");
    Apartment::Current().debug = true;
  }
};

TEST(LoggingFaults, AFailedWriteIsRaisedAndTheFileClosed) {
  SweepFaults<LoggingWorld>(
      {"CloseHandle"}, [](LoggingWorld&) { DebugLog(u"na\u00EFve"); },
      [](LoggingWorld&, const std::string& failed, bool raised) {
        EXPECT_EQ(raised, failed != "CloseHandle");
      },
      {"CreateFileW", "WriteFile"});
}

TEST(ObjectCounts, AreReportedInTheirOrderWhereSomethingIsAlive) {
  const SimulatedApartment world;
  const Text titles = u"Current Object Counts\r\n=====================";
  EXPECT_EQ(GetObjectCountsReport(), titles);
  Apartment& apartment = Apartment::Current();
  Text expected = titles;
  const TextView labels[] = {
      u"SystemRoot",   u"MyComputer", u"NetHood", u"Networks",  u"Network",  u"Domains",
      u"Domain",       u"Servers",    u"Server",  u"Groups",    u"Group",    u"Users",
      u"User",         u"Drives",     u"Drive",   u"Shares",    u"Share",    u"Services",
      u"Service",      u"Printers",   u"Printer", u"Volumes",   u"Volume",   u"SecurityDescriptor",
      u"Acl",          u"Aces",       u"Ace",     u"Sids",      u"Sid",      u"Files",
      u"File",         u"Folders",    u"Folder",  u"PathNames", u"PathName", u"EventLogEntries",
      u"EventLogEntry"};
  for (std::size_t i = 0; i < static_cast<std::size_t>(Counter::kCount); ++i) {
    for (std::size_t k = 0; k < i % 3; ++k) apartment.counters.Increment(static_cast<Counter>(i));
    if (i < std::size(labels) && i % 3 != 0) {
      expected.append(u"\r\n").append(labels[i]).append(i % 3 == 1 ? u" = 1" : u" = 2");
    }
  }
  apartment.sid_cache->Add(Variant(1));
  apartment.pdc_cache->Add(Variant(1));
  apartment.account_cache = nullptr;
  apartment.machine_paths->Add(Variant(1));
  EXPECT_EQ(GetObjectCountsReport(),
            expected + u"\r\nPDC's Collection = 1\r\nSID's Collection = 1");
}

}  // namespace
}  // namespace veldmark
