#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "automation/Conversion.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "registry/CRegKey.h"
#include "registry/CRegKeys.h"
#include "registry/CRegSettings.h"
#include "registry/CRegValue.h"
#include "registry/CRegValues.h"
#include "registry/CRegistry.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"
#include "support/MixedPlatform.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

using Data = std::vector<std::uint8_t>;

Data BytesOf(TextView text) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  return Data(bytes, bytes + text.size() * sizeof(char16_t));
}

Variant ByteVariant(Data bytes) { return ByteArray(std::move(bytes)); }

const std::vector<TextView> kOfKey = {u"Name", u"FullName", u"MachineName", u"DefaultValue"};

/// The same trees below `Software\App` and `Software\Product` here and on SRV, where the texts
/// differ, with settings in the latter.
class RegistryWorld : public SimulatedApartment {
 public:
  RegistryWorld() {
    Furnish(local(), u"here");
    Furnish(estate().AddComputer(u"SRV"), u"there");
    estate().current_user().Key(u"Mine").String(u"", u"own");
    FurnishSettings(estate().current_user(), u"mine");
    settings.HKeyRoot = HKEY_LOCAL_MACHINE;
    settings.Path = u"Software\\Product";
  }

  static void Furnish(simulated::Computer& computer, TextView text) {
    simulated::RegistryNode& root = computer.local_machine();
    const Text drive = text == u"there" ? u"D:" : u"C:";
    root.Key(u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion")
        .String(u"SystemRoot", drive + u"\\Win");
    root.Key(u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion")
        .String(u"ProgramFilesDir", drive + u"\\Programs")
        .String(u"CommonFilesDir", drive + u"\\Common");
    simulated::RegistryNode& app = root.Key(u"Software\\App");
    app.String(u"", text).Dword(u"Count", 7).String(u"Path", u"%SystemRoot%\\x", kRegExpandSz);
    app.Key(u"One").String(u"", text);
    app.Key(u"Two").Dword(u"", 42);
    app.Key(u"Three").Data(u"", kRegBinary, {1});
    app.Security(u"O:BAG:SYD:P(A;;GA;;;BA)(OA;;RP;00000001-0002-0003-0405-060708090A0B;;AU)");
    FurnishSettings(root, text);
  }
  static void FurnishSettings(simulated::RegistryNode& root, TextView text) {
    root.Key(u"Software\\Product").String(u"Top", u"level");
    simulated::RegistryNode& config = root.Key(u"Software\\Product\\Config");
    config.String(u"Name", text).Dword(u"Number", 0x00420041).String(u"", u"unnamed");
    config.Key(u"Below");
  }

  simulated::RegistryNode& App(TextView computer = u"LOCALHOST") {
    return estate().FindComputer(computer)->local_machine().Key(u"Software\\App");
  }
  simulated::RegistryNode& Config() {
    return local().local_machine().Key(u"Software\\Product\\Config");
  }
  Ref<CRegKey> Key(TextView path = u"Software\\App") {
    return registry.GetRegKey(HKEY_LOCAL_MACHINE, Text(path));
  }

  CRegistry registry;
  CRegSettings settings;
};

class RegistryTest : public TestIn<RegistryWorld> {
 protected:
  Variant Value(TextView name, RegValueTypes type = REG_NONE) {
    return registry.GetValue(HKEY_LOCAL_MACHINE, u"Software\\App", Text(name), type);
  }
};

TEST_F(RegistryTest, KeysAreFoundByTheirPathBelowARoot) {
  const struct {
    HKEY_VALUES root;
    TextView asked;
    std::string found;  // or the error
    std::string computer = "";
  } cases[] = {{HKEY_LOCAL_MACHINE, u"Software\\App", "App|Software\\App||here"},
               {HKEY_LOCAL_MACHINE, u"Software\\App\\", "App|Software\\App||here"},
               {HKEY_LOCAL_MACHINE, u"Software\\App\\\\", "|Software\\App\\||here"},
               {HKEY_LOCAL_MACHINE, u"SOFTWARE", "SOFTWARE|SOFTWARE||"},
               {HKEY_LOCAL_MACHINE, u"", "|||"},
               {HKEY_LOCAL_MACHINE, u"*", "|||"},
               {HKEY_CURRENT_USER, u"Mine", "Mine|Mine||own"},
               {HKEY_LOCAL_MACHINE, u"Software\\App\\Two", "Two|Software\\App\\Two||42"},
               {HKEY_LOCAL_MACHINE, u"Software\\App\\Three", "Three|Software\\App\\Three||"},
               {HKEY_DYN_DATA, u"", "error 6"},
               {HKEY_LOCAL_MACHINE, u"Software\\App", "App|Software\\App|\\\\SRV|there", "SRV"},
               {HKEY_LOCAL_MACHINE, u"Software\\App", "App|Software\\App|\\\\SRV|there", "\\\\SRV"},
               {HKEY_LOCAL_MACHINE, u"Software", "error 53", "NOBODY"},
               {HKEY_USERS, u"*", "||\\\\SRV|", "SRV"},
               {HKEY_CURRENT_CONFIG, u"*", "||\\\\SRV|", "SRV"},
               {HKEY_DYN_DATA, u"*", "error 6", "SRV"},
               {HKEY_CURRENT_USER, u"Mine", "error 2", "SRV"},
               {HKEY_CLASSES_ROOT, u"", "error 2", "SRV"},
               // This computer's own name is another one with the backslashes before it.
               {HKEY_CURRENT_USER, u"Mine", "error 2", "LOCALHOST"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.asked) + " on " + c.computer);
    CRegistry asked;
    if (!c.computer.empty()) asked.ConnectToRemoteRegistry(FromUtf8(c.computer));
    EXPECT_EQ(OutcomeOf([&] { return ValuesOf(*asked.GetRegKey(c.root, Text(c.asked)), kOfKey); }),
              c.found);
  }
  // Without them it is the same computer, and the user's root is reached.
  const auto mine = registry.GetRegKey(HKEY_CURRENT_USER, u"Mine");
  mine->MachineName = u"LOCALHOST";
  EXPECT_EQ(mine->GetValue(u"", REG_SZ), Variant(u"own"));
  mine->PutDefaultValue(Variant(12));
  EXPECT_EQ(mine->GetDefaultValue(), Variant(u"12"));
  EXPECT_EQ(FailureOf([&] { registry.GetRegKey(HKEY_LOCAL_MACHINE, u"None"); }),
            u"2|Veldmark2.CRegistry|" + GetAPIErrorText(2));
}

TEST_F(RegistryTest, ValuesReadByTheTypeThatTheyHaveWhateverTheirSize) {
  const TextView two(u"a\0b", 3);
  const Data number = {0x78, 0x56, 0x34, 0x12};
  const struct {
    int type;
    Data data;
    Variant asked, listed;
  } cases[] = {
      {REG_SZ, BytesOf({u"ab\0", 3}), u"ab", u"ab"},
      {REG_SZ, BytesOf(u"ab"), u"ab", u"ab"},
      {REG_SZ, BytesOf({u"a\0b\0\0c", 6}), two, u"a"},
      {REG_SZ, BytesOf({u"\0a", 2}), TextView(u"\0a", 2), u""},
      {REG_SZ, {'a', 0, 'b'}, u"ab", u"ab"},
      {REG_SZ, {}, u"", u""},
      {REG_SZ, BytesOf(u"%windir%|%none%|%"), u"C:\\Windows|%none%|%", u"%windir%|%none%|%"},
      {REG_EXPAND_SZ, BytesOf({u"%windir%\0x", 10}), u"C:\\Windows", u"C:\\Windows"},
      {REG_EXPAND_SZ, {'%', 0, 'w'}, u"%w", u"%w"},
      {REG_MULTI_SZ, BytesOf({u"a\0b\0\0", 5}), two, two},
      {REG_MULTI_SZ, BytesOf(two), two, two},
      {REG_MULTI_SZ, BytesOf({u"%windir%\0b\0\0", 12}), Text(u"C:\\Windows\0b", 12),
       TextView(u"%windir%\0b", 10)},
      {REG_MULTI_SZ, {'a', 0, 0, 0, 'b'}, two, two},
      {REG_MULTI_SZ, BytesOf({u"\0", 1}), u"", u""},
      {REG_BINARY, {1, 2, 3}, ByteVariant({1, 2, 3}), ByteVariant({1, 2, 3})},
      {REG_BINARY, {}, ByteVariant({}), ByteVariant({})},
      {REG_DWORD, number, 0x12345678, 0x12345678},
      {REG_DWORD, {0x78, 0x56, 0x34}, 0x345678, 0x345678},
      {REG_DWORD, {0x78, 0x56, 0x34, 0xFF, 9, 9}, -13347208, -13347208},
      {REG_DWORD, {}, 0, 0},
      {REG_DWORD_BIG_ENDIAN, number, 0x78563412, 0x78563412},
      {REG_DWORD_BIG_ENDIAN, {0x78}, 0x78000000, 0x78000000},
      {REG_LINK, BytesOf(u"a"), {}, {}},
      {-1, number, {}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE("type " + std::to_string(c.type) + ", " + std::to_string(c.data.size()));
    App().Data(u"Value", static_cast<DWORD>(c.type), c.data);
    EXPECT_EQ(Value(u"value", REG_BINARY), c.asked);
    const auto key = Key();
    EXPECT_EQ(key->GetValue(u"VALUE", REG_DWORD), c.asked);
    const auto listed = key->GetValues()->ItemByKey(u"Value");
    EXPECT_EQ(listed->Value, c.listed);
    EXPECT_EQ(listed->ValueType, c.type);
    EXPECT_EQ(listed->ParentKey, u"Software\\App");
  }
  EXPECT_EQ(Value(u""), Variant(u"here"));
  EXPECT_EQ(ErrorOf([&] { Value(u"None"); }), 2);
  // Data that doesn't fit, and needs no more room all the same, isn't asked for for ever.
  faults().FailNthOf("RegQueryValueExW", 2, kErrorMoreData);
  EXPECT_EQ(ErrorOf([&] { Value(u"Count"); }), 234);
}

/// The estate's registry, but that once something happens behind a query.
class GrowingRegistry final : public simulated::SimulatedRegistry {
 public:
  using SimulatedRegistry::SimulatedRegistry;
  LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                           DWORD* size) override {
    const LSTATUS status =
        SimulatedRegistry::RegQueryValueExW(key, name, reserved, type, data, size);
    if (grow) std::exchange(grow, {})();
    return status;
  }
  std::function<void()> grow;
};

TEST(GrowingValues, AreReadAgainWithTheirNewSize) {
  MixedWorld<RegistryWorld, GrowingRegistry> world;
  const Text grown(100, u'x');
  world.own.grow = [&] { world.App().String(u"", grown); };
  EXPECT_EQ(world.registry.GetValue(HKEY_LOCAL_MACHINE, u"Software\\App", u"", REG_SZ),
            Variant(grown));
}

TEST_F(RegistryTest, ListsHoldWhatIsThereAndSayWhatTheyFind) {
  std::string said;
  Log(said);
  const auto app = Key();
  const auto keys = app->GetSubKeys();
  EXPECT_EQ(
      ListOf(keys, kOfKey),
      "One|Software\\App\\One||here, Three|Software\\App\\Three||, Two|Software\\App\\Two||42");
  EXPECT_EQ(app->GetValues()->Count(), 3);
  EXPECT_EQ(said,
            "Retrieving Registry Keys...\nRetrieved Registry Key \"One\"\n"
            "Retrieved Registry Key \"Three\"\nRetrieved Registry Key \"Two\"\n"
            "Retrieving Registry Values...\nRetrieved Registry Value \"\"\n"
            "Retrieved Registry Value \"Count\"\nRetrieved Registry Value \"Path\"\n");
  EXPECT_EQ(keys->ItemByKey(u"One")->GetSubKeys()->Count(), 0);
  EXPECT_EQ(Key(u"Software")->GetValues()->Count(), 0);

  registry.ConnectToRemoteRegistry(u"SRV");
  EXPECT_EQ(ValuesOf(*registry.GetRegKeys(HKEY_LOCAL_MACHINE)->ItemByKey(u"SOFTWARE"), kOfKey),
            "SOFTWARE|SOFTWARE|\\\\SRV|");
  journal().Clear();
  Key(u"Software\\App\\One")->GetSubKeys();
  EXPECT_EQ(Called({"RegConnectRegistryW"}), "\\\\SRV;\\\\SRV;\\\\SRV;")
      << "the key, its default value, and the list have one each";
  RegistryKey key(platform.registry);
  RegistryKey root(platform.registry);
  Engine().OpenRegKey(HKEY_LOCAL_MACHINE, u"Software\\App", u"SRV", 0, key, root);
  EXPECT_EQ(platform.registry.RegSetValueExW(key.Get(), u"x", 0, kRegSz, nullptr, 0), 0) << "all";
  EXPECT_EQ(Engine().GetRegString(key.Get(), u"x"), u"");
  EXPECT_EQ(ErrorOf([&] { Engine().GetRegString(key.Get(), u""); }), 234) << "asked without room";
  EXPECT_EQ(ErrorOf([&] { Engine().GetRegString(key.Get(), u"y"); }), 2);
  Engine().CloseRegKey(key, root);
  EXPECT_FALSE(key || root);
}

TEST_F(RegistryTest, ValuesAreStoredAsTheTypeThatIsAskedFor) {
  const Data old = {9};
  const struct {
    int type;
    Variant value;
    Data stored;
    std::int32_t error = 0;
  } cases[] = {
      {REG_SZ, u"ab", BytesOf({u"ab\0", 3})},
      {REG_SZ, 17, BytesOf({u"17\0", 3})},
      {REG_SZ, u"", {}},
      {REG_SZ, Null(), old, 94},
      {REG_EXPAND_SZ, u"%a%", BytesOf({u"%a%\0", 4})},
      {REG_MULTI_SZ, TextView(u"a\0b", 3), BytesOf({u"a\0b\0", 4})},
      {REG_MULTI_SZ, TextView(u"a\0\0", 3), BytesOf({u"a\0\0", 3})},
      {REG_BINARY, ByteVariant({1, 2, 3}), {1, 2, 3}},
      {REG_BINARY, VariantArray({Variant(4), Variant(u"5")}), {4, 5}},
      {REG_BINARY, ByteVariant({}), {}},
      {REG_BINARY, u"text", old, 13},
      {REG_DWORD, u"258", {2, 1, 0, 0}},
      {REG_DWORD, -2, {254, 255, 255, 255}},
      {REG_DWORD, 2147483648.0, old, 6},
      {REG_DWORD, u"x", old, 13},
      {REG_DWORD_BIG_ENDIAN, 258, {0, 0, 1, 2}},
      {REG_LINK, u"x", old},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE("type " + std::to_string(c.type) + ", " + std::to_string(c.stored.size()));
    App().Data(u"Value", kRegBinary, old);
    bool saved = false;
    EXPECT_EQ(ErrorOf([&] {
                saved = registry.SaveValue(HKEY_LOCAL_MACHINE, u"Software\\App", u"VALUE",
                                           static_cast<RegValueTypes>(c.type), c.value);
              }),
              c.error);
    EXPECT_EQ(saved, c.error == 0);
    EXPECT_EQ(App().FindValue(u"Value")->data, c.stored);
    const bool writes = c.stored != old;
    EXPECT_EQ(App().FindValue(u"Value")->type, writes ? static_cast<DWORD>(c.type) : kRegBinary);
  }
  EXPECT_EQ(
      ErrorOf([&] { registry.SaveValue(HKEY_LOCAL_MACHINE, u"None", u"", REG_LINK, Variant()); }),
      2)
      << "no key is made";
  EXPECT_EQ(local().local_machine().Find(u"None"), nullptr);
  registry.ConnectToRemoteRegistry(u"SRV");
  EXPECT_TRUE(registry.SaveValue(HKEY_LOCAL_MACHINE, u"Software\\App", u"", REG_SZ, Variant(3)));
  EXPECT_EQ(App(u"SRV").FindValue(u"")->data, BytesOf({u"3\0", 2}));
  EXPECT_EQ(Value(u""), Variant(u"3"));
}

TEST_F(RegistryTest, DeniedKeysOpenForThoseWhoBackUp) {
  App().Security(u"O:SYG:SYD:P(A;CI;KA;;;SY)");
  App(u"SRV").DenyRead().DenyWrite();
  const auto read = [&] { return ErrorOf([&] { Key()->GetSubKeys(); }); };
  const auto write = [&] {
    return ErrorOf([&] {
      registry.SaveValue(HKEY_LOCAL_MACHINE, u"Software\\App", u"New", REG_DWORD, Variant(1));
    });
  };
  // A denied key below doesn't keep its parent from being listed.
  EXPECT_EQ(Key(u"Software")->GetSubKeys()->ItemByKey(u"App")->GetDefaultValue(), Variant(u""));
  EXPECT_EQ(Err().Number(), 0);
  for (const bool remote : {false, true}) {
    if (remote) registry.ConnectToRemoteRegistry(u"SRV");
    for (const bool backs_up : {false, true}) {
      for (const bool restores : {false, true}) {
        estate().token().Enable(simulated::Privilege::Backup, backs_up);
        estate().token().Enable(simulated::Privilege::Restore, restores);
        EXPECT_EQ(read(), backs_up ? 0 : 5);
        EXPECT_EQ(write(), restores ? 0 : 5);
      }
    }
  }
}

TEST_F(RegistryTest, KeysTellTheirOwnerAndTheirList) {
  for (const TextView computer : {u"", u"SRV"}) {
    if (!computer.empty()) registry.ConnectToRemoteRegistry(Text(computer));
    const auto key = Key();
    const auto descriptor = key->GetSecurityDescriptor();
    EXPECT_EQ(descriptor->ParentObjectType + descriptor->ParentObjectPath,
              u"CRegKey-2147483646|Software\\App");
    const auto owner = descriptor->GetOwnerSid();
    EXPECT_EQ(owner->SidText() + u" " + owner->ResidesOnServer(),
              computer.empty() ? u"S-1-5-32-544 LOCALHOST" : u"S-1-5-32-544 \\\\SRV");
    EXPECT_TRUE(descriptor->GetDACL()->IsProtected);
    const auto aces = descriptor->GetDACL()->GetAces();
    Variant first(1), second(2);
    EXPECT_EQ(aces->Item(first)->PermissionsString(), u"Full Control");
    // An object entry is taken for a plain one: its GUID is read as the account.
    EXPECT_EQ(ListOf(aces, {u"AccessMask", u"ObjectTypeGUID"}), "983103|, 16|");
    EXPECT_NE(aces->Item(second)->GetSid()->SidText(), u"S-1-5-11");
  }
  faults().FailEvery("RegGetKeySecurity", 1117);
  const auto key = Key();
  EXPECT_EQ(FailureOf([&] { key->GetSecurityDescriptor(); }),
            u"1117|Veldmark2.CRegKey|" + GetAPIErrorText(0))
      << "the text is that of the last error, which this operation leaves alone";
}

TEST_F(RegistryTest, PathsAreExpandedByTheEnvironmentOrByTheRegistryOfAComputer) {
  const struct {
    TextView path, machine, expanded;
  } cases[] = {
      {u"%windir%\\x;%SYSTEMROOT%;%none%", u"", u"C:\\Windows\\x;C:\\Windows;%none%"},
      {TextView(u"a\0b", 3), u"", u"a"},
      {u"plain", u"SRV", u"plain"},
      {u"%SystemRoot%\\a;%systemroot%\\b;%windir%", u"SRV", u"D:\\Win\\a;D:\\Win\\b;%windir%"},
      {u"%ProgramFiles%\\a", u"\\\\SRV", u"D:\\Programs\\a"},
      {u"%COMMONFILES%\\a", u"LOCALHOST", u"C:\\Common\\a"},
      {u"%windir%\\x", u"SRV", u"\\x"},
      {u"%%x", u"SRV", u""},
      {u"100 %", u"SRV", u"100 %"},
      {u"%SystemRoot%\\a", u"NOBODY", u"\\a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path) + " on " + ToUtf8(c.machine));
    for (int time = 0; time < 2; ++time) {
      journal().Clear();
      EXPECT_EQ(Engine().ExpandPathForMachine(Text(c.path), Text(c.machine)), c.expanded);
    }
    EXPECT_EQ(Called({"Reg"}), "") << "remembered";
  }
  EXPECT_EQ(ToText(Apartment::Current().machine_paths->Item(Variant(u"SRV|%SystemRoot%"))),
            u"D:\\Win");
  EXPECT_EQ(Err().Number(), 53) << "of NOBODY";
  Engine().ExpandPathForMachine(u"%new%", u"SRV");
  EXPECT_EQ(Err().Number(), 0);
  faults().FailEvery("ExpandEnvironmentStringsW", 8);
  EXPECT_EQ(Engine().ExpandPathForMachine(u"%windir%", u""), u"");

  // The two ways to a value differ in whom they ask.
  faults().Clear();
  registry.ConnectToRemoteRegistry(u"SRV");
  App(u"SRV").String(u"Wide", u"%windir%\\x", kRegExpandSz).String(u"Plain", u"%SystemRoot%");
  const auto values = Key()->GetValues();
  EXPECT_EQ(Value(u"Wide"), Variant(u"\\x"));
  EXPECT_EQ(values->ItemByKey(u"Wide")->Value, Variant(u"C:\\Windows\\x"));
  EXPECT_EQ(Value(u"Plain"), Variant(u"D:\\Win"));
  EXPECT_EQ(values->ItemByKey(u"Plain")->Value, Variant(u"%SystemRoot%"));
}

TEST(RegistryFaults, AreToldAndLeaveNothingOpen) {
  const std::set<std::string> swallowed = {"RegCloseKey", "ExpandEnvironmentStringsW"};
  SweepFaults<RegistryWorld>(
      swallowed,
      [](RegistryWorld& world) {
        world.registry.ConnectToRemoteRegistry(u"SRV");
        const auto key = Make<CRegKey>();
        key->hKey = HKEY_LOCAL_MACHINE;
        key->FullName = u"Software\\App";
        key->MachineName = u"\\\\SRV";
        EXPECT_EQ(key->GetValue(u"Count", REG_SZ), Variant(7));
        EXPECT_TRUE(key->GetSecurityDescriptor()->GetOwnerSid());
        world.registry.SaveValue(HKEY_LOCAL_MACHINE, key->FullName, u"Count", REG_DWORD,
                                 Variant(8));
      },
      [](RegistryWorld& world, const std::string&, bool raised) {
        EXPECT_EQ(world.App(u"SRV").FindValue(u"Count")->data,
                  (Data{static_cast<std::uint8_t>(raised ? 7 : 8), 0, 0, 0}));
      });
  // What may go wrong without a word: with default values anything about them, with listed ones
  // what they hold.
  SweepFaults<RegistryWorld>(
      swallowed,
      [](RegistryWorld& world) {
        world.registry.ConnectToRemoteRegistry(u"SRV");
        world.Key()->GetSubKeys();
        EXPECT_EQ(world.Key()->GetValues()->Count(), 3);
      },
      [](auto&&...) {}, {"RegConnectRegistryW", "RegOpenKeyExW", "RegQueryValueExW"});
}

using Settings = TestIn<RegistryWorld>;

TEST_F(Settings, ValuesAreReadWhateverTheirTypeAndSize) {
  const struct {
    DWORD type;
    std::vector<std::uint8_t> data;
    Text text;  // without its last unit
    std::int32_t number;
  } cases[] = {{kRegSz, {'a', 0, 'b', 0, 0, 0}, u"ab", -5},
               {kRegSz, {'a', 0, 'b', 0}, u"a", 0x00620061},  // without a NUL it loses its end
               {kRegMultiSz, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}, Text(u"a\0b\0", 4), -5},
               {kRegDword, {1, 2, 3, 0x84}, u"\x0201", static_cast<std::int32_t>(0x84030201u)},
               {kRegBinary, {1, 2, 3, 4, 5}, u"\x0201", -5},
               {kRegBinary, {1, 2, 3}, u"", 0x30201},
               {kRegBinary, {7, 1}, u"", 0x107},
               {kRegBinary, {9}, u"", 9},
               {kRegSz, {}, u"default", -5},
               {kRegBinary, std::vector<std::uint8_t>(200'001, 0x20), Text(99'999, u'\x2020'), -5}};
  for (const auto& c : cases) {
    Config().Data(u"Value", c.type, c.data);
    EXPECT_EQ(settings.GetString(u"Config", u"Value", u"default"), c.text) << c.data.size();
    EXPECT_EQ(settings.GetDWord(u"Config", u"Value", -5), c.number) << c.data.size();
  }
}

TEST_F(Settings, SectionsAndKeysNameKeysAndValues) {
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"here");
  EXPECT_EQ(settings.GetString(u"Config", u"", u"-"), u"unnamed");
  EXPECT_EQ(settings.GetString(u"Config", u"*", u"-"), u"unnamed");
  EXPECT_EQ(settings.GetString(u"", u"Top", u"-"), u"level");
  EXPECT_EQ(settings.GetString(u"Nowhere", u"Name", u"-"), u"-");
  EXPECT_EQ(settings.GetDWord(u"Config", u"Missing", 3), 3);
  const CRegSettings fresh;
  EXPECT_EQ(fresh.HKeyRoot, HKEY_CURRENT_USER);
  EXPECT_EQ(fresh.Path, u"Software");
}

TEST_F(Settings, AnotherComputerIsAskedOnlyForItsMachineAndItsUsers) {
  settings.MachineName = u"SRV";
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"there");
  EXPECT_EQ(settings.GetDWord(u"Config", u"Number", 0), 0x00420041);
  EXPECT_TRUE(settings.SaveString(u"Config", u"Name", u"changed"));
  EXPECT_TRUE(settings.SaveDWord(u"New\\Section", u"Number", 0));
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"changed");
  EXPECT_EQ(settings.GetDWord(u"New\\Section", u"Number", 1), 0);
  EXPECT_EQ(Config().FindValue(u"Name")->data.size(), 10u);
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u"Name"));  // always the local one
  EXPECT_EQ(Config().FindValue(u"Name"), nullptr);
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"changed");

  settings.HKeyRoot = HKEY_CURRENT_USER;
  EXPECT_EQ(settings.GetString(u"Config", u"Name", u"-"), u"mine");
  settings.HKeyRoot = HKEY_USERS;
  EXPECT_EQ(ErrorOf([&] { settings.GetString(u"Config", u"Name", u"-"); }), 2);
}

TEST_F(Settings, EveryStatusIsRaisedOrLeftToTheDefaultAsItsOperationSays) {
  // R: raised with its own text, C: as one of the connection, D: the default, -: no matter.
  const struct {
    const char* failing;
    DWORD status;
    const char* here;  // GetString, GetDWord, SaveString, SaveDWord
    const char* there;
  } cases[] = {{"RegConnectRegistryW", 53, "----", "CCCC"}, {"RegOpenKeyExW", 2, "DD--", "CD--"},
               {"RegOpenKeyExW", 5, "RR--", "CC--"},        {"RegOpenKeyExW", 13, "RR--", "CR--"},
               {"RegQueryValueExW", 2, "DD--", "DD--"},     {"RegQueryValueExW", 5, "RR--", "CC--"},
               {"RegQueryValueExW", 13, "RR--", "CR--"},    {"RegCreateKeyExW", 5, "--RR", "--CC"},
               {"RegCreateKeyExW", 13, "--RR", "--RC"},     {"RegSetValueExW", 5, "--RR", "--RR"}};
  const std::function<char()> operations[] = {
      [&] { return settings.GetString(u"Config", u"Name", u"D") == u"D" ? 'D' : '-'; },
      [&] { return settings.GetDWord(u"Config", u"Number", 3) == 3 ? 'D' : '-'; },
      [&] { return settings.SaveString(u"Config", u"Name", u"x") ? '-' : 'f'; },
      [&] { return settings.SaveDWord(u"Config", u"Number", 1) ? '-' : 'f'; }};
  const auto outcome_of = [](const std::function<char()>& operation, std::int32_t status) {
    char outcome = '?';
    const Text failure = FailureOf([&] { outcome = operation(); });
    if (failure.empty()) return outcome;
    EXPECT_EQ(Err().Number(), status);
    const Text start = ToText(std::int64_t{status}) + u"|Veldmark2.CRegSettings|";
    if (failure == start + GetAPIErrorText(status)) return 'R';
    return failure == start + u"Error connecting to remote registry" ? 'C' : '?';
  };
  for (const auto& c : cases) {
    faults().FailEvery(c.failing, c.status);
    for (const bool there : {false, true}) {
      settings.MachineName = there ? u"SRV" : u"";
      std::string outcomes;
      for (const auto& operation : operations) {
        outcomes += outcome_of(operation, static_cast<std::int32_t>(c.status));
      }
      EXPECT_EQ(outcomes, there ? c.there : c.here) << c.failing << c.status;
    }
    faults().Clear();
  }
  // The size is told, but the data can't be read any more.
  faults().FailNthOf("RegQueryValueExW", 2, kErrorMoreData);
  EXPECT_EQ(operations[0](), 'D');
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
  EXPECT_EQ(ErrorOf([&] { settings.SaveString(u"Config", u"Name", u""); }), 5);
  EXPECT_NE(Config().FindValue(u"Name"), nullptr);
}

TEST_F(Settings, ValuesAndSectionsAreDeletedOrRefused) {
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u"Number"));
  EXPECT_EQ(ErrorOf([&] { settings.DeleteSetting(u"Config", u"Number"); }), 2);
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u"*"));
  EXPECT_FALSE(settings.DeleteSetting(u"Nowhere", u"Number"));
  EXPECT_EQ(ErrorOf([&] { settings.DeleteSetting(u"Config", u""); }), 5);
  EXPECT_TRUE(settings.DeleteSetting(u"Config\\Below", u""));
  EXPECT_TRUE(settings.DeleteSetting(u"Config", u""));
  EXPECT_EQ(local().local_machine().Key(u"Software\\Product").Find(u"Config"), nullptr);
  EXPECT_EQ(ErrorOf([&] { settings.DeleteSetting(u"Config", u""); }), 2);
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
  faults().FailNthOf("RegEnumValueW", 2, kErrorAccessDenied);
  const Variant first = settings.GetAllSettings(u"Config");
  EXPECT_EQ(first.If<TextArray>()->bounds, (std::vector<Bound>{{0, 1}, {0, 2}}));
  faults().FailEvery("RegQueryInfoKeyW", kErrorAccessDenied);
  EXPECT_EQ(settings.GetAllSettings(u"Config"), Variant());
}

}  // namespace
}  // namespace veldmark
