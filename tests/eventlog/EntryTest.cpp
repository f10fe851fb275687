#include <gtest/gtest.h>

#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "automation/LateBound.h"
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/EventMessages.h"
#include "eventlog/InsertStrings.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

constexpr TextView kKey = u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\";

/// A source of SRV with two event files, of which the first lacks most events, and a file of
/// parameters and categories; a second source shares its event file.
struct MessageWorld : SimulatedApartment {
  MessageWorld() {
    key(u"App")
        .String(u"EventMessageFile", u"C:\\Msg\\first.dll;C:\\Msg\\second.dll", kRegExpandSz)
        .String(u"ParameterMessageFile", u"C:\\Msg\\third.dll", kRegExpandSz)
        .String(u"CategoryMessageFile", u"C:\\Msg\\third.dll", kRegExpandSz);
    srv.AddDrive(u'C');
    srv.AddFile(u"C:\\Msg\\first.dll").Messages({{1, u"One.\r\n"}});
    srv.AddFile(u"C:\\Msg\\second.dll")
        .Messages({{2, u"%1 and %2.\r\n\r\n\r\n\r\nEnd%0"},
                   {3, u"[%99!*.*s!][%100][%5]"},
                   {8, u"[%99!.*s!][%100][%5]"},
                   {4, u"%1!30000s!%2!30000s!%1!30000s!"}});
    srv.AddFile(u"C:\\Msg\\third.dll").Messages({{5, u"five  \r\n"}, {6, u""}, {7, u"Seven\r\n"}});
    key(u"Other").String(u"EventMessageFile", u"C:\\Msg\\second.dll;C:\\Msg\\second.dll",
                         kRegExpandSz);
    journal().Clear();
  }
  simulated::RegistryNode& key(TextView source) {
    return srv.local_machine().Key(Text(kKey).append(source));
  }
  static Ref<CEventLogEntry> Entry(std::int32_t id, std::vector<Text> strings = {},
                                   Text source = u"App", Text server = u"SRV",
                                   std::int16_t category = 0) {
    auto entry = Make<CEventLogEntry>();
    EventFields fields;
    fields.record_number = 12;
    fields.time_generated = MakeDate(2024, 3, 5, 14, 30);
    fields.event_id = id;
    fields.category = category;
    fields.source_name = std::move(source);
    fields.origin = Make<EventOrigin>(u"System", std::move(server));
    fields.strings = std::move(strings);
    entry->Fill(std::move(fields));
    return entry;
  }

  simulated::Computer& srv = estate().AddComputer(u"SRV");
  Ref<CEventLog> log = Make<CEventLog>();
};

class Entries : public TestIn<MessageWorld> {
 protected:
  ~Entries() override { log = nullptr; }
};

TEST_F(Entries, TellTheirNumbersAndTypesInParts) {
  const std::pair<std::uint32_t, const char*> ids[] = {
      {0x40060012, "18|6"}, {0xC0060012, "18|4090"}, {0x0000FFFE, "-2|0"}, {0x80000001, "1|0"}};
  for (const auto& [id, parts] : ids) {
    EXPECT_EQ(ValuesOf(*Entry(static_cast<std::int32_t>(id)), {u"EventCode", u"FacilityCode"}),
              parts);
  }
  const std::pair<std::int32_t, TextView> types[] = {
      {0, u"Success"},       {1, u"Error"},          {2, u"Warning"}, {4, u"Information"},
      {8, u"Success Audit"}, {16, u"Failure Audit"}, {3, u""}};
  for (const auto& [type, text] : types) {
    auto entry = Make<CEventLogEntry>();
    EventFields fields;
    fields.event_type = type;
    entry->Fill(fields);
    EXPECT_EQ(entry->EventTypeDescription(), text);
  }
  EXPECT_EQ(Entry(1)->StringsArray(), Variant());
  EXPECT_EQ(journal().entries().size(), 0u) << "nothing was looked up";
}

TEST_F(Entries, HaveTheTextOfTheFirstFileThatHasTheirNumber) {
  struct Row {
    std::int32_t id;
    std::vector<Text> strings;
    Text message, raw;
  };
  const Text two = u"%1 and %2.\r\n\r\nEnd";
  const Text missing =
      u"The system cannot find message text for message number 0x9 in the message file for "
      u"\\\\SRV\\System\\App.";
  const std::vector<Row> rows = {
      {1, {}, u"One.", u"One."},
      {2, {u"A", u"B"}, u"A and B.\r\n\r\nEnd", two},
      {2, {u"%{X}", u"%{"}, u"%{X} and %{}.\r\n\r\nEnd", two},
      {2, {u"100%%5", u"9% %x%"}, u"100five  \r\n and 9% %x%.\r\n\r\nEnd", two},
      {9, {}, missing, missing},
  };
  for (const Row& row : rows) {
    const auto entry = Entry(row.id, row.strings);
    EXPECT_EQ(entry->EventMessage(), row.message);
    EXPECT_EQ(entry->EventMessageRaw(), row.raw);
    EXPECT_EQ(Err().Number(), 0);
  }
  EXPECT_EQ(Entry(8, std::vector<Text>(120, u"x"))->EventMessage(), u"[(null)][x0][x]");
  EXPECT_TRUE(Entry(3)->EventMessage().ends_with(u"[(null)0][(null)]"));
  EXPECT_EQ(Entry(4, {u"a", u"b"})->EventMessageRaw(), u"%1!30000s!%2!30000s!%1!30000s!");
  EXPECT_EQ(journal().Count("LoadLibraryExW"), 3u) << "each file once";
  log = nullptr;
  EXPECT_EQ(ledger().Report(), "");
  EXPECT_EQ(journal().Count("FreeLibrary"), 3u);
}

TEST_F(Entries, KeepTheirTextAndAskOnce) {
  const auto entry = Entry(2, {u"A", u"B"});
  EXPECT_EQ(entry->EventMessageRaw(), u"%1 and %2.\r\n\r\nEnd");
  log = nullptr;
  journal().Clear();
  EXPECT_EQ(entry->EventMessage(), u"A and B.\r\n\r\nEnd");
  EXPECT_TRUE(journal().entries().empty());

  const auto foreign = Entry(-7, {u"a", u"50%"}, u"Nobody");
  const Text fallback =
      u"The description for Event ID (-7) in Source (Nobody ) could not be found. It contains the "
      u"following insert strings: \r\na\r\n\r\n";
  EXPECT_EQ(foreign->EventMessage(), fallback) << "without a parameter file a string is blanked";
  EXPECT_EQ(foreign->EventMessageRaw(), u"");
  journal().Clear();
  EXPECT_EQ(foreign->EventMessage(), fallback);
  EXPECT_FALSE(Entry(-7, {}, u"Nobody")->EventMessage().empty());
  EXPECT_EQ(journal().entries().size(), 0u) << "the source is known to have no files";
}

TEST_F(Entries, ShowNoInsertsAtTheFirstLookUpOfASharedFile) {
  EXPECT_EQ(Entry(2, {u"A", u"B"}, u"Other")->EventMessage(), u"(null) and (null).\r\n\r\nEnd");
  EXPECT_EQ(Entry(2, {u"A", u"B"}, u"Other")->EventMessage(), u"A and B.\r\n\r\nEnd");
}

TEST_F(Entries, LoadTheFilesOfManySourcesOnceEach) {
  const auto name = [](int source) { return u"Source" + ToText(std::int64_t{source}); };
  for (int source = 0; source < 20; ++source) {
    const Text file = u"C:\\Msg\\" + name(source) + u".dll";
    srv.AddFile(file).Messages({{1, name(source) + u"\r\n"}});
    key(name(source)).String(u"EventMessageFile", file, kRegExpandSz);
  }
  for (int event = 0; event < 2000; ++event) {
    const Text source = name(event % 20);
    ASSERT_EQ(Entry(1, {}, source)->EventMessage(), source) << "the text of its own file";
  }
  EXPECT_EQ(journal().Count("LoadLibraryExW"), 20u);
}

TEST_F(Entries, LoseTheParameterFileWithANumberThatItLacks) {
  const auto entry = Entry(1, {u"%%5", u"%%404"});
  const Text gone =
      u"317|Veldmark2|The system cannot find message text for message number 0x404 in the message "
      u"file for \\\\SRV\\System\\App.";
  EXPECT_EQ(FailureOf([&] { entry->StringsArray(); }), gone);
  EXPECT_EQ(journal().Count("FreeLibrary"), 1u);
  EXPECT_EQ(ErrorOf([&] { entry->Strings(); }), 1812) << "the file isn't loaded again";
  EXPECT_EQ(entry->EventMessage(), u"One.");
  EXPECT_EQ(ErrorOf([&] { GetParameterMessage({u"SRV", u"System", u"App"}, u"%99999999999"); }), 6);
  EXPECT_EQ(ledger().faults().size(), 0u);
}

TEST_F(Entries, TellTheirCategory) {
  const auto category = [&](std::int16_t number, Text source = u"App") {
    return Entry(1, {}, std::move(source), u"SRV", number);
  };
  EXPECT_EQ(category(7)->EventCategoryDescription(), u"Seven");
  EXPECT_EQ(journal().Count("FreeLibrary"), 1u);
  journal().Clear();
  EXPECT_EQ(category(7)->EventCategoryDescription(), u"Seven");
  EXPECT_TRUE(journal().entries().empty());
  EXPECT_EQ(category(5, u"Other")->EventCategoryDescription(), u"(5)");
  EXPECT_EQ(category(0, u"Other")->EventCategoryDescription(), u"None");
  EXPECT_EQ(FailureOf([&] { category(8)->EventCategoryDescription(); }),
            u"317|Veldmark2.CEventLogEntry|The system cannot find message text for message number "
            u"0x8 in the message file for \\\\SRV\\System\\App.");
  key(u"Other").String(u"CategoryMessageFile", u"D:\\none.dll", kRegSz);
  const auto entry = category(9, u"Other");
  EXPECT_EQ(FailureOf([&] { entry->EventCategoryDescription(); }),
            u"2|Veldmark2.CEventLogEntry|The system cannot find the file specified. "
            u"(\\\\SRV\\D$\\none.dll)");
  EXPECT_EQ(entry->EventCategoryDescription(), u"(9)");
}

TEST_F(Entries, AskTheRegistryOfThisComputerWhereTheOtherHasNoSuchSource) {
  simulated::RegistryNode& mine = local().local_machine().Key(Text(kKey) + u"Mine");
  mine.String(u"EventMessageFile", u"C:\\Msg\\first.dll", kRegSz);
  EXPECT_EQ(Entry(1, {}, u"Mine")->EventMessage(), u"One.") << "the file is still SRV's";
  EXPECT_EQ(journal().Count("DoEvents"), 1u);
  EXPECT_EQ(GetRemoteMessageFilePath(u"C:\\a.dll", u"\\\\H"), u"\\\\H\\C$\\a.dll");
  EXPECT_EQ(GetRemoteMessageFilePath(u"a.dll", u"H"), u"a.dll");
}

/// Tells names of GUIDs as a component of another library does.
class Resolver : public LateBoundObject {
 public:
  const Interface& GetInterface() const override { return CEventLog::Describe(); }
  Variant CallMethod(TextView name, std::span<Variant> arguments) override {
    EXPECT_EQ(name, u"ResolveGUID");
    if (ToText(arguments[1]) == u"{AB-12}") {
      arguments[2].Assign(Variant(u"name on " + ToText(arguments[0])));
    }
    return {};
  }
};

TEST_F(Entries, ReplaceReferencesToAccountsAndDirectoryObjects) {
  const auto resolve = [](TextView text) { return ResolveInsertString(text, u"SRV"); };
  EXPECT_EQ(ErrorOf([&] { resolve(u"%{AB-12}"); }), 429);
  estate().AddComponent(u"MarlgateCOM.CQMResolveGUIDs",
                        [] { return Ref<Object>(Make<Resolver>()); });
  const std::vector<std::pair<Text, Text>> rows = {
      {u"%{AB-12}|%{ab}|%{x-1}", u"name on SRV|%{ab}|%{x-1}"},
      {u"%{S-1-5-18}.", u"NT AUTHORITY\\SYSTEM."},
      {u"%{S-1-5-21-9-9-9-9}", u"S-1-5-21-9-9-9-9"},
      {u"%{", u"%{}"},
      {u"% {a%b}", u"% {a%b}"},
      {u"%{A}%", u"%{A}%"},
      {u"%{12--34}", u"%{12--34}"},
      {u"%{s-1-5-18}", u"%{s-1-5-18}"}};
  for (const auto& [text, resolved] : rows) EXPECT_EQ(resolve(text), resolved);
  EXPECT_NE(ErrorOf([&] { resolve(u"%{S-1}"); }), 0);
  EXPECT_TRUE(IsHexText(u"&hAf") && IsHexText(u"") && !IsHexText(u"&h") && !IsHexText(u"&h&h1"));
}

TEST_F(Entries, TraceTheirLookUps) {
  local().AddFolder(u"C:\\Program Files\\Veldmark2");
  Apartment::Current().debug = true;
  const auto entry = Entry(1, {u"%5"});
  entry->EventMessage();
  EXPECT_EQ(ErrorOf([&] { Entry(1, {}, u"App", u"SRV", 7)->EventCategoryDescription(); }), 0);
  const std::string stamp = "12:3/5/2024 2:30:00 PM:1";
  EXPECT_EQ(ContentOf(u"C:\\Program Files\\Veldmark2\\VK2_DEBUG.LOG"),
            stamp + "EM:1\r\nResolveStrings - GetParameterMessage(SRV, System, App, 1, %5\r\n" +
                stamp + "EM:2\r\n" + stamp + "EM:3\r\n" + stamp + "ECD:1\r\n" + stamp +
                "ECD:2\r\n");
}

TEST(EntryFaults, LeaveNoModuleOrKeyBehind) {
  const std::set<std::string> any = {"GetComputerNameW", "RegConnectRegistryW", "RegOpenKeyExW",
                                     "RegQueryValueExW", "RegCloseKey",         "LoadLibraryExW",
                                     "FormatMessageW",   "FreeLibrary",         "LocalFree"};
  SweepFaults<MessageWorld>(
      any,
      [](MessageWorld& world) {
        EXPECT_FALSE(MessageWorld::Entry(2, {u"%%5", u"B"})->EventMessage().empty());
        EXPECT_EQ(Apartment::Current().message_files.size(), world.ledger().still_open().size());
        world.log = nullptr;
      },
      [](MessageWorld&, const std::string&, bool) {
        EXPECT_EQ(Apartment::Current().message_modules->Count(), 0);
      });
  SweepFaults<MessageWorld>(
      {},
      [](MessageWorld&) {
        MessageWorld::Entry(2, {}, u"App", u"SRV", 7)->EventCategoryDescription();
      },
      [](MessageWorld&, const std::string&, bool) {}, any);
}

}  // namespace
}  // namespace veldmark
