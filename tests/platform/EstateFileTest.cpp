#include "platform/simulated/estate_file/EstateFile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

#include "platform/operations/EventLog.h"
#include "platform/operations/Registry.h"
#include "platform/simulated/estate/ScheduledTasks.h"
#include "platform/simulated/estate/VersionDescription.h"

namespace veldmark::simulated {
namespace {

// A description with one computer, with these members in it and these beside the list of computers.
std::string Described(const std::string& members, const std::string& beside = "") {
  return "{" + beside + (beside.empty() ? "" : ", ") + R"("computers": [{"name": "HARBOUR")" +
         (members.empty() ? "" : ", ") + members + "}]}";
}

std::string Drive(const std::string& children) {
  return R"("drives": {"C:": {"children": [)" + children + "]}}";
}

TEST(EstateFile, DescribesComputersDrivesAndFiles) {
  Estate estate = ReadEstate(
      Described(Drive(R"({"name": "Data", "attributes": ["hidden"], "denied": ["list", "delete"],
                "modified": "2001-02-03T04:05:06.5Z", "children": [
                  {"name": "a long name.txt", "text": "gr\u00fcn", "created": "1999-12-31T23:59:59Z"},
                  {"name": "another long name", "shortName": "X"},
                  {"name": "raw", "hex": "00 ff", "size": 5000000000, "attributes": []},
                  {"name": "shut", "locked": true, "shortName": "", "messages": {"7": "seven"},
                   "version": {"file": "5.1.2600", "translations": ["040704E4"],
                               "strings": {"040904B0": {"Comments": "x"}}}}]})") +
                    R"(, "shares": [{"name": "D", "path": "C:\\Data"}])",
                R"("clock": "2020-01-01T00:00:00Z", "user": {"name": "mreed", "sid": "S-1-5-1"},
         "timeZone": {"bias": 300, "standardName": "East", "daylightBias": -60, "current": "daylight"},
         "mappedDrives": {"Z:": "\\\\HARBOUR\\D"}, "modules": {"netmsg.dll": null, "x.dll": {"1": "one"}},
         "messages": {"99999": "ninety"}, "currentFolder": "C:\\Data", "moduleFolder": "C:\\VK")"));
  const Computer& local = estate.local();
  EXPECT_EQ(ToUtf8(local.name()), "HARBOUR");
  EXPECT_EQ(estate.bias(), 240);
  EXPECT_EQ(LocalNow(estate), 13'222'310'400 - 240 * 60);
  EXPECT_EQ(Text(estate.time_zone().StandardName), u"East");
  EXPECT_EQ(estate.now(), 132'223'104'000'000'000u);
  EXPECT_EQ(estate.mapped_drives().at(u'Z'), u"\\\\HARBOUR\\D");
  EXPECT_EQ(estate.modules().size(), 1u);
  EXPECT_EQ(estate.system_messages().at(99999), u"ninety");
  EXPECT_EQ(estate.module_folder(), u"C:\\VK");
  EXPECT_NE(local.FindShare(u"d"), nullptr);
  EXPECT_NE(local.FindShare(u"c$"), nullptr);
  const auto data = local.Find(u"c:\\data");
  ASSERT_NE(data, nullptr);
  EXPECT_TRUE(data->list_denied() && data->delete_denied() && !data->write_denied());
  EXPECT_EQ(data->attributes(), kFileAttributeDirectory | kFileAttributeHidden);
  EXPECT_EQ(data->written(), 126'256'467'065'000'000u);
  const auto text = local.Find(u"C:\\Data\\ALONGN~1.TXT");
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->size(), 5u);
  EXPECT_EQ(text->attributes(), kFileAttributeArchive);
  EXPECT_EQ(text->created(), 125'911'583'990'000'000u);
  EXPECT_EQ(text->written(), estate.now());
  EXPECT_NE(local.Find(u"C:\\Data\\x"), nullptr);
  EXPECT_EQ(local.Find(u"C:\\Data\\ANOTHE~1"), nullptr);
  const auto raw = local.Find(u"C:\\Data\\raw");
  EXPECT_EQ(raw->size(), 5'000'000'000u);
  char bytes[4] = {1, 2, 3, 4};
  EXPECT_EQ(raw->Read(1, bytes, 3), 3u);
  EXPECT_EQ(std::string(bytes, 4), std::string("\xFF\0\0\4", 4)) << "zeros behind the content";
  EXPECT_EQ(raw->attributes(), kFileAttributeNormal);
  const auto shut = local.Find(u"C:\\Data\\shut");
  EXPECT_FALSE(shut->CanOpen({.reads = true, .lets_read = true}));
  EXPECT_EQ(shut->messages()->at(simulated::kEnglish).at(7), u"seven");
  const VersionDescription version{.file = {5, 1, 2600, 0},
                                   .product = {5, 1, 2600, 0},
                                   .translations = {u"040704E4"},
                                   .strings = {{u"040904B0", {{u"Comments", u"x"}}}}};
  EXPECT_EQ(*shut->version(), version.Build());
}

TEST(EstateFile, KeepsRecordsBackUntilTheClockIsThere) {
  Estate estate =
      ReadEstate(Described(R"("eventLogs": [{"name": "Log", "oldest": 7, "unreadable": 5,
      "records": [
      {"source": "a", "id": 3, "time": "2024-03-05T14:30:02Z"},
      {"source": "a", "id": 2, "time": "2024-03-05T14:30:00Z", "written": "2024-03-05T14:30:01Z"},
      {"source": "a", "id": 0, "time": "2024-03-05T14:30:00Z"}, {"source": "a", "id": 1},
      {"source": "a", "id": 4, "time": "2024-03-05T14:30:02Z"}]}])"));
  const auto log = estate.local().FindEventLog(u"Log");
  EXPECT_EQ(log->unreadable(), 5u);
  for (const DWORD written : {2, 3, 5}) {
    log->WriteDue(estate.now());
    EXPECT_EQ(log->count(), written);
    estate.Advance(1000);
  }
  for (DWORD id = 0; id < 5; ++id) {
    EXPECT_EQ(log->record(7 + id)[offsetof(EVENTLOGRECORD, EventID)], id);
  }
}

TEST(EstateFile, DescribesRegistryValuesOfEveryType) {
  Estate estate = ReadEstate(Described(R"("registry": {
      "HKCU": {"values": {"mine": 1}},
      "HKLM": {"keys": {"SOFTWARE\\Some\\App": {"denied": ["write"], "class": "c", "values": {
        "": "default", "n": 4294967295, "m": ["a", "b"], "e": {"type": "expand", "text": "%x%"},
        "q": {"type": "qword", "number": 5}, "b": {"type": "binary", "hex": "0102"},
        "odd": {"type": "string", "hex": "610062"}}}}}})"));
  RegistryNode& key = estate.local().local_machine().Key(u"software\\some\\app");
  EXPECT_TRUE(key.write_denied() && !key.read_denied());
  const std::tuple<const char16_t*, DWORD, std::vector<std::uint8_t>> rows[] = {
      {u"", kRegSz, {'d', 0, 'e', 0, 'f', 0, 'a', 0, 'u', 0, 'l', 0, 't', 0, 0, 0}},
      {u"N", kRegDword, {255, 255, 255, 255}},
      {u"m", kRegMultiSz, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}},
      {u"e", kRegExpandSz, {'%', 0, 'x', 0, '%', 0, 0, 0}},
      {u"q", kRegQword, {5, 0, 0, 0, 0, 0, 0, 0}},
      {u"b", kRegBinary, {1, 2}},
      {u"odd", kRegSz, {'a', 0, 'b'}}};
  for (const auto& [name, type, data] : rows) {
    const RegistryNode::Value* const value = key.FindValue(name);
    ASSERT_NE(value, nullptr) << ToUtf8(name);
    EXPECT_EQ(value->type, type) << ToUtf8(name);
    EXPECT_EQ(value->data, data) << ToUtf8(name);
  }
  EXPECT_NE(estate.current_user().FindValue(u"mine"), nullptr);
}

TEST(EstateFile, TakesEachWordForItsNumber) {
  const auto task = [](Computer& computer) {
    return std::get<JobFile>(ReadJob(*computer.Find(u"C:\\Windows\\Tasks\\t.job")));
  };
  const auto trigger = [](const std::string& fields) {
    return R"("drives": {"C:": {}}, "tasks": [{"name": "t", "triggers": [{)" + fields +
           R"(, "start": "2024-01-01T08:00"}]}])";
  };
  // "@" stands for the word.
  const struct {
    std::string json;
    std::string words;
    std::function<std::int64_t(Computer&)> value;
    std::string values;
  } rows[] = {
      {Drive(R"({"name": "f", "attributes": ["@"]})"),
       "readOnly hidden system archive temporary compressed encrypted offline alias",
       [](Computer& computer) { return computer.Find(u"C:\\f")->attributes(); },
       "1 2 4 32 256 2048 16384 4096 1024 "},
      {R"("shares": [{"name": "s", "type": "@"}])", "printQueue device ipc",
       [](Computer& computer) { return computer.FindShare(u"s")->type; }, "1 2 3 "},
      {R"("remoteRegistry": "@")", "allowed denied stopped",
       [](Computer& computer) { return static_cast<std::int64_t>(computer.remote_registry()); },
       "0 1 2 "},
      {R"("accounts": {"users": [{"name": "u", "privilege": "@"}]})", "guest user administrator",
       [](Computer& computer) { return computer.own_accounts().FindUser(u"u")->privilege; },
       "0 1 2 "},
      {R"("services": [{"name": "s", "type": "@"}])",
       "kernelDriver fileSystemDriver adapter recognizerDriver ownProcess shareProcess",
       [](Computer& computer) { return computer.FindService(u"s")->type; }, "1 2 4 8 16 32 "},
      {R"("services": [{"name": "s", "startType": "@"}])", "boot system auto demand disabled",
       [](Computer& computer) { return computer.FindService(u"s")->start_type; }, "0 1 2 3 4 "},
      {R"("services": [{"name": "s", "errorControl": "@"}])", "ignore normal severe critical",
       [](Computer& computer) { return computer.FindService(u"s")->error_control; }, "0 1 2 3 "},
      {R"("services": [{"name": "s", "accepts": ["@"]}])",
       "stop pauseContinue shutdown paramChange netBindChange",
       [](Computer& computer) { return computer.FindService(u"s")->accepts; }, "1 2 4 8 16 "},
      {R"("services": [{"name": "s", "state": "@"}])", "stopped running paused",
       [](Computer& computer) { return computer.FindService(u"s")->StateAt(0); }, "1 4 7 "},
      {R"("eventLogs": [{"name": "l", "records": [{"source": "a", "id": 1, "type": "@"}]}])",
       "success error warning information auditSuccess auditFailure",
       [](Computer& computer) {
         return computer.FindEventLog(u"l")->record(1)[offsetof(EVENTLOGRECORD, EventType)];
       },
       "0 1 2 4 8 16 "},
      {R"("drives": {"C:": {}}, "tasks": [{"name": "t", "flags": ["@"]}])",
       "interactive deleteWhenDone disabled startOnlyIfIdle killOnIdleEnd dontStartIfOnBatteries "
       "killIfGoingOnBatteries runOnlyIfDocked hidden runIfConnectedToInternet restartOnIdleResume",
       [&](Computer& computer) { return task(computer).flags; },
       "1 2 4 16 32 64 128 256 512 1024 2048 "},
      {trigger(R"("type": "weekly", "weekDays": ["@"])"),
       "sunday monday tuesday wednesday thursday friday saturday",
       [&](Computer& computer) { return task(computer).triggers[0].Type[1]; }, "1 2 4 8 16 32 64 "},
      {trigger(R"("type": "monthlyDate", "days": [17], "months": ["@"])"),
       "january february march april may june july august september october november december",
       [&](Computer& computer) { return task(computer).triggers[0].Type[2]; },
       "1 2 4 8 16 32 64 128 256 512 1024 2048 "},
      {trigger(R"("type": "monthlyWeekDay", "weekDays": [], "week": "@")"),
       "first second third fourth last",
       [&](Computer& computer) {
         const TASK_TRIGGER read = task(computer).triggers[0];
         return read.Type[0] << 12 | read.Type[2];
       },
       "8191 12287 16383 20479 24575 "}};
  for (const auto& row : rows) {
    std::istringstream words(row.words);
    std::string values;
    for (std::string word; words >> word;) {
      std::string json = row.json;
      Estate estate = ReadEstate(Described(json.replace(json.find('@'), 1, word)));
      values += std::to_string(row.value(estate.local())) + " ";
    }
    EXPECT_EQ(values, row.values) << row.json;
  }
}

TEST(EstateFile, ReadsTheNumbersOfServicesAndServers) {
  Estate estate = ReadEstate(Described(R"("about": {"type": 1, "users": 2, "disconnect": 3,
      "announce": 4, "announceDelta": 5, "licenses": 6, "version": "5.2"}, "services": [{"name": "s",
      "tag": 1, "exitCode": 2, "specificExitCode": 3, "startTime": 86400000, "stopTime": 5,
      "pauseTime": 6, "continueTime": null, "waitHint": 8, "checkpointTime": 9, "startError": 10}])"));
  const ServerDescription& about = estate.local().description();
  EXPECT_EQ(
      std::tie(about.type, about.users, about.disconnect_minutes, about.announce_seconds,
               about.announce_delta, about.licenses, about.version_major, about.version_minor),
      std::make_tuple(1u, 2u, 3, 4u, 5u, 6u, 5u, 2u));
  const Service& service = *estate.local().FindService(u"s");
  EXPECT_EQ(std::tie(service.tag, service.exit_code, service.specific_exit_code, service.start_time,
                     service.stop_time, service.pause_time, service.continue_time,
                     service.wait_hint, service.checkpoint_time, service.start_error),
            std::make_tuple(1u, 2u, 3u, 86'400'000u, 5u, 6u, kNever, 8u, 9u, 10u));
}

TEST(EstateFile, DescribesTheUsersTokenAndWhatHasADescriptor) {
  Estate estate = ReadEstate(
      Described(Drive(R"x({"name": "in", "children": [{"name": "x"}], "denied": ["security"],
                 "security": "O:LAD:P(A;OICI;FR;;;LG)"})x") +
                    R"x(, "shares": [{"name": "S", "path": "C:\\in", "security": "D:(A;;FR;;;WD)"},
               {"name": "N", "path": "C:\\in", "security": null}, {"name": "Q", "type": "printQueue"}],
             "registry": {"HKLM": {"keys": {"K": {"security": "D:P(A;;KR;;;WD)"}}}},
             "services": [{"name": "Spooler"}], "printers": [{"name": "P", "security": "D:"}])x",
                R"("user": {"name": "u", "sid": "S-1-5-21-7-8-9-1001", "groups": ["S-1-5-32-545"],
                  "privileges": {"SeBackupPrivilege": true, "SeDebugPrivilege": false}},
         "directoryObjects": [{"name": "CN=a", "security": "O:BA"}])"));
  Computer& local = estate.local();
  const SecurityDescriptor& folder = local.Find(u"C:\\in")->security()->descriptor();
  EXPECT_EQ(folder.owner.ToText(), u"S-1-5-21-7-8-9-500");
  EXPECT_EQ(folder.dacl->at(0).sid.ToText(), u"S-1-5-21-7-8-9-501");
  EXPECT_TRUE(local.Find(u"C:\\in")->security_denied());
  EXPECT_EQ(local.Find(u"C:\\in\\x")->security()->descriptor().dacl->at(0).flags, kInherited);
  EXPECT_EQ(local.local_machine().Key(u"K").security()->descriptor().dacl->size(), 1u);
  EXPECT_EQ(local.FindShare(u"s")->security->descriptor().dacl->size(), 1u);
  EXPECT_EQ(local.FindShare(u"n")->security, nullptr);
  EXPECT_EQ(local.FindShare(u"q")->type, kShareTypePrintQueue);
  EXPECT_EQ(local.FindService(u"spooler")->security->descriptor().dacl->size(), 4u);
  EXPECT_TRUE(local.FindPrinter(u"p")->security->descriptor().dacl->empty());
  EXPECT_EQ(estate.FindDirectoryObject(u"cn=A")->security->descriptor().owner, AdministratorsSid());
  const Token& token = estate.token();
  EXPECT_TRUE(token.Is(UsersSid()) && token.Is(EveryoneSid()) && !token.Is(AdministratorsSid()));
  EXPECT_TRUE(token.IsEnabled(Privilege::Backup));
  EXPECT_EQ(token.privileges().size(), 2u);
  EXPECT_TRUE(ReadEstate(Described("")).token().Is(AdministratorsSid()));
}

TEST(EstateFile, NamesThePlaceOfWhatIsWrong) {
  const auto expect = [](const std::string& json, const std::string& place) {
    try {
      ReadEstate(json);
      ADD_FAILURE() << "accepted: " << json;
    } catch (const EstateFileError& error) {
      EXPECT_EQ(error.place(), place) << error.what() << " in " << json;
    }
  };
  expect("", "line 1, column 1");
  expect("{\n  \"computers\": }", "line 2, column 16");
  expect("[]", "/");
  expect("{}", "/");
  expect(R"({"computers": []})", "/computers");
  expect(R"({"computers": {}})", "/computers");
  expect(R"({"computers": [{}]})", "/computers/0");
  expect(R"({"computers": [{"name": 5}]})", "/computers/0/name");
  expect(R"({"computers": [{"name": "A"}, {"name": "a"}]})", "/computers/1/name");
  expect(R"({"computers": [{"name": "A NAME THAT IS TOO LONG"}]})", "/computers/0/name");
  expect(Described(Drive(R"({"name": "a*b"})")), "/computers/0/drives/C:/children/0/name");
  expect(Described(Drive(R"({"name": ".."})")), "/computers/0/drives/C:/children/0/name");
  expect(Described(Drive(R"({"name": "x"}, {"name": "X"})")),
         "/computers/0/drives/C:/children/1/name");
  expect("{\"\xC3(\": 1}", "line 1, column 4");
  expect(R"({"\ud800": 1})", "line 1, column 9");
  expect(R"({"computers": [{"name": "A"}, {"name": "B", "registry": {"HKCU": {}}}]})",
         "/computers/1/registry/HKCU");
  expect(Described("", R"("domains": [{"name": "HARBOUR"}])"), "/computers/0/name");
  expect(Described(R"("role": "primaryController")"), "/computers/0");
  const std::pair<const char*, const char*> tops[] = {
      {R"("clock": "2023-02-28T24:00:00Z")", "/clock"},
      {R"("clock": "2023-02-28T00:60:00Z")", "/clock"},
      {R"("clock": "2023-02-28T00:00:60Z")", "/clock"},
      {R"("directoryObjects": [{}])", "/directoryObjects/0"},
      {R"("user": {"name": "u", "sid": "S-1-5"})", "/user/sid"},
      {R"("user": {"name": "u", "sid": "S-1-5-7", "groups": ["BA"]})", "/user/groups/0"},
      {R"("user": {"name": "u", "sid": "S-1-5-7", "privileges": {"SeX": true}})",
       "/user/privileges/SeX"},
      {R"("timeZone": {"bias": 9999})", "/timeZone/bias"},
      {R"("mappedDrives": {"Z:": "\\\\srv"})", "/mappedDrives/Z:"},
      {R"("clock": "now")", "/clock"},
      {R"("networks": [{"name": "n", "type": 70000}])", "/networks/0/type"},
      {R"("domains": [{"name": "D", "network": "n"}])", "/domains/0/network"},
      {R"("domains": [{"name": "D", "trusts": ["D"]}])", "/domains/0/trusts/0"},
      {R"("domains": [{"name": "D", "users": [{"name": "u", "expires": "2200-01-01T00:00:00Z"}]}])",
       "/domains/0/users/0/expires"},
      {R"("domains": [{"name": "D", "groups": [{"name": "Guest"}]}])", "/domains/0/groups/0/name"},
      {R"("domains": [{"name": "D", "groups": [{"name": "g", "members": ["u"]}]}])",
       "/domains/0/groups/0/members/0"},
      {R"("hosts": {"h": ["10.0.0.256"]})", "/hosts/h/0"}};
  for (const auto& [members, place] : tops) expect(Described("", members), place);
  const std::pair<const char*, const char*> computers[] = {
      {R"("eventLogs": [{"name": "a\\b"}])", "/eventLogs/0/name"},
      {R"("a/b~c": 1)", "/a~1b~0c"},
      {R"("drives": {"CC": {}})", "/drives/CC"},
      {R"("shares": [{"name": "x", "path": "C:\\none"}])", "/shares/0/path"},
      {R"("drives": {"C:": {"total": 10, "free": 11}})", "/drives/C:/free"},
      {R"("drives": {"C:": {"freeToCaller": 17179869185}})", "/drives/C:/freeToCaller"},
      {R"("drives": {"C:": {"label": "a label of more than 32 characters"}})", "/drives/C:/label"},
      {R"("drives": {"C:": {"serial": 4294967296}})", "/drives/C:/serial"},
      {R"("registry": {"HKLM": {"values": {"v": true}}})", "/registry/HKLM/values/v"},
      {R"("registry": {"HKLM": {"values": {"v": 1, "V": 2}}})", "/registry/HKLM/values/v"},
      {R"("registry": {"HKLM": {"values": {"v": 4294967296}}})", "/registry/HKLM/values/v"},
      {R"("drives": {"C:": {"security": "D"}})", "/drives/C:/security"},
      {R"("shares": [{"name": "x"}])", "/shares/0"},
      {R"("services": [{"name": "x"}, {"name": "X"}])", "/services/1/name"},
      {R"("services": [{"name": "x", "type": "adapter", "interactive": true}])",
       "/services/0/interactive"},
      {R"("services": [{"name": "x", "startTime": -1}])", "/services/0/startTime"},
      {R"("services": [{"name": "x", "startTime": 86400001}])", "/services/0/startTime"},
      {R"("accounts": {"users": [{"name": "A"}], "localGroups": [{"name": "a"}]})",
       "/accounts/localGroups/0/name"},
      {R"("printers": [{"name": ""}])", "/printers/0/name"},
      {R"("memberOf": "D")", "/memberOf"},
      {R"("about": {"version": "ten"})", "/about/version"},
      {R"("rights": {"SeX": []})", "/rights/SeX"},
      {R"("rights": {"SeTcbPrivilege": ["D\\u"]})", "/rights/SeTcbPrivilege/0"},
      {R"("accounts": {"users": [{"name": "u", "number": 500}]})", "/accounts/users/0/name"}};
  for (const auto& [members, place] : computers) {
    expect(Described(members), std::string("/computers/0") + place);
  }
  const std::pair<const char*, const char*> files[] = {
      {R"("from": "estate.json")", "/from"},
      {R"("size": "big")", "/size"},
      {R"("size": -1)", "/size"},
      {R"("size": 18446744073709551615)", "/size"},
      {R"("size": 1.5)", "/size"},
      {R"("text": "long", "size": 1)", "/size"},
      {R"("hex": "0")", "/hex"},
      {R"("children": [], "locked": true)", "/locked"},
      {R"("attributes": ["pink"])", "/attributes/0"},
      {R"("created": "2023-02-29T00:00:00Z")", "/created"},
      {R"("created": "2023-02-28T00:00:00.Z")", "/created"},
      {R"("messages": {"one": "1"})", "/messages/one"},
      {R"("version": {})", "/version"},
      {R"("version": {"file": "1.70000"})", "/version/file"},
      {R"("version": {"file": "1.2.3.4.5"})", "/version/file"},
      {R"("version": {"file": "1", "strings": {"0409": {}}})", "/version"},
      {R"("version": {"file": "1", "hex": "00"})", "/version/hex"},
      {R"x("security": "D:(A;;FA;;;ZZ)")x", "/security"},
      {R"("security": null)", "/security"}};
  for (const auto& [members, place] : files) {
    expect(Described(Drive(std::string(R"({"name": "x", )") + members + "}")),
           std::string("/computers/0/drives/C:/children/0") + place);
  }
  std::string deep;
  for (int depth = 0; depth < 300; ++depth) deep += R"({"name": "d", "children": [)";
  for (int depth = 0; depth < 300; ++depth) deep += "]}";
  EXPECT_THROW(ReadEstate(Described(Drive(deep))), EstateFileError) << "nested too deeply";
  EXPECT_THROW(ReadEstateFile("/no such file"), EstateFileError);
}

TEST(EstateFile, DescribesVolumesAndWhatSharesAsk) {
  Estate estate = ReadEstate(Described(
      R"("discDevice": false, "drives": {
        "C:": {"label": "System", "fileSystem": "ReFS", "serial": 4294967295, "flags": 7,
               "maximumComponentLength": 31, "total": 1000, "free": 900, "freeToCaller": 80,
               "children": [{"name": "Pay", "children": []}]},
        "d:": {"type": "cdrom", "ready": false}, "E:": {"total": 5}},
      "shares": [{"name": "Pay", "path": "C:\\Pay", "user": "clerk", "password": "p"},
                 {"name": "Odd", "path": "C:\\Pay", "providerFails": true}])"));
  Computer& local = estate.local();
  const Volume& c = local.volume(u'c');
  EXPECT_EQ(c.label + c.file_system, u"SystemReFS");
  EXPECT_EQ((std::vector<std::uint64_t>{c.serial, c.flags, c.maximum_component_length, c.total,
                                        c.free, c.free_to_caller.value_or(0)}),
            (std::vector<std::uint64_t>{4294967295, 7, 31, 1000, 900, 80}));
  EXPECT_FALSE(local.volume(u'D').ready);
  EXPECT_EQ(local.volume(u'D').file_system, u"CDFS");
  EXPECT_EQ(local.volume(u'E').free, 5u);
  EXPECT_FALSE(local.has_disc_device());
  const Share& pay = *local.FindShare(u"pay");
  EXPECT_EQ(*pay.user + *pay.password, u"clerkp");
  EXPECT_EQ(pay.drive, &local.drives().at(u'C'));
  EXPECT_TRUE(local.FindShare(u"odd")->provider_fails);
}

// Walks an estate along its schema. Wherever this says which fields or words there are, one that
// isn't there is put in its place, and the reader's complaint must list the same ones.
class SchemaWalk {
 public:
  using Json = nlohmann::json;

  SchemaWalk(const Json& schema, Json& estate) : schema_(schema), estate_(estate) {}

  void Follow(const Json& rule, Json& value) {
    if (rule.contains("$ref")) {
      const std::string name = rule["$ref"].get<std::string>().substr(std::strlen("#/$defs/"));
      seen.insert(name);
      return Follow(schema_["$defs"][name], value);
    }
    if (rule.contains("oneOf")) {
      for (const Json& choice : rule["oneOf"]) {
        if (Fits(choice, value)) Follow(choice, value);
      }
    }
    // Each rule is put to the reader once.
    const bool is_new = asked_.insert(&rule).second;
    if (is_new && rule.contains("enum")) {
      const Json before = std::exchange(value, "?");
      ExpectListed("must be one of ", rule["enum"].get<std::set<std::string>>());
      value = before;
    }
    if (rule.contains("properties")) {
      std::set<std::string> fields;
      for (const auto& [name, field] : rule["properties"].items()) {
        fields.insert(name);
        if (value.contains(name)) Follow(field, value[name]);
      }
      if (!is_new) return;
      EXPECT_EQ(rule["additionalProperties"], false) << *fields.begin();
      value["?"] = 0;
      ExpectListed("unknown field; there are ", fields);
      value.erase("?");
    } else if (rule.contains("additionalProperties")) {
      for (auto& [name, member] : value.items()) Follow(rule["additionalProperties"], member);
    }
    if (rule.contains("items")) {
      for (Json& element : value) Follow(rule["items"], element);
    }
  }

  std::set<std::string> seen;

 private:
  bool Fits(const Json& rule, const Json& value) const {
    if (rule.contains("$ref"))
      return Fits(schema_.at(Json::json_pointer(rule["$ref"].get<std::string>().substr(1))), value);
    const std::string type = rule["type"];
    return type == value.type_name() || (type == "integer" && value.is_number());
  }

  void ExpectListed(const std::string& introduction, const std::set<std::string>& names) const {
    try {
      const std::filesystem::path folder(VELDMARK_SOURCE_DIR "/examples");
      ReadEstate(estate_.dump(), {}, &folder);
      ADD_FAILURE() << introduction << *names.begin();
    } catch (const EstateFileError& error) {
      const std::string text = error.what();
      const std::size_t start = text.find(introduction);
      ASSERT_NE(start, std::string::npos) << text;
      std::istringstream list(text.substr(start + introduction.size()));
      std::set<std::string> told;
      for (std::string name; std::getline(list >> std::ws, name, ',');) told.insert(name);
      EXPECT_EQ(told, names) << text;
    }
  }

  const Json& schema_;
  Json& estate_;
  std::set<const Json*> asked_;
};

TEST(EstateFile, IsWhatItsSchemaSays) {
  const auto load = [](const char* name) {
    std::ifstream file(name);
    return nlohmann::json::parse(file);
  };
  const auto schema = load(VELDMARK_SOURCE_DIR "/docs/estate.schema.json");
  auto estate = load(VELDMARK_SOURCE_DIR "/examples/estate.json");
  SchemaWalk walk(schema, estate);
  walk.Follow(schema, estate);
  for (const auto& [name, rule] : schema["$defs"].items()) {
    const bool tells = rule.contains("properties") || rule.contains("items");
    EXPECT_TRUE(!tells || walk.seen.contains(name)) << "the example has no " << name;
  }
}

TEST(EstateFile, TakesContentFromFilesBesideIt) {
  const std::string folder = testing::TempDir();
  std::ofstream(folder + "content.bin", std::ios::binary) << "abc";
  const std::string name = folder + "estate with content.json";
  std::ofstream(name) << Described(Drive(R"({"name": "x", "from": "content.bin"})"));
  EXPECT_EQ(ReadEstateFile(name).local().Find(u"C:\\x")->size(), 3u);
  std::ofstream(name) << Described(Drive(R"({"name": "x", "from": "."})"));
  EXPECT_THROW(ReadEstateFile(name), EstateFileError);
}

}  // namespace
}  // namespace veldmark::simulated
