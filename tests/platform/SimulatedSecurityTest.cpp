#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "support/NetworkCalls.h"
#include "support/SecurityText.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kMaximumAllowedBit = 0x02000000;
constexpr DWORD kSystemSecurityBit = 0x01000000;
constexpr DWORD kShareAll = kFileShareRead | kFileShareWrite | kFileShareDelete;
constexpr DWORD kUnprotected = kDaclSecurityInformation | kUnprotectedDaclSecurityInformation;
constexpr DWORD kProtected = kDaclSecurityInformation | kProtectedDaclSecurityInformation;

class SimulatedSecurityTest : public testing::Test {
 protected:
  SimulatedSecurityTest()
      : platform_(simulated_.platform()),
        security_(simulated_.security()),
        files_(platform_.files),
        estate_(simulated_.estate()),
        local_(estate_.local()) {}
  ~SimulatedSecurityTest() override {
    EXPECT_TRUE(simulated_.ledger().IsClean()) << simulated_.ledger().Report();
  }

  // The rendered list, with the owner in front; "!" and the code if it can't be had.
  std::string Get(TextView name, DWORD type = 1) {
    LocalMemory<void> block(platform_.system);
    const DWORD code = security_.GetNamedSecurityInfoW(
        Text(name).c_str(), type, kOwnerSecurityInformation | kDaclSecurityInformation, nullptr,
        nullptr, nullptr, nullptr, block.Receive());
    if (code != 0) return "!" + std::to_string(code);
    return block ? SecurityText::OfDescriptor(block.Get()) : "none";
  }

  DWORD Set(TextView name, DWORD type, TextView text, DWORD information) {
    std::vector<std::uint8_t> list;
    const SecurityDescriptor descriptor = DescriptorOf(text);
    if (descriptor.dacl) list = BytesOf(*descriptor.dacl);
    return security_.SetNamedSecurityInfoW(Text(name).c_str(), type, information, nullptr, nullptr,
                                           list.empty() ? nullptr : list.data(), nullptr);
  }

  void Become(const char16_t* user, std::initializer_list<const char16_t*> groups) {
    std::vector<Sid> sids = {EveryoneSid()};
    for (const char16_t* group : groups) sids.push_back(*Sid::FromText(group));
    estate_.SetToken(Token(*Sid::FromText(user), std::move(sids)));
  }

  // 0, or the code that opening fails with.
  DWORD Open(TextView path, DWORD access, DWORD flags = 0, DWORD disposition = kOpenExisting) {
    const FileHandle file(files_, files_.CreateFileW(Text(path).c_str(), access, kShareAll, nullptr,
                                                     disposition, flags, nullptr));
    return file ? 0 : LastPlatformError();
  }
  static DWORD CodeOf(BOOL result) { return result != 0 ? 0 : LastPlatformError(); }

  SimulatedPlatform simulated_;
  Platform platform_;
  SimulatedSecurity& security_;
  FileSystem& files_;
  Estate& estate_;
  Computer& local_;
};

TEST_F(SimulatedSecurityTest, ChecksAccessByTypePrivilegeAndWhoAsks) {
  // Type 1 is a set with the properties 2 and 3.
  GUID types[] = {{1, 0, 0, {}}, {2, 0, 0, {}}, {3, 0, 0, {}}};
  OBJECT_TYPE_LIST whole[] = {{0, 0, &types[0]}, {1, 0, &types[1]}, {1, 0, &types[2]}};
  const Text none = u"O:BGG:BG";
  const Text type = u"0000-0000-0000-000000000000";
  const Text first = u";0000000" + Text(u"1-") + type + u";;WD)";
  const Text second = u";0000000" + Text(u"2-") + type + u";;WD)";
  const Text third = u";0000000" + Text(u"3-") + type + u";;WD)";
  const FileHandle user(files_, security_.OpenClientToken(u"S-1-5-21-1-2-3-9", {u"S-1-5-32-545"}));
  const FileHandle mighty(
      files_, security_.OpenClientToken(u"S-1-5-21-1-2-3-9", {},
                                        {u"SeSecurityPrivilege", u"SeTakeOwnershipPrivilege"}));
  struct Row {
    Text descriptor;
    HANDLE token;
    DWORD desired, listed;  // how many of the types are passed
    DWORD granted, error, room;
  };
  for (const Row& row : std::vector<Row>{
           {none + u"D:(OA;;RP" + second, user.Get(), 0x10, 0, 0, 5, 20},
           {none + u"D:(OA;;RP" + first, user.Get(), 0x10, 1, 0x10, 0, 20},
           {none + u"D:(OA;;RP" + second, user.Get(), 0x10, 3, 0, 5, 20},
           {none + u"D:(OA;;RP" + second + u"(OA;;RP" + third, user.Get(), 0x10, 3, 0x10, 0, 20},
           {none + u"D:(OD;;RP" + second + u"(A;;RPWP;;;WD)", user.Get(), 0x10, 3, 0, 5, 20},
           {none + u"D:(OD;;RP" + second + u"(A;;RPWP;;;WD)", user.Get(), 0x20, 3, 0x20, 0, 20},
           {none + u"D:(OD;;RP" + second + u"(A;;RPWP;;;WD)", user.Get(), 0x10, 0, 0x10, 0, 20},
           {none + u"D:(A;;RP;;;PS)", user.Get(), 0x10, 0, 0x10, 0, 20},
           {none + u"D:NO_ACCESS_CONTROL", user.Get(), 0xF01FF, 0, 0xF01FF, 0, 20},
           {none + u"D:(A;;0x30;;;BU)", user.Get(), kMaximumAllowedBit, 0, 0x30, 0, 20},
           {none + u"D:(A;;0x30;;;BA)", user.Get(), kMaximumAllowedBit, 0, 0, 5, 20},
           {u"O:BUG:BGD:(A;;RP;;;OW)", user.Get(), 0x40000, 0, 0, 5, 20},
           {u"O:BUG:BGD:(A;;RP;;;OW)", user.Get(), 0x10, 0, 0x10, 0, 20},
           {none + u"D:", mighty.Get(), 0x80000, 0, 0x80000, 0, 20},
           {none + u"D:", user.Get(), kSystemSecurityBit, 0, 0, 1314, 20},
           {none + u"D:", mighty.Get(), kSystemSecurityBit | 0x80000, 0, 0x01080000, 0, 32}}) {
    const std::vector<std::uint8_t> bytes = BytesOf(DescriptorOf(row.descriptor), ~DWORD{0});
    const Sid self(5, {21, 1, 2, 3, 9});
    GENERIC_MAPPING mapping{0x20094, 0x20028, 0x20004, 0xF01FF};
    alignas(8) std::uint8_t used[64] = {};
    DWORD room = row.room - 1;
    DWORD granted = 77;
    BOOL status = 77;
    const auto check = [&] {
      return security_.AccessCheckByType(bytes.data(), self.bytes().data(), row.token, row.desired,
                                         whole, row.listed, &mapping, used, &room, &granted,
                                         &status);
    };
    EXPECT_EQ(CodeOf(check()), kErrorInsufficientBuffer) << ToUtf8(row.descriptor);
    EXPECT_EQ(room, row.room);
    EXPECT_TRUE(check());
    EXPECT_EQ(LastPlatformError(), row.error) << ToUtf8(row.descriptor);
    EXPECT_EQ(granted, row.granted) << ToUtf8(row.descriptor);
    EXPECT_EQ(status, row.error == 0 ? 1 : 0);
    whole[0].Level = 1;
    EXPECT_EQ(CodeOf(row.listed == 3 ? check() : 1), row.listed == 3 ? 87u : 0u) << "bad levels";
    whole[0].Level = 0;
  }
}

TEST_F(SimulatedSecurityTest, RefusesObjectEntriesInAListOfTheOldRevision) {
  std::vector<std::uint8_t> list = BytesOf(
      *DescriptorOf(u"D:(OA;;RP;00000001-0000-0000-0000-000000000000;;MS)(A;;RP;;;ES)").dacl);
  EXPECT_EQ(SecurityText::OfList(list.data()),
            "(5;00;10;<00000001>;S-1-5-32-577)(0;00;10;S-1-5-32-576)");
  for (const auto& [revision, error] : {std::pair<std::uint8_t, DWORD>{4, 0}, {2, 1336}}) {
    list[0] = revision;
    EXPECT_EQ(security_.SetNamedSecurityInfoW(u"C:\\", 1, kDaclSecurityInformation, nullptr,
                                              nullptr, list.data(), nullptr),
              error);
  }
}

TEST_F(SimulatedSecurityTest, HandsDownWhatIsInheritable) {
  const std::string usual = "D:(0;00;1f01ff;BA)(0;00;1f01ff;SY)";
  int index = 0;
  const std::tuple<const char16_t*, std::string, std::string, std::string> rows[] = {
      {u"D:P(A;OICI;FA;;;WD)", "D:AI(0;10;1f01ff;WD)", "D:AI(0;13;1f01ff;WD)",
       "D:AI(0;13;1f01ff;WD)"},
      {u"D:P(A;OI;FA;;;WD)(A;CI;FR;;;AU)", "D:AI(0;10;1f01ff;WD)",
       "D:AI(0;19;1f01ff;WD)(0;12;120089;AU)", "D:AI(0;19;1f01ff;WD)(0;12;120089;AU)"},
      {u"D:P(A;OICINP;FA;;;WD)", "D:AI(0;10;1f01ff;WD)", "D:AI(0;10;1f01ff;WD)", usual},
      {u"D:P(A;OINP;FA;;;WD)", "D:AI(0;10;1f01ff;WD)", usual, usual},
      {u"D:P(D;CIIO;GR;;;WD)(A;;FA;;;BA)", usual, "D:AI(1;10;120089;WD)(1;1a;80000000;WD)",
       "D:AI(1;10;120089;WD)(1;1a;80000000;WD)"},
      {u"D:P(A;OICIIO;FA;;;CO)", "D:AI(0;10;1f01ff;BA)", "D:AI(0;10;1f01ff;BA)(0;1b;1f01ff;CO)",
       "D:AI(0;10;1f01ff;BA)(0;1b;1f01ff;CO)"},
      {u"D:P(A;;FA;;;WD)", usual, usual, usual},
      {u"D:NO_ACCESS_CONTROL", usual, usual, usual}};
  for (const auto& [above, file, folder, below] : rows) {
    const Text top = u"C:\\Top" + ToText(index++);
    local_.AddFile(top + u"\\file");
    local_.AddFolder(top + u"\\folder\\below");
    local_.Find(top)->Security(above);
    EXPECT_EQ(Get(top + u"\\file"), "O:BA " + file) << ToUtf8(above);
    EXPECT_EQ(Get(top + u"\\folder"), "O:BA " + folder) << ToUtf8(above);
    EXPECT_EQ(Get(top + u"\\folder\\below"), "O:BA " + below) << ToUtf8(above);
  }
  local_.AddFile(u"C:\\b");
  EXPECT_EQ(Get(u"C:\\b"), "O:BA D:AI(0;10;1f01ff;SY)(0;10;1f01ff;BA)(0;10;1200a9;BU)");
}

TEST_F(SimulatedSecurityTest, SpreadsAReplacedListToWhatInheritsIt) {
  local_.AddFolder(u"C:\\Top\\Own").Security(u"D:(A;OICI;FR;;;AU)");
  local_.AddFile(u"C:\\Top\\Own\\file");
  local_.AddFile(u"C:\\Top\\plain");
  local_.AddFolder(u"C:\\Top\\Shut").Security(u"D:P(A;;FA;;;BU)");
  const std::pair<const char16_t*, std::map<Text, std::string>> rows[] = {
      {u"D:(A;OICI;FA;;;WD)",
       {{u"", "D:PAI(0;03;1f01ff;WD)"},
        {u"\\plain", "D:AI(0;10;1f01ff;WD)"},
        {u"\\Own", "D:AI(0;03;120089;AU)(0;13;1f01ff;WD)"},
        {u"\\Own\\file", "D:AI(0;10;120089;AU)(0;10;1f01ff;WD)"},
        {u"\\Shut", "D:P(0;00;1f01ff;BU)"}}},
      {u"D:(A;;FA;;;WD)",
       {{u"\\plain", "D:AI"},
        {u"\\Own", "D:AI(0;03;120089;AU)"},
        {u"\\Own\\file", "D:AI(0;10;120089;AU)"}}},
      {u"D:(A;OI;FX;;;WD)",
       {{u"\\plain", "D:AI(0;10;1200a0;WD)"},
        {u"\\Own", "D:AI(0;03;120089;AU)(0;19;1200a0;WD)"},
        {u"\\Own\\file", "D:AI(0;10;120089;AU)(0;10;1200a0;WD)"}}}};
  for (const auto& [list, after] : rows) {
    ASSERT_EQ(Set(u"C:\\Top", 1, list, kProtected), 0u);
    for (const auto& [name, text] : after) {
      EXPECT_EQ(Get(u"C:\\Top" + name), "O:BA " + text) << ToUtf8(name) << ToUtf8(list);
    }
  }
  // Without a word about protection it stays as it is; generic rights part from what is inherited.
  ASSERT_EQ(Set(u"C:\\Top\\Shut", 1, u"D:(A;OICI;GA;;;WD)", kDaclSecurityInformation), 0u);
  EXPECT_EQ(Get(u"C:\\Top\\Shut"), "O:BA D:PAI(0;00;1f01ff;WD)(0;0b;10000000;WD)");
  ASSERT_EQ(Set(u"C:\\Top\\Shut", 1, u"D:(A;ID;FA;;;BG)", kUnprotected), 0u);
  EXPECT_EQ(Get(u"C:\\Top\\Shut"), "O:BA D:AI(0;19;1200a0;WD)");
  // Keys likewise, and a list that isn't there is handed down by nobody.
  const Text sub = u"MACHINE\\A\\Sub";
  local_.local_machine().Key(u"A\\Sub");
  ASSERT_EQ(Set(u"MACHINE\\A", 4, u"D:(A;CI;KA;;;WD)(A;;KR;;;BG)", kProtected), 0u);
  ASSERT_EQ(Set(sub, 4, u"D:(A;;KR;;;AU)(A;ID;KR;;;AN)", kUnprotected), 0u);
  EXPECT_EQ(Get(sub, 4), "O:BA D:AI(0;00;20019;AU)(0;12;f003f;WD)");
  ASSERT_EQ(Set(sub, 4, u"D:NO_ACCESS_CONTROL", kProtected), 0u);
  EXPECT_EQ(Get(sub, 4), "O:BA D:PAInull");
}

TEST_F(SimulatedSecurityTest, LetsATokenDoWhatTheDescriptorsGrant) {
  Computer& server = estate_.AddComputer(u"LANTERN");
  server.AddDrive(u'D').Security(u"D:P(A;OICI;FA;;;WD)");
  server.AddFile(u"D:\\Public\\x");
  server.AddShare(u"Public", u"D:\\Public").security =
      SecurityBlock::Make(DescriptorOf(u"D:(A;;FR;;;WD)"));
  for (const auto& [name, text] : std::map<Text, Text>{{u"Open", u"D:P(A;OICI;FA;;;WD)"},
                                                       {u"Read", u"D:P(A;OICI;FRFX;;;WD)"},
                                                       {u"Shut", u"O:BAD:P(A;OICI;FA;;;BA)"}}) {
    local_.AddFile(u"C:\\" + name + u"\\file", "data");
    local_.AddFolder(u"C:\\" + name + u"\\sub");
    local_.Find(u"C:\\" + name)->Security(text);
  }
  local_.AddFile(u"C:\\Open\\kept").Security(u"D:P(A;;FR;;;WD)");
  local_.AddFile(u"C:\\Read\\mine").Security(u"O:S-1-5-21-1-2-3-9D:P");
  local_.AddFile(u"C:\\Read\\deletable").Security(u"D:P(A;;SD;;;WD)");
  Become(u"S-1-5-21-1-2-3-9", {u"S-1-5-32-545"});
  WIN32_FIND_DATAW data;
  const auto list = [&](LPCWSTR path) {
    const FindHandle find(files_, files_.FindFirstFileW(path, &data));
    return find ? 0 : LastPlatformError();
  };
  const auto attributes = [&](LPCWSTR path) {
    WIN32_FILE_ATTRIBUTE_DATA record;
    return CodeOf(files_.GetFileAttributesExW(path, kGetFileExInfoStandard, &record));
  };
  const DWORD backup = kFileFlagBackupSemantics;
  EXPECT_EQ(Open(u"C:\\Read\\file", kGenericWrite), 5u);
  EXPECT_EQ(Open(u"C:\\Read\\file", kGenericRead, 0, kCreateAlways), 5u);
  EXPECT_EQ(Open(u"C:\\Read\\mine", kReadControl), 5u);
  EXPECT_EQ(Open(u"C:\\Shut\\file", kReadControl, backup), 5u);
  EXPECT_EQ(Open(u"C:\\Open\\new", kGenericWrite, 0, kCreateNew), 0u);
  EXPECT_EQ(Open(u"C:\\Read\\new", kGenericWrite, 0, kCreateNew), 5u);
  EXPECT_EQ(list(u"C:\\Shut\\*"), 5u);
  EXPECT_EQ(CodeOf(files_.CreateDirectoryW(u"C:\\Read\\new", nullptr)), 5u);
  EXPECT_EQ(CodeOf(files_.RemoveDirectoryW(u"C:\\Read\\sub")), 5u);
  EXPECT_EQ(CodeOf(files_.SetFileAttributesW(u"C:\\Read\\file", 2)), 5u);
  EXPECT_EQ(CodeOf(files_.SetFileAttributesW(u"C:\\Open\\file", 2)), 0u);
  EXPECT_EQ(attributes(u"C:\\Shut\\file"), 5u);
  EXPECT_EQ(attributes(u"C:\\Read\\mine"), 0u);
  EXPECT_EQ(CodeOf(files_.CopyFileW(u"C:\\Read\\file", u"C:\\Open\\copy", 1)), 0u);
  EXPECT_EQ(CodeOf(files_.CopyFileW(u"C:\\Read\\file", u"C:\\Open\\kept", 0)), 5u);
  EXPECT_EQ(CodeOf(files_.CopyFileW(u"C:\\Shut\\file", u"C:\\Open\\other", 0)), 5u);
  EXPECT_EQ(CodeOf(files_.DeleteFileW(u"C:\\Read\\file")), 5u);
  EXPECT_EQ(CodeOf(files_.DeleteFileW(u"C:\\Read\\deletable")), 0u);
  EXPECT_EQ(CodeOf(files_.DeleteFileW(u"C:\\Open\\kept")), 0u);
  EXPECT_EQ(Open(u"\\\\LANTERN\\Public\\x", kGenericWrite), 5u);
  EXPECT_EQ(Open(u"\\\\LANTERN\\d$\\Public\\x", kGenericWrite), 0u);
  EXPECT_EQ(Get(u"C:\\Read\\mine").substr(0, 24), "O:S-1-5-21-1-2-3-9 D:P") << "owners may";
  EXPECT_EQ(Get(u"C:\\Open\\new"), "O:S-1-5-21-1-2-3-9 D:AI(0;10;1f01ff;WD)");
  EXPECT_EQ(Set(u"C:\\Shut\\file", 1, u"D:(A;;FA;;;WD)", kProtected), 5u);
  EXPECT_EQ(Set(u"C:\\Read\\mine", 1, u"D:(A;;FA;;;WD)", kProtected), 0u);

  RegistryKey key(platform_.registry);
  Registry& registry = platform_.registry;
  local_.local_machine().Key(u"SOFTWARE\\Shut").Security(u"D:P(A;CI;KA;;;BA)");
  EXPECT_EQ(registry.RegOpenKeyExW(kHkeyLocalMachine, u"SOFTWARE", 0, kKeyRead, key.Receive()), 0);
  EXPECT_EQ(registry.RegDeleteKeyW(kHkeyLocalMachine, u"SOFTWARE\\Shut"), 5);
  for (const auto& [path, access] :
       std::map<Text, DWORD>{{u"SOFTWARE", kKeyAllAccess}, {u"SOFTWARE\\Shut", kKeyRead}}) {
    EXPECT_EQ(registry.RegOpenKeyExW(kHkeyLocalMachine, path.c_str(), 0, access, key.Receive()), 5);
  }
  EXPECT_EQ(registry.RegCreateKeyExW(kHkeyLocalMachine, u"SOFTWARE\\New", 0, nullptr, 0, kKeyRead,
                                     nullptr, key.Receive(), nullptr),
            5);
}

TEST_F(SimulatedSecurityTest, OpensAShutFileForThoseWhoBackUp) {
  local_.AddFile(u"C:\\shut").Security(u"O:SYD:P").DenySecurity();
  const DWORD backup = kFileFlagBackupSemantics;
  estate_.token().Enable(Privilege::Backup, true);
  EXPECT_EQ(Open(u"C:\\shut", kReadControl), 5u) << "not without the flag";
  EXPECT_EQ(Open(u"C:\\shut", kGenericWrite, backup), 5u) << "nor for writing";
  EXPECT_EQ(Open(u"C:\\shut", kReadControl, backup), 0u);
  estate_.token().Enable(Privilege::Restore, true);
  EXPECT_EQ(Open(u"C:\\shut", kGenericWrite | kDelete, backup), 0u);
}

TEST_F(SimulatedSecurityTest, KnowsNamedObjectsAndSharesOnEveryReachableComputer) {
  Computer& server = estate_.AddComputer(u"LANTERN");
  server.AddDrive(u'D');
  server.AddService(u"Spooler");
  server.AddPrinter(u"Front desk");
  server.AddShare(u"Plain", u"D:\\");
  server.AddShare(u"Laser", u"Front desk", false, kShareTypePrintQueue);
  server.local_machine().Key(u"SOFTWARE\\App").Security(u"D:P(A;;KR;;;WD)");
  estate_.AddComputer(u"SHY").SetRemoteRegistry(RemoteRegistry::Denied);
  EXPECT_EQ(Get(u"\\\\lantern\\SPOOLER", 2),
            "O:SY D:(0;00;201fd;SY)(0;00;f01ff;BA)(0;00;2018d;S-1-5-4)(0;00;2018d;S-1-5-6)");
  EXPECT_EQ(Get(u"Spooler", 2), "!1060");
  EXPECT_EQ(Get(u"\\\\LANTERN\\MACHINE\\SOFTWARE\\App", 4), "O:BA D:P(0;00;20019;WD)");
  EXPECT_EQ(Get(u"\\\\SHY\\MACHINE\\SOFTWARE", 4), "!5");
  EXPECT_EQ(Get(u"\\\\LANTERN\\CURRENT_USER", 4), "!87");
  EXPECT_EQ(Get(u"\\\\LANTERN\\Plain", 5), "none");
  EXPECT_EQ(Get(u"CN=None", 9), "!2");
  EXPECT_EQ(Set(u"\\\\LANTERN\\Plain", 5, u"D:(A;;FA;;;WD)", kProtected), 0u);
  EXPECT_EQ(Get(u"\\\\LANTERN\\Plain", 5), "D:P(0;00;1f01ff;WD)");
  EXPECT_EQ(Set(u"\\\\LANTERN\\Spooler", 2, u"D:(A;;GA;;;WD)", kUnprotected), 0u);
  EXPECT_EQ(Get(u"\\\\LANTERN\\Spooler", 2), "O:SY D:(0;00;f01ff;WD)");
  const std::vector<std::uint8_t> other = Sid(5, {21, 1, 2, 3, 9}).bytes();
  const auto own = [&] {
    return security_.SetNamedSecurityInfoW(u"C:\\", 1, kOwnerSecurityInformation, other.data(),
                                           nullptr, nullptr, nullptr);
  };
  EXPECT_EQ(own(), kErrorInvalidOwner);
  estate_.token().Enable(Privilege::Restore, true);
  EXPECT_EQ(own(), 0u);
  EXPECT_TRUE(Get(u"C:\\").starts_with("O:S-1-5-21-1-2-3-9 D:PAI"));

  EXPECT_EQ(Get(u"\\\\LANTERN\\D$", 5), "none");
  EXPECT_EQ(Open(u"\\\\LANTERN\\Laser\\x", kGenericRead), kErrorBadDevType);
  Become(u"S-1-5-21-1-2-3-9", {});
  NetworkCalls network(platform_);
  EXPECT_EQ(network.Ask(&NetworkManagement::NetShareGetInfo, u"\\\\LANTERN", u"Plain", 502), 5u);
  EXPECT_EQ(Get(u"\\\\LANTERN\\Plain", 5), "!5");
}

}  // namespace
}  // namespace veldmark::simulated
