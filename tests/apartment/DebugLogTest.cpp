#include "apartment/DebugLog.h"

#include <gtest/gtest.h>

#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/Interface.h"
#include "collections/Collection.h"
#include "root/ObjectModel.h"
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
  constexpr TextView kReported =
      u"SystemRoot MyComputer NetHood Networks Network Domains Domain Servers Server Groups Group "
      u"Users User Drives Drive Shares Share Services Service Printers Printer Volumes Volume "
      u"SecurityDescriptor Acl Aces Ace Sids Sid Files File Folders Folder PathNames PathName "
      u"EventLogEntries EventLogEntry ";
  Apartment::Current().well_known_groups = nullptr;
  const Text titles = u"Current Object Counts\r\n=====================";
  EXPECT_EQ(GetObjectCountsReport(), titles);
  std::vector<Ref<Object>> alive;
  for (const Interface* table : ObjectModel()) {
    const Text name = table->name == u"SystemRoot" ? table->name : table->name.substr(1);
    const bool reported = (u" " + Text(kReported)).find(u" " + name + u" ") != Text::npos;
    const Ref<Object> one = table->create();
    EXPECT_EQ(GetObjectCountsReport(), reported ? titles + u"\r\n" + name + u" = 1" : titles);
  }
  for (const Interface* table : ObjectModel()) alive.push_back(table->create());
  Apartment& apartment = Apartment::Current();
  apartment.sid_cache->Add(Variant(1));
  apartment.pdc_cache->Add(Variant(1));
  apartment.account_cache = nullptr;
  apartment.machine_paths->Add(Variant(1));
  EXPECT_EQ(GetObjectCountsReport(), titles + u"\r\n" + ReplaceAll(kReported, u" ", u" = 1\r\n") +
                                         u"PDC's Collection = 1\r\nSID's Collection = 1");
}

}  // namespace
}  // namespace veldmark
