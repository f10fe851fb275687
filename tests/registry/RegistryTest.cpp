#include "registry/CRegistry.h"

#include <gmock/gmock.h>

#include <functional>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "registry/CRegKey.h"
#include "registry/CRegKeys.h"
#include "registry/CRegValue.h"
#include "registry/CRegValues.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"

namespace veldmark {
namespace {

using Data = std::vector<std::uint8_t>;

Data BytesOf(TextView text) {
  Data bytes;
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return bytes;
}

Variant ByteVariant(Data bytes) { return ByteArray(std::move(bytes)); }

std::string Shown(CRegKey& key) {
  return ToUtf8(key.Name + u"|" + key.FullName + u"|" + key.MachineName + u"|" +
                ToText(key.GetDefaultValue()));
}

/// The same tree below `Software\App` here and on SRV, where the texts differ.
class RegistryWorld : public SimulatedApartment {
 public:
  RegistryWorld() {
    Furnish(local(), u"here");
    Furnish(estate().AddComputer(u"SRV"), u"there");
    estate().current_user().Key(u"Mine").String(u"", u"own");
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
  }

  simulated::RegistryNode& App(TextView computer = u"LOCALHOST") {
    return estate().FindComputer(computer)->local_machine().Key(u"Software\\App");
  }
  /// The platform calls since the last time, each by its first letters behind "Reg".
  std::string Calls() {
    std::string calls;
    for (const auto& call : journal().entries()) {
      if (call.operation.starts_with("Reg")) calls += call.operation.substr(3, 4) + " ";
    }
    journal().Clear();
    return calls;
  }

  CRegistry registry;
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
               {HKEY_CLASSES_ROOT, u"", "|||"},
               {HKEY_CURRENT_CONFIG, u"*", "|||"},
               {HKEY_LOCAL_MACHINE, u"Software\\App\\Two", "Two|Software\\App\\Two||42"},
               {HKEY_LOCAL_MACHINE, u"Software\\App\\Three", "Three|Software\\App\\Three||"},
               {HKEY_LOCAL_MACHINE, u"None", "2"},
               {HKEY_DYN_DATA, u"", "6"},
               {HKEY_LOCAL_MACHINE, u"Software\\App", "App|Software\\App|\\\\SRV|there", "SRV"},
               {HKEY_LOCAL_MACHINE, u"Software\\App", "App|Software\\App|\\\\SRV|there", "\\\\SRV"},
               {HKEY_LOCAL_MACHINE, u"None", "2", "SRV"},
               {HKEY_LOCAL_MACHINE, u"Software", "53", "NOBODY"},
               {HKEY_USERS, u"*", "||\\\\SRV|", "SRV"},
               {HKEY_CURRENT_CONFIG, u"*", "||\\\\SRV|", "SRV"},
               {HKEY_DYN_DATA, u"*", "6", "SRV"},
               {HKEY_CURRENT_USER, u"Mine", "2", "SRV"},
               {HKEY_CLASSES_ROOT, u"", "2", "SRV"},
               // This computer's own name is another one with the backslashes before it.
               {HKEY_CURRENT_USER, u"Mine", "2", "LOCALHOST"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.asked) + " on " + c.computer);
    CRegistry asked;
    if (!c.computer.empty()) asked.ConnectToRemoteRegistry(FromUtf8(c.computer));
    std::string found;
    const Text error = FailureOf([&] { found = Shown(*asked.GetRegKey(c.root, Text(c.asked))); });
    if (error.empty()) {
      EXPECT_EQ(found, c.found);
    } else {
      EXPECT_EQ(ToUtf8(error),
                c.found + "|Veldmark2.CRegistry|" + ToUtf8(GetAPIErrorText(std::stoi(c.found))));
    }
  }
  // Without them it is the same computer, and the user's root is reached.
  const auto mine = registry.GetRegKey(HKEY_CURRENT_USER, u"Mine");
  mine->MachineName = u"LOCALHOST";
  EXPECT_EQ(mine->GetValue(u"", REG_SZ), Variant(u"own"));
  mine->PutDefaultValue(Variant(12));
  EXPECT_EQ(mine->GetDefaultValue(), Variant(u"12"));
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
      {REG_SZ, BytesOf(u"a"), u"a", u"a"},
      {REG_SZ, BytesOf({u"a\0b\0\0c", 6}), two, u"a"},
      {REG_SZ, BytesOf({u"\0a", 2}), TextView(u"\0a", 2), u""},
      {REG_SZ, {'a', 0, 'b'}, u"ab", u"ab"},
      {REG_SZ, {'a'}, u"a", u"a"},
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
      {REG_NONE, {1}, {}, {}},
      {REG_LINK, BytesOf(u"a"), {}, {}},
      {REG_RESOURCE_LIST, {1, 2}, {}, {}},
      {static_cast<int>(kRegQword), number, {}, {}},
      {-1, number, {}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE("type " + std::to_string(c.type) + ", " + std::to_string(c.data.size()));
    App().Data(u"Value", static_cast<DWORD>(c.type), c.data);
    EXPECT_EQ(Value(u"value", REG_BINARY), c.asked);
    const auto key = registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App");
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

TEST_F(RegistryTest, ListsHoldWhatIsThereAndSayWhatTheyFind) {
  std::vector<std::string> said;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    if (event == 1) said.push_back(ToUtf8(*arguments[0].If<Text>()));
  });
  const auto app = registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App");
  const auto keys = app->GetSubKeys();
  std::string shown;
  for (std::int32_t i = 1; i <= keys->Count(); ++i) shown += Shown(*keys->ItemByIndex(i)) + " ";
  EXPECT_EQ(
      shown,
      "One|Software\\App\\One||here Three|Software\\App\\Three|| Two|Software\\App\\Two||42 ");
  EXPECT_EQ(app->GetValues()->Count(), 3);
  EXPECT_THAT(said, testing::ElementsAre(
                        "Retrieving Registry Keys...", "Retrieved Registry Key \"One\"",
                        "Retrieved Registry Key \"Three\"", "Retrieved Registry Key \"Two\"",
                        "Retrieving Registry Values...", "Retrieved Registry Value \"\"",
                        "Retrieved Registry Value \"Count\"", "Retrieved Registry Value \"Path\""));
  EXPECT_EQ(keys->ItemByKey(u"One")->GetSubKeys()->Count(), 0);
  EXPECT_EQ(registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software")->GetValues()->Count(), 0);

  registry.ConnectToRemoteRegistry(u"SRV");
  EXPECT_EQ(Shown(*registry.GetRegKeys(HKEY_LOCAL_MACHINE)->ItemByKey(u"SOFTWARE")),
            "SOFTWARE|SOFTWARE|\\\\SRV|");
  // Each key below costs a connection of its own, and a root is closed before its key.
  journal().Clear();
  registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App\\One")->GetSubKeys();
  EXPECT_EQ(Calls(), "Conn Open Conn Open Quer Quer Clos Clos Clos Clos Conn Open Enum Clos Clos ");
  RegistryKey key(platform.registry);
  RegistryKey root(platform.registry);
  Engine().OpenRegKey(HKEY_LOCAL_MACHINE, u"Software", u"SRV", 0, key, root);
  EXPECT_EQ(platform.registry.RegSetValueExW(key.Get(), u"x", 0, kRegSz, nullptr, 0), 0) << "all";
  EXPECT_EQ(Engine().GetRegString(key.Get(), u"x"), u"");
  EXPECT_EQ(ErrorOf([&] { Engine().GetRegString(key.Get(), u"y"); }), 2);
  Engine().CloseRegKey(key, root);
  EXPECT_FALSE(key || root);
}

TEST_F(RegistryTest, AKeyThatIsDeletedWhileItIsListedEndsTheListWithAnError) {
  const bool deletes_values = true;
  for (const bool values : {deletes_values, !deletes_values}) {
    auto& doomed = local().local_machine().Key(u"Software\\Doomed");
    doomed.Dword(u"a", 1).Dword(u"b", 2);
    doomed.Key(u"sub");
    doomed.Key(u"tub");
    const auto key = registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\Doomed");
    int events = 0;
    auto sink = Make<Listener>([&](std::int32_t event, std::span<Variant>) {
      if (event == 1 && ++events == 2) doomed.Remove(estate().now());
    });
    const std::uint32_t cookie = StatusObject().Events()->Advise(sink);
    EXPECT_EQ(ErrorOf([&] {
                if (values) {
                  key->GetValues();
                } else {
                  key->GetSubKeys();
                }
              }),
              1018);
    StatusObject().Events()->Unadvise(cookie);
  }
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
      {REG_NONE, u"x", old},
      {REG_LINK, u"x", old},
      {REG_RESOURCE_LIST, u"x", old},
      {static_cast<int>(kRegQword), 1, old},
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
  const auto read = [&](CRegistry& asked) {
    return ErrorOf([&] { asked.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App")->GetSubKeys(); });
  };
  const auto write = [](CRegistry& asked) {
    return ErrorOf([&] {
      asked.SaveValue(HKEY_LOCAL_MACHINE, u"Software\\App", u"New", REG_DWORD, Variant(1));
    });
  };
  CRegistry remote;
  remote.ConnectToRemoteRegistry(u"SRV");
  for (CRegistry* asked : {&registry, &remote}) {
    EXPECT_EQ(read(*asked), 5);
    EXPECT_EQ(write(*asked), 5);
    estate().token().Enable(simulated::Privilege::Backup, true);
    EXPECT_EQ(read(*asked), 0);
    EXPECT_EQ(write(*asked), 5) << "reading is all that this privilege lets";
    estate().token().Enable(simulated::Privilege::Restore, true);
    EXPECT_EQ(write(*asked), 0);
    estate().token().Enable(simulated::Privilege::Backup, false);
    EXPECT_EQ(read(*asked), 5);
    estate().token().Enable(simulated::Privilege::Restore, false);
  }
  // A denied key below doesn't keep its parent from being listed.
  EXPECT_EQ(registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software")
                ->GetSubKeys()
                ->ItemByKey(u"App")
                ->GetDefaultValue(),
            Variant(u""));
  EXPECT_EQ(Err().Number(), 0);
}

TEST_F(RegistryTest, KeysTellTheirOwnerAndTheirList) {
  for (const TextView computer : {u"", u"SRV"}) {
    if (!computer.empty()) registry.ConnectToRemoteRegistry(Text(computer));
    const auto key = registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App");
    const auto descriptor = key->GetSecurityDescriptor();
    EXPECT_EQ(descriptor->ParentObjectType, u"CRegKey");
    EXPECT_EQ(descriptor->ParentObjectPath, u"-2147483646|Software\\App");
    const auto owner = descriptor->GetOwnerSid();
    EXPECT_EQ(owner->SidText(), u"S-1-5-32-544");
    EXPECT_EQ(owner->ResidesOnServer(), computer.empty() ? u"LOCALHOST" : u"\\\\SRV");
    EXPECT_TRUE(descriptor->GetDACL()->IsProtected);
    const auto aces = descriptor->GetDACL()->GetAces();
    EXPECT_EQ(aces->Count(), 2);
    Variant first(1);
    EXPECT_EQ(aces->Item(first)->AccessMask, 0xF003F);
    EXPECT_EQ(aces->Item(first)->PermissionsString(), u"Full Control");
    // An object entry is taken for a plain one: its GUID is read as the account.
    Variant second(2);
    EXPECT_EQ(aces->Item(second)->AccessMask, 0x10);
    EXPECT_EQ(aces->Item(second)->ObjectTypeGUID, u"");
    EXPECT_NE(aces->Item(second)->GetSid()->SidText(), u"S-1-5-11");
  }
  faults().FailEvery("RegGetKeySecurity", 1117);
  const auto key = registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App");
  EXPECT_EQ(FailureOf([&] { key->GetSecurityDescriptor(); }),
            u"1117|Veldmark2.CRegKey|" + GetAPIErrorText(0))
      << "the text is that of the last error, which this operation leaves alone";
}

TEST_F(RegistryTest, PathsAreExpandedByTheEnvironmentOrByTheRegistryOfAComputer) {
  const struct {
    TextView path, machine, expanded;
  } cases[] = {
      {u"%windir%\\x;%SYSTEMROOT%;%none%", u"", u"C:\\Windows\\x;C:\\Windows;%none%"},
      {u"plain", u"", u"plain"},
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
    EXPECT_EQ(Calls(), "") << "remembered";
  }
  EXPECT_EQ(ToText(Apartment::Current().machine_paths->Item(Variant(u"SRV|%SystemRoot%"))),
            u"D:\\Win");
  faults().FailEvery("ExpandEnvironmentStringsW", 8);
  EXPECT_EQ(Engine().ExpandPathForMachine(u"%windir%", u""), u"");

  // The two ways to a value differ in whom they ask.
  faults().Clear();
  registry.ConnectToRemoteRegistry(u"SRV");
  App(u"SRV").String(u"Wide", u"%windir%\\x", kRegExpandSz).String(u"Plain", u"%SystemRoot%");
  const auto values = registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App")->GetValues();
  EXPECT_EQ(Value(u"Wide"), Variant(u"\\x"));
  EXPECT_EQ(values->ItemByKey(u"Wide")->Value, Variant(u"C:\\Windows\\x"));
  EXPECT_EQ(Value(u"Plain"), Variant(u"D:\\Win"));
  EXPECT_EQ(values->ItemByKey(u"Plain")->Value, Variant(u"%SystemRoot%"));
}

TEST(RegistryFaults, AreToldAndLeaveNothingOpen) {
  const auto key = [](RegistryWorld& world) {
    world.registry.ConnectToRemoteRegistry(u"SRV");
    auto found = Make<CRegKey>();
    found->hKey = HKEY_LOCAL_MACHINE;
    found->FullName = u"Software\\App";
    found->MachineName = u"\\\\SRV";
    return found;
  };
  using Scenario = std::function<void(RegistryWorld&)>;
  const std::set<std::string> closing = {"RegCloseKey", "ExpandEnvironmentStringsW"};
  const std::set<std::string> loose = {"RegConnectRegistryW", "RegOpenKeyExW", "RegQueryValueExW"};
  // What may go wrong without a word: with default values anything about them, with listed
  // ones what they hold.
  const std::pair<Scenario, std::set<std::string>> scenarios[] = {
      {[&](auto& w) { w.registry.GetRegKey(HKEY_LOCAL_MACHINE, u"Software\\App"); }, loose},
      {[&](auto& w) { key(w)->GetSubKeys(); }, loose},
      {[&](auto& w) { EXPECT_EQ(key(w)->GetValues()->Count(), 3); }, {"RegQueryValueExW"}},
      {[&](auto& w) { EXPECT_EQ(key(w)->GetValue(u"Count", REG_SZ), Variant(7)); }, {}},
      {[&](auto& w) {
         key(w);
         w.registry.SaveValue(HKEY_LOCAL_MACHINE, u"Software\\App", u"Count", REG_DWORD,
                              Variant(8));
       },
       {}},
      {[&](auto& w) { EXPECT_TRUE(key(w)->GetSecurityDescriptor()->GetOwnerSid()); }, {}}};
  for (const auto& [scenario, either] : scenarios) {
    SweepFaults<RegistryWorld>(
        closing, scenario,
        [](RegistryWorld& world, const std::string& failed, bool raised) {
          if (raised || failed == "RegSetValueExW") {
            EXPECT_EQ(world.App(u"SRV").FindValue(u"Count")->data, (Data{7, 0, 0, 0}));
          }
        },
        either);
  }
}

}  // namespace
}  // namespace veldmark
