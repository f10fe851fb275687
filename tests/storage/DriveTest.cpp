#include "automation/Secret.h"
#include "network/CServer.h"
#include "root/CMyComputer.h"
#include "root/SystemRoot.h"
#include "storage/CDrive.h"
#include "storage/CDrives.h"
#include "storage/CShare.h"
#include "storage/CShares.h"
#include "storage/CVolume.h"
#include "storage/CVolumes.h"
#include "storage/StorageFixture.h"
#include "support/MixedPlatform.h"
#include "support/ValuesOf.h"

namespace veldmark {
namespace {

/// Drives of every kind: a stick in A, a disc in D, a share under P, nothing in F.
class Drives : public StorageTest {
 protected:
  Drives() {
    local().AddDrive(u'A', kDriveRemovable);
    local().AddDrive(u'D', kDriveCdrom);
    local().AddDrive(u'F', kDriveRemovable);
    local().volume(u'A').label = u"STICK";
    local().volume(u'D').label = u"DISC";
    local().volume(u'D').serial = 0xFEDCBA98;
    local().volume(u'F').ready = false;
    local().volume(u'A').serial = 1;
    local().volume(u'C').serial = 0x1A2B3C4D;
    estate().FindComputer(u"SRV")->volume(u'C').serial = 0x10;
    estate().MapDrive(u'P', u"\\\\SRV\\Share");
  }

  static Ref<CDrive> Drive(const Text& letter) {
    Variant key(letter);
    return Make<SystemRoot>()->GetMyComputer()->GetDrives()->Item(key);
  }
};

Variant Bytes(std::int64_t count) { return Variant(Currency{count * Currency::kScale}); }

TEST_F(Drives, AreListedByLetterRootAndTypeWithoutAskingForMore) {
  const Ref<CDrives> drives = Make<SystemRoot>()->GetMyComputer()->GetDrives();
  std::string listed;
  for (std::int32_t i = 1; i <= drives->Count(); ++i) {
    Variant index(i);
    const Ref<CDrive> drive = drives->Item(index);
    const Ref<CFolder> root = drive->GetRootFolder();
    listed += ToUtf8(drive->DriveLetter + u" " + root->Path() + root->FolderName + u" ") +
              std::to_string(drive->DriveType) + ", ";
  }
  EXPECT_EQ(listed, "A A:\\ 2, C C:\\ 3, D D:\\ 5, E E:\\ 3, F F:\\ 2, P P:\\ 4, ");
  EXPECT_EQ(journal().entries().size(), 7u);
  EXPECT_EQ(Engine().GetDriveInfo(u"Q:", false)->DriveType, DT_Unknown);
  faults().FailEvery("GetLogicalDriveStringsW", 5);
  EXPECT_EQ(Engine().GetDrives()->Count(), 0);
}

TEST_F(Drives, TellTheirSpaceAsCurrencyOnceItIsAskedFor) {
  simulated::Volume& volume = local().volume(u'C');
  volume.free = 900;
  volume.free_to_caller = 80;
  constexpr std::int64_t kMost = 922337203685477;
  for (const std::int64_t total : {kMost + 1, kMost, std::int64_t{1000}}) {
    volume.total = static_cast<std::uint64_t>(total);
    const Ref<CDrive> drive = Drive(u"c");
    journal().Clear();
    for (int attempt = 1; attempt <= 2; ++attempt) {
      Variant told;
      EXPECT_EQ(ErrorOf([&] { told = drive->TotalSize(); }), total > kMost ? 6 : 0);
      EXPECT_EQ(told, total > kMost ? Variant() : Bytes(total));
    }
    EXPECT_EQ(journal().Count("GetDiskFreeSpaceExW"), total > kMost ? 2u : 1u);
  }
  // A value that a caller puts stands for a load; the free space has its own test.
  const Ref<CDrive> drive = Drive(u"C");
  drive->PutAvailableSpace(Variant(1));
  EXPECT_EQ(drive->TotalSize(), Variant());
  EXPECT_EQ(drive->FreeSpace(), Bytes(900));
  EXPECT_EQ(drive->AvailableSpace(), Bytes(900)) << "whatever the quota";
  EXPECT_EQ(Engine().GetDriveInfo(u"C:", true)->TotalSize(), Bytes(1000));
}

TEST_F(Drives, RaiseTheNumberThatTheirLoadLeftWhereTheSpaceCannotBeTold) {
  const Ref<CDrive> drive = Drive(u"F");
  Err().Set(AutomationError(77, u"Before", u"Of a call before, which decides nothing"));
  EXPECT_EQ(FailureOf([&] { drive->TotalSize(); }), u"5||The device is not ready.");
  faults().FailNthOf("WNetGetUniversalNameW", 2, 1222);
  EXPECT_EQ(FailureOf([] { Drive(u"P")->TotalSize(); }),
            u"1222|Veldmark2.CSupport|" + GetAPIErrorText(3));
}

TEST_F(Drives, TellTheirVolumeDataWhereThereIsAMedium) {
  const struct {
    const char16_t *letter, *name, *file_system, *share, *serial;
    std::int32_t longest;
    bool ready;
  } cases[] = {{u"A", u"Removable Disk", u"FAT32", u"", u"0000-0001", 255, true},
               {u"C", u"", u"NTFS", u"", u"1A2B-3C4D", 255, true},
               {u"D", u"DISC", u"CDFS", u"", u"FEDC-BA98", 110, true},
               {u"F", u"Removable Disk", u"", u"", u"", 0, false},
               {u"P", u"Share on 'Srv'", u"NTFS", u"\\\\SRV\\Share\\", u"0000-0010", 255, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.letter));
    const Ref<CDrive> drive = Drive(c.letter);
    EXPECT_EQ(drive->SerialNumberEx(), u"");
    EXPECT_EQ(drive->VolumeName(), c.name);
    EXPECT_EQ(drive->SerialNumberEx(), c.serial);
    EXPECT_EQ(drive->FileSystem(), c.file_system);
    EXPECT_EQ(drive->ShareName(), c.share);
    EXPECT_EQ(drive->MaxFilenameComponentLength(), c.longest);
    EXPECT_EQ(drive->Flags() != 0, c.ready);
    EXPECT_EQ(drive->IsReady(), c.ready);
  }
  EXPECT_EQ(Drive(u"P")->TotalSize(), Bytes(64ll << 30));
  EXPECT_EQ(journal().entries().back(),
            (simulated::Journal::Entry{"GetDiskFreeSpaceExW", "\\\\SRV\\Share\\"}));
}

TEST_F(Drives, AskAgainForWhatIsEmptyAndForNothingElse) {
  const Ref<CDrive> unnamed = Drive(u"C");
  const Ref<CDrive> named = Drive(u"D");
  journal().Clear();
  for (int i = 0; i < 3; ++i) unnamed->VolumeName();
  EXPECT_EQ(journal().Count("GetVolumeInformationW"), 3u);
  for (int i = 0; i < 3; ++i) named->VolumeName();
  EXPECT_EQ(journal().Count("GetVolumeInformationW"), 4u);
  // Whether a drive is ready is learnt with its name, and kept with it.
  local().volume(u'D').ready = false;
  local().volume(u'C').ready = false;
  EXPECT_TRUE(named->IsReady());
  EXPECT_FALSE(unnamed->IsReady());
  EXPECT_EQ(unnamed->SerialNumber, 0);
  // A drive that has lost its connection has no data and raises nothing.
  const Ref<CDrive> remote = Drive(u"P");
  estate().UnmapDrive(u'P');
  EXPECT_EQ(remote->VolumeName() + remote->ShareName(), u"");
  EXPECT_FALSE(remote->IsReady());
}

TEST_F(Drives, MoveTheDoorOfThePlayerForDiscsAndRemovableMediaOnly) {
  local().SetDiscDevice(false);  // what becomes of it isn't asked
  for (const auto& [letter, sent] :
       {std::pair{u"A", 1u}, {u"C", 0u}, {u"D", 1u}, {u"F", 1u}, {u"P", 0u}}) {
    const Ref<CDrive> drive = Drive(letter);
    for (const std::string state : {"open", "closed"}) {
      journal().Clear();
      state == "open" ? drive->EjectDisk() : drive->LoadDisk();
      ASSERT_EQ(journal().entries().size(), sent) << ToUtf8(letter);
      if (sent == 0) continue;
      EXPECT_EQ(journal().entries()[0].argument, "set CDAudio door " + state);
    }
  }
}

TEST_F(StorageTest, VolumesAreTheDisksThatAreSharedForAdministrationAndReadOnce) {
  simulated::Computer& machine = *estate().FindComputer(u"SRV");
  for (const char16_t letter : {u'D', u'E'}) machine.AddDrive(letter);
  machine.RemoveShare(u"D$");
  machine.SetPage(1);
  machine.volume(u'C').label = u"System";
  machine.volume(u'C').serial = 0x1A2B3C4D;
  machine.volume(u'E').ready = false;
  const Ref<CServer> server = Make<SystemRoot>()->GetServer(u"SRV", u"");
  const Ref<CVolumes> volumes = server->GetVolumes();
  EXPECT_EQ(volumes->Count(), 2);
  const Ref<CVolume> system = volumes->ItemByKey(u"C:");
  const Ref<CFolder> root = system->GetRootFolder();
  EXPECT_EQ(root->Path() + root->FolderName, u"\\\\SRV\\C$\\");
  journal().Clear();
  EXPECT_FALSE(system->IsReady()) << "nothing has been read";
  EXPECT_EQ(ValuesOf(*system),
            "C:|SRV|\\\\SRV\\C$|68719476736|17179869184|1A2B-3C4D|NTFS|255|459007");
  EXPECT_EQ(system->VolumeName, u"System");
  EXPECT_TRUE(system->IsReady());
  EXPECT_EQ(journal().entries().size(), 2u);
  const Ref<CVolume> empty = volumes->ItemByKey(u"E:");
  empty->PutFileSystem(u"as it was put");
  EXPECT_EQ(ValuesOf(*empty) + "|" + ToUtf8(empty->VolumeName),
            "E:|SRV|\\\\SRV\\E$||||as it was put|0|0|E:");
  EXPECT_FALSE(empty->IsReady());

  for (const DWORD code : {5u, 234u}) {
    faults().FailNthOf("NetServerDiskEnum", 2, code);
    EXPECT_EQ(ErrorOf([&] { server->GetVolumes(); }), static_cast<std::int32_t>(code));
  }
  std::string seen;
  Listen(*server, [&](std::int32_t event, std::span<Variant> arguments) {
    seen += std::to_string(event) + ValuesOf(*ToObject(arguments[0]));
    arguments[1].Assign(true);
  });
  server->PutAsyncFetch(true);
  EXPECT_EQ(server->GetVolumes()->Count(), 0);
  EXPECT_EQ(seen.substr(0, 17), "3C:|SRV|\\\\SRV\\C$|");
}

TEST_F(StorageTest, SharesTellWhatTheirRecordHoldsUntilTheyEnd) {
  simulated::Computer& machine = *estate().FindComputer(u"SRV");
  machine.SetPage(1);
  simulated::Share& full = machine.AddShare(u"Full", u"C:\\Shared");
  full.remark = u"All";
  full.permissions = 3;
  full.maximum_uses = 7;
  full.current_uses = 2;
  simulated::Share& tape = machine.AddShare(u"Tape", u"tape0", false, kShareTypeDevice);
  tape.remark = u"Old";
  tape.details_denied = true;
  const Ref<CShares> shares = Make<SystemRoot>()->GetServer(u"SRV", u"")->GetShares();
  const Ref<CShare> share = shares->ItemByKey(u"Full");
  EXPECT_EQ(ValuesOf(*share), "Full|SRV|C:\\Shared|\\\\SRV\\Full|All|0|3|7|2|");
  EXPECT_EQ(ValuesOf(*shares->ItemByKey(u"Tape")), "Tape|SRV||\\\\SRV\\Tape|Old|2|0|0|0|");
  const Ref<CFolder> root = share->GetRootFolder();
  EXPECT_EQ(root->Path() + root->FolderName, u"\\\\SRV\\Full\\");
  EXPECT_TRUE(share->Delete());
  EXPECT_FALSE(machine.FindShare(u"Full"));
  EXPECT_EQ(FailureOf([&] { share->Delete(); }), u"2310|Veldmark2.CShare|" + GetAPIErrorText(2310));
}

/// Tells any name.
class StubProvider final : public simulated::SimulatedNetworkProvider {
 public:
  using SimulatedNetworkProvider::SimulatedNetworkProvider;
  DWORD WNetGetUniversalNameW(LPCWSTR, DWORD, void* buffer, DWORD* size) override {
    *size = sizeof(UNIVERSAL_NAME_INFOW);
    if (!buffer) return kErrorMoreData;
    static_cast<UNIVERSAL_NAME_INFOW*>(buffer)->lpUniversalName = name.data();
    return kErrorSuccess;
  }
  Text name;
};

TEST(Providers, TellTheShareOfAMappedDriveToGiveItAReadableName) {
  simulated::SimulatedPlatform simulated;
  StubProvider provider(simulated.session());
  Platform platform = Mixed(simulated.platform(), provider);
  Apartment::Start(platform);
  for (const auto& [name, readable] : {std::pair{u"\\\\srv\\share\\sub\\", u"Share\\sub on 'Srv'"},
                                       {u"\\\\srv\\share", u"Shar on 'Srv'"},
                                       {u"\\\\srv", u" on 'Srv'"},
                                       {u"\\\\\\share\\", u"Share on ''"},
                                       {u"\\", u" on ''"},
                                       {u"", u" on ''"}}) {
    provider.name = name;
    Text volume, share;
    Engine().GetUNCPath(u"Z", volume, share);
    EXPECT_EQ(share, name);
    EXPECT_EQ(volume, readable) << ToUtf8(name);
  }
  Apartment::End();
}

TEST_F(StorageTest, ConnectionsOpenASharesFilesUntilTheyAreCancelled) {
  simulated::Computer& server = *estate().FindComputer(u"SRV");
  simulated::Share& pay = server.AddShare(u"Pay", u"C:\\Shared\\Deep");
  pay.user = u"SRV\\clerk";
  pay.password = u"thirty-first";
  server.AddShare(u"Odd", u"C:\\Shared").provider_fails = true;
  server.AddShare(u"Shut", u"C:\\Shared", true);
  estate().AddComputer(u"GONE").SetReachable(false);
  const Text file = u"\\\\SRV\\Pay\\f";
  SystemRoot root;
  EXPECT_FALSE(root.FileExists(file)) << "a share that asks who comes is closed";
  const struct {
    const char16_t *local, *remote, *password;
    std::int32_t type, raised;
  } cases[] = {{u"X:", u"\\\\SRV\\Share", u"", 1, 0},
               {u"x:", u"\\\\SRV\\Share", u"", 1, 85},
               {u"Y:", u"\\\\srv\\share\\Deep", u"", 1, 0},
               {u"Z:", u"\\\\SRV\\Share\\None", u"", 1, 67},
               {u"Z:", u"\\\\SRV\\None", u"", 1, 67},
               {u"Z:", u"\\\\GONE\\Share", u"", 1, 53},
               {u"Z:", u"", u"", 1, 87},
               {u"Z", u"\\\\SRV\\Share", u"", 1, 1200},
               {u"Z:", u"\\\\SRV\\Share", u"", 0, 66},
               {u"LPT1", u"\\\\SRV\\Share", u"", 2, 66},
               {u"Z:", u"\\\\SRV\\Shut", u"", 1, 5},
               {u"Z:", u"\\\\SRV\\Pay", u"wr0ng", 1, 86},
               {u"Z:", u"\\\\SRV\\Pay", u"thirty-first", 1, 0},
               {u"", u"\\\\SRV\\Pay", u"thirty-first", 0, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(Text(c.local) + u" " + c.remote));
    const auto type = static_cast<ResourceTypeEnum>(c.type);
    const Text user = *c.password ? u"srv\\Clerk" : u"";
    EXPECT_EQ(ErrorOf([&] {
                root.AddNetworkConnection(c.local, c.remote, user, Secret(c.password), type, 0,
                                          false);
              }),
              c.raised);
  }
  EXPECT_EQ(PathsIn(Engine().GetFiles(u"Y:")), " Y:\\f");
  for (const auto& call : journal().entries()) {
    EXPECT_EQ(call.argument.find("thirty"), std::string::npos) << call.operation;
  }
  EXPECT_TRUE(root.WriteTextFile(file, u"x", false));
  EXPECT_TRUE(root.CancelNetworkConnection(u"\\\\srv\\pay", false, false))
      << "the one without a drive";
  EXPECT_EQ(root.ReadTextFile(file), u"x") << "the drive's connection still stands";
  {
    const FileHandle open = Open(u"Z:\\f", kGenericRead, kFileShareRead);
    EXPECT_EQ(ErrorOf([&] { root.CancelNetworkConnection(u"z:", false, false); }), 2401);
    EXPECT_TRUE(root.CancelNetworkConnection(u"z:", false, true));
  }
  EXPECT_EQ(ErrorOf([&] { root.ReadTextFile(file); }), 75);
  const auto asked = [&](auto&& call) {
    journal().Clear();
    const Text failure = FailureOf(call);
    return ToUtf8(failure.substr(0, failure.rfind(u'|'))) + " " +
           journal().entries().front().argument;
  };
  EXPECT_EQ(asked([&] { root.CancelNetworkConnection(u"Z:", true, false); }),
            "2250|Veldmark2.SystemRoot Z:, 1");
  EXPECT_EQ(asked([&] {
              root.AddNetworkConnection(u"", u"", u"", Secret(u""), RESOURCETYPE_UNKNOWN, -1, true);
            }),
            "87|Veldmark2.SystemRoot - -> - as  for -1, 1");
  EXPECT_EQ(asked([&] {
              root.AddNetworkConnection(u"Z:", u"\\\\SRV\\Odd", u"a", Secret(u""),
                                        RESOURCETYPE_DISK, 77, false);
            }),
            "1208|Veldmark2.SystemRoot Z: -> \\\\SRV\\Odd as a for 77, 0");
  EXPECT_EQ(Err().Description(), u"A error specific to the network provider occurred");
}

}  // namespace
}  // namespace veldmark
