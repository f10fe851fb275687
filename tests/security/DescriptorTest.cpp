#include "security/CSecurityDescriptor.h"

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "root/SystemRoot.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSid.h"
#include "storage/CFile.h"
#include "storage/CFolder.h"
#include "storage/CShare.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"

namespace veldmark {
namespace {

/// The list as text, an entry a line: type, flags, mask and SID, and the GUIDs of an object entry.
std::string ListOf(const Ref<CSecurityDescriptor>& descriptor) {
  std::string text;
  const Ref<CAces> aces = descriptor->GetDACL()->GetAces();
  for (std::int32_t index = 1; index <= aces->Count(); ++index) {
    Variant position(index);
    const Ref<CAce> ace = aces->Item(position);
    char line[64];
    std::snprintf(line, sizeof line, "%d %d %X ", ace->AceType, ace->AceFlags,
                  static_cast<unsigned>(ace->AccessMask));
    text += line +
            ToUtf8(ace->GetSid()->SidText() + ace->ObjectTypeGUID + ace->InheritedObjectTypeGUID) +
            "\n";
  }
  return text;
}

Ref<CAce> AceOf(const Ref<CSecurityDescriptor>& descriptor, std::int32_t position) {
  Variant index(position);
  return descriptor->GetDACL()->GetAces()->Item(index);
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

class Descriptors : public testing::Test, protected DescriptorWorld {
 protected:
  void TearDown() override {
    for (const Counter counter : {Counter::kSecurityDescriptor, Counter::kAcl, Counter::kAces,
                                  Counter::kAce, Counter::kSid}) {
      EXPECT_EQ(Apartment::Current().counters[counter], 0) << static_cast<int>(counter);
    }
    EXPECT_EQ(ledger().Report(), "");
  }
};

TEST_F(Descriptors, OfFilesTellOwnerAndList) {
  const auto descriptor = Of(u"C:\\D\\a");
  EXPECT_EQ(descriptor->ParentObjectType, u"CFile");
  EXPECT_EQ(descriptor->ParentObjectPath, u"C:\\D\\a");
  EXPECT_EQ(descriptor->GetOwnerSid()->SidText(), u"S-1-5-32-544");
  EXPECT_EQ(descriptor->GetOwnerSid()->ResidesOnServer(), u"LOCALHOST");
  EXPECT_EQ(descriptor->Revision(), 1);
  EXPECT_EQ(static_cast<std::uint16_t>(descriptor->Control()), 0x9004);
  EXPECT_EQ(ListOf(descriptor),
            "1 0 2 S-1-5-32-546\n0 0 1F01FF S-1-5-32-544\n0 0 120089 S-1-1-0\n");
  const auto list = descriptor->GetDACL();
  EXPECT_TRUE(list->IsProtected);
  EXPECT_EQ(list->Revision(), 2);
  EXPECT_EQ(list->BytesInUse(), 8 + 24 + 24 + 20);
  EXPECT_EQ(list->BytesFree(), 0);
  EXPECT_EQ(list->BinaryACL().If<ByteArray>()->elements.size(), 76u);
  EXPECT_EQ(AceOf(descriptor, 3)->PermissionsString(), u"R");
  EXPECT_EQ(AceOf(descriptor, 3)->InheritanceScope(), u"This file only");

  // Null and empty lists look alike, and neither is protected against being told apart by control.
  EXPECT_EQ(ListOf(Of(u"C:\\D\\open")) + ListOf(Of(u"C:\\D\\closed")), "");
  EXPECT_EQ(Of(u"C:\\D\\open")->GetDACL()->BinaryACL(), Variant());
  EXPECT_EQ(Of(u"C:\\D\\closed")->GetDACL()->BinaryACL().If<ByteArray>()->elements.size(), 8u);

  const auto folder = Engine().GetFolder(u"\\\\srv\\share")->GetSecurityDescriptor();
  EXPECT_EQ(folder->ParentObjectType, u"CFolder");
  EXPECT_EQ(folder->GetOwnerSid()->ResidesOnServer(), u"SRV");
  EXPECT_FALSE(AceOf(folder, 1)->PermissionsString().empty());
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
  for (const auto& [error, raised] : {std::pair{2, 2}, {3, 3}, {53, 53}}) {
    faults().Clear();
    faults().FailEvery("GetFileSecurityW", static_cast<DWORD>(error));
    EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\a"); }), raised);
  }
}

TEST_F(Descriptors, OfFilesAreReadEntryByEntryAsPlainOnes) {
  FileNodeOf(u"C:\\D\\a").Security(u"O:BAG:SYD:P(OA;;RP;;;SY)(A;;FR;;;SY)");
  const auto descriptor = Of(u"C:\\D\\a");
  // The object flags of the first entry stand where a SID would begin.
  EXPECT_EQ(AceOf(descriptor, 1)->AceType, ACCESS_ALLOWED_OBJECT_ACE_TYPE);
  EXPECT_FALSE(AceOf(descriptor, 1)->GetSid()->IsValid());
  EXPECT_EQ(AceOf(descriptor, 2)->GetSid()->SidText(), u"S-1-5-18");
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
  struct Case {
    const char16_t* name;
    SE_OBJECT_TYPE type;
    const char16_t* parent;
    const char* list;
  };
  const Case cases[] = {
      {u"C:\\D\\a", SE_FILE_OBJECT, u"CFile",
       "1 0 2 S-1-5-32-546\n0 0 1F01FF S-1-5-32-544\n0 0 120089 S-1-1-0\n"},
      {u"\\\\SRV\\Spooler", SE_SERVICE, u"CService", "0 0 F01FF S-1-5-32-544\n"},
      {u"\\\\SRV\\Laser", SE_PRINTER, u"CPrinter", "0 0 20008 S-1-1-0\n0 9 F000C S-1-3-0\n"},
      {u"\\\\srv\\Guarded", SE_LMSHARE, u"CShare",
       "0 0 1301BF S-1-5-32-545\n0 0 1F01FF S-1-5-32-544\n"},
      {u"CURRENT_USER\\Keyed", SE_REGISTRY_KEY, u"CRegKey", "0 0 F003F S-1-5-32-544\n"},
      {u"CN=Anna", SE_DS_OBJECT, u"LDAP",
       "5 0 10 S-1-5-11{00000001-0002-0003-0405-060708090A0B}\n"
       "5 2 20 S-1-5-18{10000001-0002-0003-0405-060708090A0B}\n"
       "6 0 100 S-1-1-0{00000001-0002-0003-0405-060708090A0B}"
       "{10000001-0002-0003-0405-060708090A0B}\n"
       "5 0 4 S-1-5-32-544\n"},
  };
  for (const Case& c : cases) {
    const auto descriptor = Named(c.name, c.type);
    EXPECT_EQ(ListOf(descriptor), c.list) << ToUtf8(c.name);
    EXPECT_EQ(descriptor->ParentObjectType, c.parent);
    if (c.type != SE_LMSHARE) {
      EXPECT_EQ(AceOf(descriptor, 1)->GetSid()->ResidesOnServer(), u"ASKED");
    }
  }
  EXPECT_EQ(AceOf(Named(u"\\\\SRV\\Laser", SE_PRINTER), 2)->PermissionsString(),
            u"Manage Documents");
  EXPECT_EQ(Named(u"\\\\srv\\Guarded", SE_LMSHARE)->ParentObjectPath, u"\\\\SRV\\Guarded");
  const auto share = Named(u"\\\\srv\\Guarded", SE_LMSHARE);
  EXPECT_EQ(share->GetOwnerSid(), nullptr);
  EXPECT_EQ(AceOf(share, 1)->GetSid()->ResidesOnServer(), u"SRV");
  EXPECT_EQ(AceOf(share, 1)->PermissionsString(), u"Change");
  struct Failure {
    const char16_t* name;
    std::int32_t type;
    std::int32_t error;
  };
  for (const Failure& c : {Failure{u"C:\\none", 1, 2},
                           {u"none", 2, 1060},
                           {u"none", 3, 1801},
                           {u"MACHINE\\none", 4, 2},
                           {u"\\\\srv\\none", 5, 2310},
                           {u"C:\\D\\a", 6, 87},
                           {u"C:\\D\\a", 0, 87}}) {
    EXPECT_EQ(ErrorOf([&] { Named(c.name, static_cast<SE_OBJECT_TYPE>(c.type)); }), c.error)
        << ToUtf8(c.name);
  }
  EXPECT_EQ(ErrorOf([&] { Named(u"\\\\none\\share", SE_LMSHARE); }) != 0, true);
}

TEST_F(Descriptors, OfSharesWithoutOneDependOnTheirType) {
  const auto share = Make<CShare>();
  const auto everyone = Engine().GetShareSD(u"srv", u"Share", share.Get());
  EXPECT_EQ(ListOf(everyone), "0 0 1F01FF S-1-1-0\n");
  EXPECT_EQ(AceOf(everyone, 1)->PermissionsString(), u"Full Control");
  EXPECT_FALSE(everyone->GetDACL()->IsProtected);
  EXPECT_EQ(everyone->GetOwnerSid(), nullptr);
  share->ShareType = ST_IPC;
  EXPECT_EQ(Engine().GetShareSD(u"srv", u"IPC", share.Get()), nullptr);
  EXPECT_EQ(ErrorOf([&] { Named(u"\\\\srv\\share", SE_LMSHARE); }), 91);
  EXPECT_EQ(ErrorOf([&] { Engine().GetShareSD(u"srv", u"Share", Make<CFile>().Get()); }), 13);
}

TEST_F(Descriptors, OfStringsHaveNoParent) {
  const auto descriptor =
      Engine().GetNamedSD({}, SE_FILE_OBJECT, nullptr, {}, {}, u"SRV", u"O:BUD:P(A;;FR;;;SY)");
  EXPECT_EQ(static_cast<std::uint16_t>(descriptor->Control()), 0x9004);
  EXPECT_EQ(descriptor->GetOwnerSid()->ResidesOnServer(), u"SRV");
  EXPECT_EQ(ListOf(descriptor), "0 0 120089 S-1-5-18\n");
  EXPECT_EQ(descriptor->ParentObjectType + descriptor->ParentObjectPath, u"");
  EXPECT_NE(ErrorOf([] { Engine().GetNamedSD({}, SE_FILE_OBJECT, nullptr, {}, {}, {}, u"D:x"); }),
            0);
}

TEST_F(Descriptors, SaveWritesWhatTheEntriesSay) {
  const auto descriptor = Of(u"C:\\D\\a");
  descriptor->GetDACL()->Grant(u"S-1-5-32-545", ACCESS_ALLOWED_ACE_TYPE, 0x1200A9, AceFlagsEnum{},
                               {}, {});
  descriptor->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\a")),
            "1 0 2 S-1-5-32-546\n0 0 1F01FF S-1-5-32-544\n0 0 120089 S-1-1-0\n"
            "0 0 1200A9 S-1-5-32-545\n");
  // A denied entry without rights goes, one that allows stays without them.
  AceOf(descriptor, 1)->Delete();
  AceOf(descriptor, 3)->Delete();
  descriptor->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\a")),
            "0 0 1F01FF S-1-5-32-544\n0 0 0 S-1-1-0\n0 0 1200A9 S-1-5-32-545\n");
  EXPECT_TRUE(Of(u"C:\\D\\a")->GetDACL()->IsProtected);

  // Without protection it inherits, and what was inherited before comes from the folder again.
  descriptor->GetDACL()->IsProtected = false;
  descriptor->Save();
  const auto inheriting = Of(u"C:\\D\\a");
  EXPECT_FALSE(inheriting->GetDACL()->IsProtected);
  EXPECT_GT(inheriting->GetDACL()->GetAces()->Count(), 3);
  EXPECT_TRUE(AceOf(inheriting, 4)->IsInherited());
  const std::string list = ListOf(inheriting);
  inheriting->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\a")), list);

  const auto closed = Of(u"C:\\D\\closed");
  closed->Save();
  EXPECT_EQ(Of(u"C:\\D\\closed")->GetDACL()->BinaryACL().If<ByteArray>()->elements.size(), 8u);
}

TEST_F(Descriptors, SaveLeavesOutWhatCantBeWritten) {
  const auto descriptor = Named(u"CN=Anna", SE_DS_OBJECT);
  const std::string list = ListOf(descriptor);
  journal().Clear();
  descriptor->Save();
  EXPECT_EQ(ListOf(Named(u"CN=Anna", SE_DS_OBJECT)), list);
  // 52 bytes beside the SID for each object entry.
  EXPECT_EQ(journal().entries().front().operation, "LocalAlloc");
  EXPECT_EQ(journal().entries().front().argument, std::to_string(8 + 4 * 52 + 12 + 12 + 12 + 16));
  AceOf(descriptor, 1)->AceType = SYSTEM_AUDIT_ACE_TYPE;
  AceOf(descriptor, 2)->AceType = ACCESS_ALLOWED_COMPOUND_ACE_TYPE;
  AceOf(descriptor, 3)->PutIsInherited(true);
  descriptor->GetDACL()->IsProtected = true;
  descriptor->Save();
  EXPECT_EQ(ListOf(Named(u"CN=Anna", SE_DS_OBJECT)), "5 0 4 S-1-5-32-544\n");

  // Attached to another object it is saved there.
  const auto file = Of(u"C:\\D\\a");
  file->ParentObjectPath = u"C:\\D\\closed";
  file->Save();
  EXPECT_EQ(ListOf(Of(u"C:\\D\\closed")), ListOf(file));
  file->ParentObjectType = u"cfile";
  EXPECT_EQ(ErrorOf([&] { file->Save(); }), 87);
  EXPECT_EQ(ErrorOf([] { Make<CSecurityDescriptor>()->Save(); }), 91);
  EXPECT_EQ(ErrorOf([] { SystemRoot().SetNamedSD(nullptr); }), 91);
  AceOf(file, 1)->SetSid(nullptr);
  EXPECT_EQ(ErrorOf([&] { file->Save(); }), 6);
}

TEST_F(Descriptors, CheckAccessAsksThePlatformForTheClient) {
  const auto key = Named(u"\\\\SRV\\Spooler", SE_SERVICE);
  const auto token = [&](const Text& sid) {
    return simulated.security().OpenClientToken(sid, {u"S-1-5-32-544"});
  };
  const HANDLE client = token(u"S-1-5-21-1-2-3-1000");
  const auto handle = static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(client));
  EXPECT_TRUE(key->CheckAccess(handle, 0x1, {}, 0));
  EXPECT_FALSE(Named(u"\\\\SRV\\Laser", SE_PRINTER)->CheckAccess(handle, 0x4, {}, 0));
  const auto anna = Named(u"CN=Anna", SE_DS_OBJECT);
  EXPECT_TRUE(anna->CheckAccess(handle, 0x4, {}, 0));
  EXPECT_TRUE(anna->CheckAccess(handle, 0x4, u"{00000001-0002-0003-0405-060708090A0B}", 0));
  EXPECT_FALSE(anna->CheckAccess(handle, 0x100, u"{00000001-0002-0003-0405-060708090A0B}", 0));

  EXPECT_EQ(ErrorOf([&] { anna->CheckAccess(handle, 4, u"no guid", 0); }),
            static_cast<std::int32_t>(0x800401F3u));
  EXPECT_EQ(ErrorOf([&] { Make<CSecurityDescriptor>()->CheckAccess(handle, 4, {}, 0); }), 13);
  EXPECT_EQ(ErrorOf([&] { Of(u"C:\\D\\a")->CheckAccess(handle, 1, {}, 0); }), 1338);
  faults().FailEvery("AccessCheckByType", 6);
  EXPECT_EQ(ErrorOf([&] { key->CheckAccess(handle, 1, {}, 0); }), 6);
  platform.files.CloseHandle(client);
}

TEST_F(Descriptors, SayHowFarTheyAreRead) {
  std::string said;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    if (event == 1) said += ToUtf8(*arguments[0].If<Text>()) + "\n";
  });
  Of(u"C:\\D\\a");
  EXPECT_EQ(said, "Retrieved Ace 1 of 3\nRetrieved Ace 2 of 3\nRetrieved Ace 3 of 3\n");
}

TEST_F(Descriptors, PrivilegesAreTurnedOnEvenWhereTheyAreMissing) {
  SystemRoot root;
  EXPECT_TRUE(root.SetPrivilege(u"", u"SeNoSuchPrivilege", true));
  for (const auto& [operation, mark] :
       {std::pair{"OpenProcessToken", u" (OPT)"}, {"AdjustTokenPrivileges", u" (ATP)"}}) {
    faults().Clear();
    faults().FailEvery(operation, 5);
    try {
      root.SetPrivilege(u"", u"SeBackupPrivilege", true);
      FAIL() << operation;
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number, 5);
      EXPECT_EQ(error.description, GetAPIErrorText(5) + mark);
    }
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
      EXPECT_EQ(ListOf(world.Of(u"C:\\D\\a")),
                "1 0 2 S-1-5-32-546\n0 0 1F01FF S-1-5-32-544\n0 0 120089 S-1-1-0\n");
    }
  };
  SweepFaults<DescriptorWorld>(
      {"LookupPrivilegeValueW", "FindClose", "CloseHandle", "LocalFree", "NetApiBufferFree",
       "GetComputerNameW", "FileTimeToLocalFileTime", "FileTimeToSystemTime"},
      scenario, after);
}

}  // namespace
}  // namespace veldmark
