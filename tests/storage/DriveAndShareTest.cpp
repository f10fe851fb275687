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

namespace veldmark {
namespace {

using Volumes = StorageTest;
using Shares = StorageTest;
using Connections = StorageTest;

/// Drives of every kind: a stick in A, a disc in D, a share under P, nothing in F.
class Drives : public StorageTest {
 protected:
  Drives() {
    for (const char16_t letter : {u'A', u'F'}) local().AddDrive(letter, kDriveRemovable);
    local().AddDrive(u'D', kDriveCdrom);
    local().volume(u'A').label = u"STICK";
    local().volume(u'D').label = u"DISC";
    local().volume(u'D').serial = 0xFEDCBA98;
    local().volume(u'F').ready = false;
    local().volume(u'A').serial = 1;
    local().volume(u'C').serial = 0x1A2B3C4D;
    server.volume(u'C').serial = 0x10;
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
  EXPECT_EQ(ListOf(drives, {u"DriveLetter", u"Path", u"DriveType"}),
            "A|A:|2, C|C:|3, D|D:|5, E|E:|3, F|F:|2, P|P:|4");
  Variant last(u"p");
  EXPECT_EQ(ValuesOf(*drives->Item(last)->GetRootFolder(), {u"Path", u"FolderName"}), "P:|\\");
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
  EXPECT_EQ(ValuesOf(*drive, {u"TotalSize", u"FreeSpace", u"AvailableSpace"}), "|900|900")
      << "whatever the quota";
  EXPECT_EQ(Drive(u"C")->AvailableSpace(), Bytes(900));
}

TEST_F(Drives, RaiseTheNumberThatTheirLoadLeftWhereTheSpaceCannotBeTold) {
  const Ref<CDrive> drive = Drive(u"F");
  Err().Set(AutomationError(77, u"Before", u"Of a call before, which decides nothing"));
  EXPECT_EQ(FailureOf([&] { drive->TotalSize(); }), u"5||The device is not ready.");
  EXPECT_EQ(ErrorOf([] { Engine().GetDriveInfo(u"F:", true); }), 5) << "loaded at once";
  faults().FailNthOf("WNetGetUniversalNameW", 2, 1222);
  EXPECT_EQ(FailureOf([] { Drive(u"P")->TotalSize(); }),
            u"1222|Veldmark2.CSupport|" + GetAPIErrorText(3));
}

TEST_F(Drives, TellTheirVolumeDataWhereThereIsAMedium) {
  // The serial number is there once another value has been read.
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"A", "|Removable Disk|0000-0001|FAT32||255|518|1"},
      {u"C", "||1A2B-3C4D|NTFS||255|459007|1"},
      {u"D", "|DISC|FEDC-BA98|CDFS||110|524293|1"},
      {u"F", "|Removable Disk||||0|0|0"},
      {u"P", "|Share on 'Srv'|0000-0010|NTFS|\\\\SRV\\Share\\|255|459007|1"}};
  for (const auto& [letter, values] : cases) {
    const Ref<CDrive> drive = Drive(letter);
    const std::string told =
        ValuesOf(*drive, {u"SerialNumberEx", u"VolumeName", u"SerialNumberEx", u"FileSystem",
                          u"ShareName", u"MaxFilenameComponentLength", u"Flags"});
    EXPECT_EQ(told + "|" + std::to_string(drive->IsReady()), values);
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
  for (int i = 0; i < 3; ++i) named->VolumeName();
  EXPECT_EQ(journal().Count("GetVolumeInformationW"), 3u + 1u);
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
  const char* const moved =
      "mciSendStringA set CDAudio door open;mciSendStringA set CDAudio door closed;";
  for (const auto& [letter, has_door] :
       {std::pair{u"A", true}, {u"C", false}, {u"D", true}, {u"F", true}, {u"P", false}}) {
    const Ref<CDrive> drive = Drive(letter);
    journal().Clear();
    drive->EjectDisk();
    drive->LoadDisk();
    EXPECT_EQ(Called({""}), has_door ? moved : "") << ToUtf8(letter);
  }
}

TEST_F(Volumes, AreTheDisksThatAreSharedForAdministrationAndReadOnce) {
  for (const char16_t letter : {u'D', u'E'}) server.AddDrive(letter);
  server.RemoveShare(u"D$");
  server.SetPage(1);
  server.volume(u'C').label = u"System";
  server.volume(u'C').serial = 0x1A2B3C4D;
  server.volume(u'E').ready = false;
  const Ref<CServer> owner = Make<SystemRoot>()->GetServer(u"SRV", u"");
  const Ref<CVolumes> volumes = owner->GetVolumes();
  EXPECT_EQ(volumes->Count(), 2);
  const Ref<CVolume> system = volumes->ItemByKey(u"C:");
  EXPECT_EQ(ValuesOf(*system->GetRootFolder(), {u"Path", u"FolderName"}), "\\\\SRV\\C$|\\");
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

  faults().FailNthOf("NetServerDiskEnum", 2, 5);
  EXPECT_EQ(ErrorOf([&] { owner->GetVolumes(); }), 5);
  std::string log;
  Log(log, owner.Get(), u"VolumePath", 1);
  owner->PutAsyncFetch(true);
  EXPECT_EQ(owner->GetVolumes()->Count(), 0);
  EXPECT_TRUE(log.ends_with("Share Share\n3 CVolume \\\\SRV\\C$\n")) << log;
}

TEST_F(Shares, TellWhatTheirRecordHoldsUntilTheyEnd) {
  server.SetPage(1);
  simulated::Share& full = server.AddShare(u"Full", u"C:\\Shared");
  full.remark = u"All";
  full.permissions = 3;
  full.maximum_uses = 7;
  full.current_uses = 2;
  simulated::Share& tape = server.AddShare(u"Tape", u"tape0", false, kShareTypeDevice);
  tape.remark = u"Old";
  tape.details_denied = true;
  const Ref<CShares> shares = Make<SystemRoot>()->GetServer(u"SRV", u"")->GetShares();
  const Ref<CShare> share = shares->ItemByKey(u"Full");
  EXPECT_EQ(ValuesOf(*share), "Full|SRV|C:\\Shared|\\\\SRV\\Full|All|0|3|7|2|");
  EXPECT_EQ(ValuesOf(*shares->ItemByKey(u"Tape")), "Tape|SRV||\\\\SRV\\Tape|Old|2|0|0|0|");
  EXPECT_EQ(ValuesOf(*share->GetRootFolder(), {u"Path", u"FolderName"}), "\\\\SRV\\Full|\\");
  EXPECT_TRUE(share->Delete());
  EXPECT_FALSE(server.FindShare(u"Full"));
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
  MixedWorld<SimulatedApartment, StubProvider> world;
  for (const auto& [name, readable] : {std::pair{u"\\\\srv\\share\\sub\\", u"Share\\sub on 'Srv'"},
                                       {u"\\\\srv\\share", u"Shar on 'Srv'"},
                                       {u"\\\\srv", u" on 'Srv'"},
                                       {u"\\\\\\share\\", u"Share on ''"},
                                       {u"\\", u" on ''"}}) {
    world.own.name = name;
    Text volume, share;
    Engine().GetUNCPath(u"Z", volume, share);
    EXPECT_EQ(share, name);
    EXPECT_EQ(volume, readable) << ToUtf8(name);
  }
}

TEST_F(Connections, OpenASharesFilesUntilTheyAreCancelled) {
  simulated::Share& pay = server.AddShare(u"Pay", u"C:\\Shared\\Deep");
  pay.user = u"SRV\\clerk";
  pay.password = u"thirty-first";
  server.AddShare(u"Odd", u"C:\\Shared").provider_fails = true;
  server.AddShare(u"Shut", u"C:\\Shared", true);
  estate().AddComputer(u"GONE").SetReachable(false);
  const Text file = u"\\\\SRV\\Pay\\f";
  SystemRoot root;
  EXPECT_FALSE(root.FileExists(file)) << "a share that asks who comes is closed";
  const auto connect = [&](const Text& drive, const Text& remote, const Text& password = u"",
                           ResourceTypeEnum type = RESOURCETYPE_DISK) {
    const Text user = password.empty() ? u"" : u"srv\\Clerk";
    return ErrorOf(
        [&] { root.AddNetworkConnection(drive, remote, user, Secret(password), type, 0, false); });
  };
  const Text share = u"\\\\SRV\\Share";
  EXPECT_EQ(connect(u"X:", share), 0);
  EXPECT_EQ(connect(u"x:", share), 85);
  EXPECT_EQ(connect(u"Y:", u"\\\\srv\\share\\Deep"), 0);
  EXPECT_EQ(connect(u"Z:", share + u"\\None"), 67);
  EXPECT_EQ(connect(u"Z:", u"\\\\SRV\\None"), 67);
  EXPECT_EQ(connect(u"Z:", u"\\\\GONE\\Share"), 53);
  EXPECT_EQ(connect(u"Z:", u""), 87);
  EXPECT_EQ(connect(u"Z", share), 1200);
  EXPECT_EQ(connect(u"Z:", share, u"", RESOURCETYPE_ANY), 66);
  EXPECT_EQ(connect(u"LPT1", share, u"", RESOURCETYPE_PRINT), 66);
  EXPECT_EQ(connect(u"Z:", u"\\\\SRV\\Shut"), 5);
  EXPECT_EQ(connect(u"Z:", u"\\\\SRV\\Pay", u"wr0ng"), 86);
  EXPECT_EQ(connect(u"Z:", u"\\\\SRV\\Pay", u"thirty-first"), 0);
  EXPECT_EQ(connect(u"", u"\\\\SRV\\Pay", u"thirty-first", RESOURCETYPE_ANY), 0);
  EXPECT_EQ(ListOf(Engine().GetFiles(u"Y:"), {u"Path"}), "Y:\\f");
  EXPECT_EQ(Called({""}).find("thirty"), std::string::npos);
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
