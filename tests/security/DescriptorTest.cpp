#include <initializer_list>
#include <tuple>

#include "apartment/CStatus.h"
#include "security/SecurityFixture.h"
#include "storage/CFile.h"
#include "storage/CFolder.h"
#include "storage/CShare.h"
#include "support/Listener.h"
#include "support/MixedPlatform.h"
#include "support/SecurityText.h"

namespace veldmark {
namespace {

/// That of the file C:\\D\\a below.
const std::string kListOfA =
    "(1;0;2;;;S-1-5-32-546)(0;0;1f01ff;;;S-1-5-32-544)(0;0;120089;;;S-1-1-0)";

std::string ListOf(const Ref<CSecurityDescriptor>& descriptor) {
  return Told(descriptor->GetDACL());
}

constexpr TextView kObjectEntries =
    u"O:BAG:SYD:(OA;;RP;00000001-0002-0003-0405-060708090A0B;;AU)"
    u"(OA;CI;WP;;10000001-0002-0003-0405-060708090A0B;SY)"
    u"(OD;;CR;00000001-0002-0003-0405-060708090A0B;10000001-0002-0003-0405-060708090A0B;WD)"
    u"(OA;;LC;;;BA)";

class DescriptorWorld : public SimulatedApartment {
 public:
  DescriptorWorld() {
    local().AddFile(u"C:\\D\\a").Security(u"O:BAG:SYD:P(D;;DC;;;BG)(A;;GA;;;BA)(A;;GR;;;WD)");
    local().AddFile(u"C:\\D\\open").Security(u"O:BAG:SYD:NO_ACCESS_CONTROL");
    local().AddFile(u"C:\\D\\closed").Security(u"O:BAG:SYD:P");
    local().AddFile(u"C:\\D\\inner\\x");
    simulated::Computer& server = estate().AddComputer(u"SRV");
    server.AddDrive(u'C');
    server.AddFile(u"C:\\Shared\\f");
    server.AddShare(u"Share", u"C:\\Shared");
    server.AddShare(u"IPC", u"", false, kShareTypeIpc);
    server.AddShare(u"Guarded", u"C:\\Shared").security = simulated::SecurityBlock::Make(
        simulated::DescriptorOf(u"D:(A;;0x1301bf;;;BU)(A;;FA;;;BA)"));
    server.AddPrinter(u"Laser",
                      simulated::DescriptorOf(u"O:SYG:SYD:(A;;0x20008;;;WD)(A;OIIO;GA;;;CO)"));
    server.AddService(u"Spooler", simulated::DescriptorOf(u"O:SYG:SYD:(A;;GA;;;BA)"));
    estate().current_user().Key(u"Keyed").Security(u"O:BAG:SYD:P(A;;GA;;;BA)");
    estate().AddDirectoryObject(u"CN=Anna", simulated::DescriptorOf(kObjectEntries));
  }

  simulated::FileNode& FileNodeOf(TextView path) { return *local().Find(path); }
  Ref<CSecurityDescriptor> Of(const Text& path) {
    return Engine().GetFile(path)->GetSecurityDescriptor();
  }
  Ref<CSecurityDescriptor> Named(const Text& name, SE_OBJECT_TYPE type) {
    return SystemRoot().GetNamedSD(name, type, u"ASKED");
  }
};

using Descriptors = TestIn<DescriptorWorld>;

TEST_F(Descriptors, OfFilesTellOwnerAndList) {
  std::string said;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    if (event == 1) said += ToUtf8(*arguments[0].If<Text>()) + "\n";
  });
  const auto descriptor = Of(u"C:\\D\\a");
  EXPECT_EQ(said, "Retrieved Ace 1 of 3\nRetrieved Ace 2 of 3\nRetrieved Ace 3 of 3\n");
  EXPECT_EQ(ValuesOf(*descriptor, {u"ParentObjectType", u"ParentObjectPath", u"Revision"}),
            "CFile|C:\\D\\a|1");
  EXPECT_EQ(descriptor->GetOwnerSid()->ResidesOnServer(), u"LOCALHOST");
  EXPECT_EQ(Told(descriptor), "O:S-1-5-32-544 9004 P " + kListOfA);
  const auto list = descriptor->GetDACL();
  EXPECT_EQ(ValuesOf(*list, {u"Revision", u"BytesInUse", u"BytesFree"}), "2|76|0");
  EXPECT_EQ(list->BinaryACL().If<ByteArray>()->elements.size(), 76u);
  EXPECT_EQ(ValuesOf(*AceOf(list, 3), {u"PermissionsString", u"InheritanceScope"}),
            "R|This file only");

  // Null and empty lists look alike, and neither is protected against being told apart by control.
  EXPECT_EQ(ListOf(Of(u"C:\\D\\open")) + ListOf(Of(u"C:\\D\\closed")), "");
  EXPECT_EQ(Of(u"C:\\D\\open")->GetDACL()->BinaryACL(), Variant());
  EXPECT_EQ(Of(u"C:\\D\\closed")->GetDACL()->BinaryACL().If<ByteArray>()->elements.size(), 8u);

  const auto folder = Engine().GetFolder(u"\\\\srv\\share")->GetSecurityDescriptor();
  EXPECT_EQ(folder->ParentObjectType, u"CFolder");
  EXPECT_EQ(folder->GetOwnerSid()->ResidesOnServer(), u"SRV");
  EXPECT_FALSE(AceOf(folder->GetDACL(), 1)->PermissionsString().empty());
}

TEST_F(Descriptors, OfFilesThatRefuseComeByAnOpenHandle) {
  FileNodeOf(u"C:\\D\\a").DenySecurity();
  EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\a"); }), 5);
  EXPECT_TRUE(SystemRoot().SetPrivilege(u"", u"SeBackupPrivilege", true));
  EXPECT_NE(ListOf(Of(u"C:\\D\\a")), "");
  EXPECT_TRUE(SystemRoot().SetPrivilege(u"", u"SEBACKUPPRIVILEGE", false));
  EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\a"); }), 5);
  FileNodeOf(u"C:\\D\\open").LockSecurity();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\open")), "");

  const auto gone = Engine().GetFile(u"C:\\D\\closed");
  gone->Delete(false);
  EXPECT_EQ(ErrorOf([&] { gone->GetSecurityDescriptor(); }), 2);
  faults().FailEvery("GetFileSecurityW", 3);
  EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\a"); }), 3);
  faults().Clear();
  // Entries are read as plain ones: this one's object flags stand where a SID would begin.
  FileNodeOf(u"C:\\D\\a").Security(u"O:BAG:SYD:P(OA;;RP;;;SY)(A;;FR;;;SY)");
  EXPECT_TRUE(SystemRoot().SetPrivilege(u"", u"SeBackupPrivilege", true));
  EXPECT_EQ(ListOf(Of(u"C:\\D\\a")), "(5;0;10;;;)(0;0;120089;;;S-1-5-18)");
  // Of a handle that doesn't open, only that it was refused is told.
  faults().FailEvery("GetFileSecurityW", 32);
  faults().FailEvery("CreateFileW", 32);
  EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\a"); }), 5);
  faults().Clear();
  faults().FailEvery("GetFileSecurityW", 5);
  faults().FailEvery("GetKernelObjectSecurity", 1117);
  EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\open"); }), 1117);
}

TEST_F(Descriptors, OfNamedObjectsFollowTheirKind) {
  const std::tuple<const char16_t*, SE_OBJECT_TYPE, const char16_t*, const char*> cases[] = {
      {u"C:\\D\\a", SE_FILE_OBJECT, u"CFile", kListOfA.c_str()},
      {u"\\\\SRV\\Spooler", SE_SERVICE, u"CService", "(0;0;f01ff;;;S-1-5-32-544)"},
      {u"\\\\SRV\\Laser", SE_PRINTER, u"CPrinter", "(0;0;20008;;;S-1-1-0)(0;9;f000c;;;S-1-3-0)"},
      {u"\\\\srv\\Guarded", SE_LMSHARE, u"CShare",
       "(0;0;1301bf;;;S-1-5-32-545)(0;0;1f01ff;;;S-1-5-32-544)"},
      {u"CURRENT_USER\\Keyed", SE_REGISTRY_KEY, u"CRegKey", "(0;0;f003f;;;S-1-5-32-544)"},
      {u"CN=Anna", SE_DS_OBJECT, u"LDAP",
       "(5;0;10;{00000001-0002-0003-0405-060708090A0B};;S-1-5-11)"
       "(5;2;20;;{10000001-0002-0003-0405-060708090A0B};S-1-5-18)"
       "(6;0;100;{00000001-0002-0003-0405-060708090A0B};{10000001-0002-0003-0405-060708090A0B};"
       "S-1-1-0)(5;0;4;;;S-1-5-32-544)"},
  };
  for (const auto& [name, type, parent, list] : cases) {
    const auto descriptor = Named(name, type);
    EXPECT_EQ(ListOf(descriptor), list) << ToUtf8(name);
    EXPECT_EQ(descriptor->ParentObjectType, parent);
    EXPECT_EQ(AceOf(descriptor->GetDACL(), 1)->GetSid()->ResidesOnServer(),
              type == SE_LMSHARE ? u"SRV" : u"ASKED");
  }
  EXPECT_EQ(AceOf(Named(u"\\\\SRV\\Laser", SE_PRINTER)->GetDACL(), 2)->PermissionsString(),
            u"Manage Documents");
  const auto share = Named(u"\\\\srv\\Guarded", SE_LMSHARE);
  EXPECT_EQ(share->GetOwnerSid(), nullptr);
  EXPECT_EQ(share->ParentObjectPath, u"\\\\SRV\\Guarded");
  EXPECT_EQ(AceOf(share->GetDACL(), 1)->PermissionsString(), u"Change");
  // One of a string has no parent.
  const auto plain =
      Engine().GetNamedSD({}, SE_FILE_OBJECT, nullptr, {}, {}, u"SRV", u"O:BUD:P(A;;FR;;;SY)");
  EXPECT_EQ(Told(plain), "O:S-1-5-32-545 9004 P (0;0;120089;;;S-1-5-18)");
  EXPECT_EQ(plain->GetOwnerSid()->ResidesOnServer(), u"SRV");
  EXPECT_EQ(plain->ParentObjectType + plain->ParentObjectPath, u"");
  EXPECT_EQ(ErrorOf([&] { Named(u"none", SE_PRINTER); }), 1801);
  EXPECT_EQ(ErrorOf([&] { Named(u"C:\\D\\a", SE_KERNEL_OBJECT); }), 87);
}

TEST_F(Descriptors, OfSharesWithoutOneDependOnTheirType) {
  const auto share = Make<CShare>();
  const auto everyone = Engine().GetShareSD(u"srv", u"Share", share.Get());
  EXPECT_EQ(ListOf(everyone), "(0;0;1f01ff;;;S-1-1-0)");
  EXPECT_EQ(AceOf(everyone->GetDACL(), 1)->PermissionsString(), u"Full Control");
  EXPECT_FALSE(everyone->GetDACL()->IsProtected);
  EXPECT_EQ(everyone->GetOwnerSid(), nullptr);
  share->ShareType = ST_IPC;
  EXPECT_EQ(Engine().GetShareSD(u"srv", u"IPC", share.Get()), nullptr);
  EXPECT_EQ(ErrorOf([&] { Named(u"\\\\srv\\share", SE_LMSHARE); }), 91);
  EXPECT_EQ(ErrorOf([&] { Engine().GetShareSD(u"srv", u"Share", Make<CFile>().Get()); }), 13);
  share->ShareType = ST_DISKTREE;
  Apartment::Current().well_known_groups = nullptr;
  EXPECT_EQ(ErrorOf([&] { Engine().GetShareSD(u"srv", u"Share", share.Get()); }), 91);
}

TEST_F(Descriptors, SaveWritesWhatTheEntriesSay) {
  const auto descriptor = Of(u"C:\\D\\a");
  descriptor->GetDACL()->Grant(u"S-1-5-32-545", ACCESS_ALLOWED_ACE_TYPE, 0x1200A9, AceFlagsEnum{},
                               {}, {});
  descriptor->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\a")), kListOfA + "(0;0;1200a9;;;S-1-5-32-545)");
  // Without protection it inherits, and what was inherited before comes from the folder again.
  descriptor->GetDACL()->IsProtected = false;
  descriptor->Save();
  const auto inheriting = Of(u"C:\\D\\a");
  EXPECT_FALSE(inheriting->GetDACL()->IsProtected);
  EXPECT_TRUE(AceOf(inheriting->GetDACL(), 5)->IsInherited());
  const std::string list = ListOf(inheriting);
  inheriting->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\a")), list);
}

TEST_F(Descriptors, SaveGoesToTheObjectThatTheyAreAttachedTo) {
  const auto anna = Named(u"CN=Anna", SE_DS_OBJECT);
  const std::string list = ListOf(anna);
  anna->Save();
  EXPECT_EQ(ListOf(Named(u"CN=Anna", SE_DS_OBJECT)), list);

  const auto file = Of(u"C:\\D\\a");
  file->ParentObjectPath = u"C:\\D\\closed";
  file->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\closed")), ListOf(file));
  file->ParentObjectType = u"cfile";
  EXPECT_EQ(FailureOf([&] { file->Save(); }),
            u"87|Veldmark2.CSecurityDescriptor|" + GetAPIErrorText(87));
  EXPECT_EQ(FailureOf([&] { SystemRoot().SetNamedSD(file.Get()); }),
            u"87|Veldmark2.CSupport|" + GetAPIErrorText(87));
  EXPECT_EQ(ErrorOf([] { Make<CSecurityDescriptor>()->Save(); }), 91);
  EXPECT_EQ(ErrorOf([] { SystemRoot().SetNamedSD(nullptr); }), 91);
  AceOf(file->GetDACL(), 1)->SetSid(nullptr);
  EXPECT_EQ(ErrorOf([&] { file->Save(); }), 6);
}

TEST_F(Descriptors, OfADrivesRootComeFromTheRootAndGoThere) {
  for (const char16_t* path : {u"C:\\", u"C:"}) {
    const auto root = Make<CFolder>();
    root->PutPath(path);
    journal().Clear();
    const auto descriptor = root->GetSecurityDescriptor();
    EXPECT_EQ(journal().entries().front(),
              (simulated::Journal::Entry{"GetFileSecurityW", "\\\\?\\C:\\"}));
    EXPECT_EQ(descriptor->ParentObjectPath, path);
    descriptor->GetDACL()->Grant(u"S-1-5-32-546", ACCESS_ALLOWED_ACE_TYPE, 1, AceFlagsEnum{}, {},
                                 {});
    descriptor->Save();
    EXPECT_EQ(journal().entries().at(journal().entries().size() - 2),
              (simulated::Journal::Entry{"SetNamedSecurityInfoW", "C:\\"}));
    EXPECT_EQ(ListOf(root->GetSecurityDescriptor()), ListOf(descriptor));
  }
}

/// The estate's security, which also says what it is asked.
class Questioned final : public simulated::SimulatedSecurity {
 public:
  using SimulatedSecurity::SimulatedSecurity;
  DWORD SetNamedSecurityInfoW(LPCWSTR name, DWORD type, DWORD information, const void* owner,
                              const void* group, const void* dacl, const void* sacl) override {
    const auto* const list = static_cast<const std::uint8_t*>(dacl);
    asked = ToUtf8(name) + Numbers({type, information, list[0], list[2] + 256u * list[3]}) + " " +
            SecurityText::OfList(list) + (owner || group || sacl ? " and more" : "");
    return SimulatedSecurity::SetNamedSecurityInfoW(name, type, information, owner, group, dacl,
                                                    sacl);
  }
  BOOL AccessCheckByType(const void* descriptor, const void* self, HANDLE token, DWORD access,
                         OBJECT_TYPE_LIST* types, DWORD types_length, GENERIC_MAPPING* mapping,
                         void* privileges, DWORD* privileges_length, DWORD* granted,
                         BOOL* status) override {
    asked += Numbers({access, mapping->GenericRead, mapping->GenericWrite, mapping->GenericExecute,
                      mapping->GenericAll, types_length, *privileges_length});
    if (types) asked += Numbers({types->Level, types->Sbz, types->ObjectType->Data1});
    return SimulatedSecurity::AccessCheckByType(descriptor, self, token, access, types,
                                                types_length, mapping, privileges,
                                                privileges_length, granted, status);
  }
  BOOL OpenProcessToken(HANDLE process, DWORD access, HANDLE* token) override {
    asked = Numbers({access});
    return SimulatedSecurity::OpenProcessToken(process, access, token);
  }
  BOOL AdjustTokenPrivileges(HANDLE token, BOOL disable_all, const TOKEN_PRIVILEGES* state,
                             DWORD length, TOKEN_PRIVILEGES* previous, DWORD* needed) override {
    asked += Numbers({static_cast<DWORD>(disable_all), state->PrivilegeCount,
                      state->Privileges[0].Luid.LowPart, state->Privileges[0].Attributes, length});
    return SimulatedSecurity::AdjustTokenPrivileges(token, disable_all, state, length, previous,
                                                    needed);
  }
  std::string asked;

 private:
  static std::string Numbers(std::initializer_list<std::uint32_t> numbers) {
    std::string text;
    for (const std::uint32_t number : numbers) text += " " + Hex(number);
    return text;
  }
};

using Questions = TestIn<MixedWorld<SimulatedApartment, Questioned>>;

TEST_F(Questions, OfASaveNameTheObjectTheProtectionAndTheListThatIsWritten) {
  const auto descriptor = Make<CSecurityDescriptor>();
  const auto list = Make<CAcl>();
  list->SetAces(Make<CAces>());
  descriptor->SetDACL(list);
  const auto asked = [&](const char16_t* type, const char16_t* path) {
    descriptor->SetParentObject(type, path);
    ErrorOf([&] { descriptor->Save(); });
    return own.asked;
  };
  const std::tuple<const char16_t*, const char16_t*, const char*> objects[] = {
      {u"CFile", u"C:\\x", "C:\\x 1"},        {u"CFolder", u"C:", "C:\\ 1"},
      {u"CService", u"Spooler", "Spooler 2"}, {u"CPrinter", u"LPT1:", "LPT1: 3"},
      {u"CRegKey", u"MACHINE", "MACHINE 4"},  {u"CShare", u"\\\\S\\C:", "\\\\S\\C: 5"},
      {u"LDAP", u"CN=x", "CN=x 8"},           {u"cfolder", u"C:", "C: 0"}};
  for (const auto& [type, path, object] : objects) {
    EXPECT_EQ(asked(type, path), object + std::string(" 20000004 2 8 "));
  }
  const std::tuple<int, int, int, bool, bool, const char*> entries[] = {
      {0, 0, 0, false, false, "(0;00;0;SY)"},
      {0, 19, 1, false, false, "(0;13;1;SY)"},
      {1, 2, 1, false, false, "(1;02;1;SY)"},
      {1, 0, 0, false, false, ""},
      {1, 16, 1, false, false, ""},
      {2, 0, 1, false, false, ""},
      {4, 0, 1, false, false, ""},
      {5, 0, 0, true, false, "(5;00;0;<4fc59cab>;SY)"},
      {5, 16, 1, false, true, "(5;10;1;{7fc59cab};SY)"},
      {6, 1, 1, true, true, "(6;01;1;<4fc59cab>;{7fc59cab};SY)"},
      {5, 8, 1, false, false, "(5;08;1;SY)"},
      {6, 0, 0, true, true, ""},
      {6, 16, 1, true, true, ""},
      {7, 0, 1, false, false, ""},
  };
  list->IsProtected = true;
  std::string written;
  unsigned size = 8, revision = 2;
  for (const auto& [type, flags, mask, has_object, has_inherited_object, told] : entries) {
    const auto ace = Make<CAce>();
    ace->AceType = static_cast<AceTypeEnum>(type);
    ace->AceFlags = static_cast<std::uint8_t>(flags);
    ace->AccessMask = mask;
    if (has_object) ace->ObjectTypeGUID = u"{4FC59CAB-7EDE-F8D8-B1B0-000102030AFF}";
    if (has_inherited_object) {
      ace->InheritedObjectTypeGUID = u"7fc59cab-7EDE-F8D8-B1B0-000102030AFF.";
    }
    ace->SetSid(Engine().GetSidFromText(u"S-1-5-18", u""));
    list->GetAces()->Add(ace.Get());
    written += told;
    // An object entry is given room for both of its types.
    if (*told) size += 12 + (type < 5 ? 8 : 52);
    if (*told && type >= 5) revision = 4;
    EXPECT_EQ(asked(u"LDAP", u"CN=x"),
              "CN=x 8 80000004 " + Hex(revision) + " " + Hex(size) + " " + written);
  }
}

TEST_F(Questions, OfAnAccessCheckGiveTheRightsTheTypeAndTheRoom) {
  const auto descriptor =
      Engine().GetNamedSD({}, SE_DS_OBJECT, nullptr, {}, {}, {}, Text(kObjectEntries));
  const HANDLE client = own.OpenClientToken(u"S-1-5-21-1-2-3-1000", {u"S-1-5-32-544"});
  const auto check = [&](std::int32_t mask, const Text& type, std::int32_t level = 0) {
    own.asked.clear();
    const auto handle = static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(client));
    return descriptor->CheckAccess(handle, mask, type, level);
  };
  const Text type = u"{00000001-0002-0003-0405-060708090A0B}";
  const std::string mapping = " 20094 20028 20004 f01ff";
  EXPECT_TRUE(check(4, {}));
  EXPECT_EQ(own.asked, " 4" + mapping + " 0 0 4" + mapping + " 0 14");
  EXPECT_TRUE(check(4, type));
  EXPECT_EQ(own.asked, " 4" + mapping + " 1 0 0 0 1 4" + mapping + " 1 14 0 0 1");
  EXPECT_FALSE(check(0x100, type));
  EXPECT_EQ(ErrorOf([&] { check(4, type, 2); }), 87);
  EXPECT_EQ(own.asked, " 4" + mapping + " 1 0 2 0 1");
  EXPECT_EQ(ErrorOf([&] { check(4, u"no guid"); }), static_cast<std::int32_t>(0x800401F3u));
  faults().FailEvery("AccessCheckByType", 6);
  EXPECT_EQ(FailureOf([&] { check(4, {}); }),
            u"6|Veldmark2.CSecurityDescriptor|" + GetAPIErrorText(6));
  faults().Clear();
  faults().FailEvery("AccessCheckByType", 122);
  EXPECT_EQ(ErrorOf([&] { check(4, {}); }), 122) << "no room is enough";
  EXPECT_EQ(ErrorOf([&] { Make<CSecurityDescriptor>()->CheckAccess(0, 4, {}, 0); }), 13);
  platform.files.CloseHandle(client);
}

TEST_F(Questions, OfAPrivilegeGoToTheTokenEvenWhereThereIsNoneOfThatName) {
  SystemRoot root;
  const std::tuple<const char16_t*, bool, const char*> cases[] = {
      {u"SeBackupPrivilege", true, " 28 0 1 11 2 1c"},
      {u"SEBACKUPPRIVILEGE", false, " 28 0 1 11 0 1c"},
      {u"SeNoSuchPrivilege", true, " 28 0 1 0 2 1c"}};
  for (const auto& [name, enable, asked] : cases) {
    Err().Set(AutomationError(1, u"Before", u"Before"));
    EXPECT_TRUE(root.SetPrivilege(u"", name, enable));
    EXPECT_EQ(own.asked, asked);
    EXPECT_EQ(Err().Number(), 0);
  }
  for (const auto& [operation, mark] : {std::pair{"GetCurrentProcess", u""},
                                        {"OpenProcessToken", u" (OPT)"},
                                        {"AdjustTokenPrivileges", u" (ATP)"}}) {
    faults().Clear();
    faults().FailEvery(operation, 5);
    EXPECT_EQ(FailureOf([&] { root.SetPrivilege(u"", u"SeBackupPrivilege", true); }),
              u"5|Veldmark2.CSupport|" + GetAPIErrorText(5) + mark);
  }
}

TEST(DescriptorFaults, LeaveNothingOpenAndTheObjectAsItWas) {
  const auto scenario = [](DescriptorWorld& world) {
    SystemRoot().SetPrivilege(u"", u"SeBackupPrivilege", true);
    const auto descriptor = world.Of(u"C:\\D\\a");
    descriptor->GetDACL()->Grant(u"S-1-5-18", ACCESS_ALLOWED_ACE_TYPE, 1, AceFlagsEnum{}, {}, {});
    descriptor->Save();
    world.Named(u"\\\\SRV\\Spooler", SE_SERVICE);
    world.Named(u"\\\\srv\\Guarded", SE_LMSHARE);
  };
  const auto after = [](DescriptorWorld& world, const std::string& failed, bool) {
    world.faults().Clear();
    if (failed == "SetNamedSecurityInfoW") {
      EXPECT_EQ(ListOf(world.Of(u"C:\\D\\a")), kListOfA);
    }
  };
  SweepFaults<DescriptorWorld>(
      {"LookupPrivilegeValueW", "FindClose", "CloseHandle", "LocalFree", "NetApiBufferFree",
       "GetComputerNameW", "FileTimeToLocalFileTime", "FileTimeToSystemTime"},
      scenario, after);
}

}  // namespace
}  // namespace veldmark
