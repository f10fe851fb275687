#include "registry/CRegSettings.h"

#include <gtest/gtest.h>

#include <functional>

#include "apartment/Errors.h"
#include "platform/operations/ErrorCodes.h"
#include "support/ApartmentFixture.h"
#include "support/FaultSweep.h"

namespace veldmark {
namespace {

constexpr auto kLocalMachine = static_cast<std::int32_t>(0x80000002u);
constexpr auto kUsers = static_cast<std::int32_t>(0x80000003u);

/// A local computer and a remote one with settings, seen through a store on the local machine's
/// product key.
class SettingsWorld : public SimulatedApartment {
 public:
  SettingsWorld() {
    Furnish(local().local_machine(), u"here");
    Furnish(estate().current_user(), u"mine");
    Furnish(estate().AddComputer(u"HARBOUR").local_machine(), u"there");
    settings.HKeyRoot = kLocalMachine;
    settings.Path = u"Software\\Product";
  }

  static void Furnish(simulated::RegistryNode& root, TextView place) {
    simulated::RegistryNode& config = root.Key(u"Software\\Product\\Config");
    config.String(u"Name", place).Dword(u"Number", 0x00420041).String(u"", u"unnamed");
    config.Key(u"Below");
    root.Key(u"Software\\Product").String(u"Top", u"level");
  }

  simulated::RegistryNode& Config() {
    return local().local_machine().Key(u"Software\\Product\\Config");
  }
  // The raw bytes of a value below the local section; empty if it isn't there.
  Text Stored(TextView name) {
    const auto* value = Config().FindValue(name);
    if (!value) return {};
    Text bytes;
    for (const std::uint8_t byte : value->data) bytes += static_cast<char16_t>(byte);
    return bytes;
  }

  CRegSettings settings;
};

class Settings : public testing::Test, protected SettingsWorld {
 protected:
  void TearDown() override { EXPECT_EQ(ledger().Report(), ""); }

  // What an operation raises, as "number text"; empty if it doesn't.
  static Text ErrorOf(const std::function<void()>& operation) {
    try {
      operation();
      return {};
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.source, u"Veldmark2.CRegSettings");
      EXPECT_EQ(Err().Number(), error.number);
      return ToText(std::int64_t{error.number}) + u" " + error.description;
    }
  }
};

constexpr TextView kConnecting = u" Error connecting to remote registry";

TEST_F(Settings, TextsAreReadWithoutTheirLastUnitWhateverTheValueIs) {
  using Bytes = std::vector<std::uint8_t>;
  const struct {
    DWORD type;
    Bytes data;
    Text text;
  } cases[] = {{kRegSz, {'a', 0, 'b', 0, 0, 0}, u"ab"},
               {kRegSz, {'a', 0, 'b', 0}, u"a"},  // without a NUL it loses its end
               {kRegDword, {0x41, 0, 0x42, 0}, u"A"},
               {kRegMultiSz, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}, Text(u"a\0b\0", 4)},
               {kRegBinary, {1, 2, 3, 4, 5}, u"\x0201"},
               {kRegBinary, {1, 2, 3}, u""},
               {kRegBinary, {1, 2}, u""},
               {kRegBinary, {1}, u""},
               {kRegSz, {}, u"default"},
               {kRegBinary, Bytes(200'001, 0x20), Text(99'999, u'\x2020')}};
  for (const auto& c : cases) {
    Config().Data(u"Value", c.type, c.data);
    EXPECT_EQ(settings.GetString(u"Config", u"Value", u"default"), c.text) << c.data.size();
  }
}

TEST_F(Settings, NumbersAreReadFromUpToFourBytes) {
  const struct {
    std::vector<std::uint8_t> data;
    std::int32_t number;
  } cases[] = {{{1, 2, 3, 0x84}, static_cast<std::int32_t>(0x84030201u)},
               {{7, 1}, 0x107},
               {{9}, 9},
               {{}, -5},
               {{1, 2, 3, 4, 5}, -5}};
  for (const auto& c : cases) {
    Config().Data(u"Value", kRegBinary, c.data);
    EXPECT_EQ(settings.GetDWord(u"Config", u"Value", -5), c.number) << c.data.size();
  }
}

TEST_F(Settings, SectionsAndKeysNameKeysAndValues) {
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"here");
  EXPECT_EQ(settings.GetString(u"Config", u"", u"-"), u"unnamed");
  EXPECT_EQ(settings.GetString(u"Config", u"*", u"-"), u"unnamed");
  EXPECT_EQ(settings.GetString(u"", u"Top", u"-"), u"level");
  EXPECT_EQ(settings.GetString(u"Config", u"Missing", u"-"), u"-");
  EXPECT_EQ(settings.GetString(u"Nowhere", u"Name", u"-"), u"-");
  EXPECT_EQ(settings.GetDWord(u"Nowhere", u"Name", 3), 3);
  EXPECT_EQ(settings.GetDWord(u"Config", u"Missing", 3), 3);

  const CRegSettings fresh;
  EXPECT_EQ(static_cast<std::uint32_t>(fresh.HKeyRoot), 0x80000001u);
  EXPECT_EQ(fresh.Path, u"Software");
}

TEST_F(Settings, AnotherComputerIsAskedOnlyForItsMachineAndItsUsers) {
  settings.MachineName = u"HARBOUR";
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"there");
  EXPECT_EQ(settings.GetDWord(u"Config", u"Number", 0), 0x00420041);
  EXPECT_TRUE(settings.SaveString(u"Config", u"Name", u"changed"));
  EXPECT_TRUE(settings.SaveDWord(u"New\\Section", u"Number", 0));
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"changed");
  EXPECT_EQ(settings.GetDWord(u"New\\Section", u"Number", 1), 0);
  EXPECT_EQ(Stored(u"Name").substr(0, 1), u"h");
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u"Name"));  // always the local one
  EXPECT_EQ(Stored(u"Name"), u"");
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"changed");

  settings.HKeyRoot = static_cast<std::int32_t>(0x80000001u);
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"mine");
  settings.HKeyRoot = kUsers;
  EXPECT_EQ(ErrorOf([&] { settings.GetString(u"Config", u"Name", u"-"); }),
            Text(u"2").append(kConnecting));
}

TEST_F(Settings, EveryStatusIsRaisedOrLeftToTheDefaultAsItsOperationSays) {
  const Text denied = u"5 Access is denied.";
  const Text other = u"13 The data is invalid.";
  const auto connecting = [](TextView number) { return Text(number).append(kConnecting); };
  const struct {
    const char* failing;
    DWORD status;
    bool remote;
    Text get_string, get_dword;  // the errors; empty where the default comes back
  } reads[] = {{"RegConnectRegistryW", 53, true, connecting(u"53"), connecting(u"53")},
               {"RegOpenKeyExW", 2, false, u"", u""},
               {"RegOpenKeyExW", 5, false, denied, denied},
               {"RegOpenKeyExW", 2, true, connecting(u"2"), u""},
               {"RegOpenKeyExW", 5, true, connecting(u"5"), connecting(u"5")},
               {"RegOpenKeyExW", 13, true, connecting(u"13"), other},
               {"RegQueryValueExW", 2, true, u"", u""},
               {"RegQueryValueExW", 5, false, denied, denied},
               {"RegQueryValueExW", 13, true, connecting(u"13"), other}};
  for (const auto& c : reads) {
    SCOPED_TRACE(c.failing + std::to_string(c.status) + (c.remote ? " remote" : ""));
    settings.MachineName = c.remote ? u"HARBOUR" : u"";
    faults().FailEvery(c.failing, c.status);
    Text text = u"default";
    EXPECT_EQ(ErrorOf([&] { text = settings.GetString(u"Config", u"Name", text); }), c.get_string);
    EXPECT_EQ(text, u"default");
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(settings.GetDWord(u"Config", u"Number", 3), 3); }),
              c.get_dword);
    faults().Clear();
  }

  // The size is told, but the data can't be read any more.
  faults().FailNthOf("RegQueryValueExW", 2, kErrorMoreData);
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"-");

  const struct {
    const char* failing;
    DWORD status;
    bool remote;
    Text save_string, save_dword;
  } writes[] = {{"RegConnectRegistryW", 53, true, connecting(u"53"), connecting(u"53")},
                {"RegCreateKeyExW", 5, false, denied, denied},
                {"RegCreateKeyExW", 5, true, connecting(u"5"), connecting(u"5")},
                {"RegCreateKeyExW", 13, true, other, connecting(u"13")},
                {"RegSetValueExW", 5, true, denied, denied}};
  for (const auto& c : writes) {
    SCOPED_TRACE(c.failing + std::to_string(c.status) + (c.remote ? " remote" : ""));
    settings.MachineName = c.remote ? u"HARBOUR" : u"";
    faults().FailEvery(c.failing, c.status);
    EXPECT_EQ(ErrorOf([&] { settings.SaveString(u"Config", u"Name", u"x"); }), c.save_string);
    EXPECT_EQ(ErrorOf([&] { settings.SaveDWord(u"Config", u"Name", 1); }), c.save_dword);
    faults().Clear();
  }
}

TEST_F(Settings, SavingAnEmptyTextRemovesTheValue) {
  EXPECT_TRUE(settings.SaveString(u"Fresh", u"Name", u"value"));
  EXPECT_EQ(settings.GetString(u"Fresh", u"Name", u"-"), u"value");
  EXPECT_TRUE(settings.SaveString(u"Fresh", u"Name", u""));
  EXPECT_EQ(settings.GetString(u"Fresh", u"Name", u"-"), u"-");
  EXPECT_TRUE(settings.SaveString(u"Fresh", u"Name", u""));
  EXPECT_TRUE(settings.SaveString(u"Config", u"*", u""));
  EXPECT_EQ(settings.GetString(u"Config", u"", u"-"), u"-");
  faults().FailEvery("RegDeleteValueW", kErrorAccessDenied);
  EXPECT_EQ(ErrorOf([&] { settings.SaveString(u"Config", u"Name", u""); }), u"5 Access is denied.");
  EXPECT_EQ(Stored(u"Name").substr(0, 1), u"h");
}

TEST_F(Settings, ValuesAndSectionsAreDeletedOrRefused) {
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u"Number"));
  EXPECT_EQ(ErrorOf([&] { settings.DeleteSetting(u"Config", u"Number"); }).substr(0, 2), u"2 ");
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u"*"));
  EXPECT_FALSE(settings.DeleteSetting(u"Nowhere", u"Number"));
  EXPECT_EQ(ErrorOf([&] { settings.DeleteSetting(u"Config", u""); }), u"5 Access is denied.");
  EXPECT_TRUE(settings.DeleteSetting(u"Config\\Below", u""));
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u""));
  EXPECT_EQ(local().local_machine().Key(u"Software\\Product").Find(u"Config"), nullptr);
  EXPECT_EQ(ErrorOf([&] { settings.DeleteSetting(u"Config", u""); }).substr(0, 2), u"2 ");
  settings.Path = u"Software\\Elsewhere";
  EXPECT_FALSE(settings.DeleteSetting(u"Config", u""));
}

TEST_F(Settings, AllTextsOfASectionComeAsATableCutByTheirBytes) {
  Config().Data(u"Odd", kRegSz, {'x', 0, 'y'}).Data(u"None", kRegSz, {});
  Config().String(u"Expand", u"%a%", kRegExpandSz);
  const Variant all = settings.GetAllSettings(u"Config");
  const auto* table = all.If<TextArray>();
  ASSERT_NE(table, nullptr);
  const std::pair<Text, Text> expected[] = {{u"Name", Text(u"here\0\0\0\0\0", 9)},
                                            {u"", Text(u"unnamed\0\0\0\0\0\0\0\0", 15)},
                                            {u"Odd", u"xy"},
                                            {u"None", u""}};
  EXPECT_EQ(table->bounds, (std::vector<Bound>{{0, 4}, {0, 2}}));
  for (std::uint32_t row = 0; row < 4; ++row) {
    EXPECT_EQ(table->At(row, 0), expected[row].first);
    EXPECT_EQ(table->At(row, 1), expected[row].second);
  }
  EXPECT_EQ(settings.GetAllSettings(u"Nowhere"), Variant());
  EXPECT_EQ(settings.GetAllSettings(u"Config\\Below"), Variant());
  faults().FailEvery("RegQueryInfoKeyW", kErrorAccessDenied);
  EXPECT_EQ(settings.GetAllSettings(u"Config"), Variant());
}

TEST(SettingsFaults, EveryOperationReportsOrSwallowsAFailedCallAndClosesItsKeys) {
  // False where an operation fell back on its default.
  using Operation = std::function<bool(CRegSettings&)>;
  const std::set<std::string> none;
  const std::pair<std::set<std::string>, Operation> operations[] = {
      {none, [](auto& s) { return s.GetString(u"Config", u"Name", u"-") != u"-"; }},
      {none, [](auto& s) { return s.GetDWord(u"Config", u"Number", 3) != 3; }},
      {none, [](auto& s) { return s.SaveString(u"Config", u"Name", u"x"); }},
      {none, [](auto& s) { return s.SaveString(u"Config", u"Name", u""); }},
      {none, [](auto& s) { return s.SaveDWord(u"Config", u"Number", 1); }},
      {{"RegOpenKeyExW"}, [](auto& s) { return s.DeleteSetting(u"Config", u"Name"); }},
      {{"RegOpenKeyExW"}, [](auto& s) { return s.DeleteSetting(u"Config\\Below", u""); }},
      {{"RegOpenKeyExW", "RegQueryInfoKeyW", "RegEnumValueW"},
       [](auto& s) { return s.GetAllSettings(u"Config") != Variant(); }}};
  for (const TextView machine : {u"", u"HARBOUR"}) {
    for (auto [swallowed, operation] : operations) {
      swallowed.insert("RegCloseKey");
      SweepFaults<SettingsWorld>(
          swallowed,
          [&](SettingsWorld& world) {
            world.settings.MachineName = machine;
            // Only the second read of a value, that of its data, may fail without a word.
            if (!operation(world.settings) && world.journal().Count("RegQueryValueExW") == 2) {
              Raise(1117);
            }
          },
          [&](SettingsWorld& world, const std::string& failed, bool) {
            if (failed == "RegCloseKey") return;
            EXPECT_EQ(world.Stored(u"Name"), Text(u"h\0e\0r\0e\0\0\0", 10));
            EXPECT_EQ(world.Stored(u"Number"), Text(u"A\0B\0", 4));
          });
    }
  }
}

}  // namespace
}  // namespace veldmark
