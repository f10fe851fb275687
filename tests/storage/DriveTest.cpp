#include "root/CMyComputer.h"
#include "root/SystemRoot.h"
#include "storage/CDrive.h"
#include "storage/CDrives.h"
#include "storage/StorageFixture.h"

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
    local().volume(u'C').serial = 0x1A2B3C4D;
    estate().MapDrive(u'P', u"\\\\SRV\\Share");
  }

  static Ref<CDrive> Drive(const Text& letter) {
    Variant key(letter);
    return Make<SystemRoot>()->GetMyComputer()->GetDrives()->Item(key);
  }
};

Variant Bytes(std::int64_t count) { return Variant(Currency{count * Currency::kScale}); }

TEST_F(Drives, AreListedByLetterPathAndTypeWithoutAskingForMore) {
  const Ref<CDrives> drives = Make<SystemRoot>()->GetMyComputer()->GetDrives();
  std::string listed;
  for (std::int32_t i = 1; i <= drives->Count(); ++i) {
    Variant index(i);
    const Ref<CDrive> drive = drives->Item(index);
    listed += ToUtf8(drive->DriveLetter + u" " + drive->Path + u" ") +
              std::to_string(drive->DriveType) + ", ";
  }
  EXPECT_EQ(listed, "A A: 2, C C: 3, D D: 5, E E: 3, F F: 2, P P: 4, ");
  EXPECT_EQ(journal().entries().size(), 7u);
  EXPECT_EQ(Engine().GetDriveInfo(u"Q:", false)->DriveType, DT_Unknown);
  faults().FailEvery("GetLogicalDriveStringsW", 5);
  EXPECT_EQ(Engine().GetDrives()->Count(), 0);
}

TEST_F(Drives, TellTheirSpaceAsCurrencyOnceItIsAskedFor) {
  simulated::Volume& volume = local().volume(u'C');
  constexpr std::uint64_t kMost = 922337203685477;
  struct Case {
    std::uint64_t total, free, to_caller;
    std::int32_t raised;
  };
  for (const Case& c : {Case{1000, 900, 80, 0}, Case{kMost, 0, 0, 0}, Case{kMost + 1, 0, 0, 6}}) {
    volume.total = c.total;
    volume.free = c.free;
    volume.free_to_caller = c.to_caller;
    const Ref<CDrive> drive = Drive(u"c");
    journal().Clear();
    for (int attempt = 1; attempt <= 2; ++attempt) {
      Variant total;
      EXPECT_EQ(ErrorOf([&] { total = Call(*drive, u"TotalSize", MemberKind::kGet); }), c.raised);
      EXPECT_EQ(journal().Count("GetDiskFreeSpaceExW"),
                c.raised ? static_cast<std::size_t>(attempt) : 1u);
      if (c.raised) continue;
      EXPECT_EQ(total, Bytes(static_cast<std::int64_t>(c.total)));
      EXPECT_EQ(drive->FreeSpace(), Bytes(static_cast<std::int64_t>(c.free)));
      EXPECT_EQ(drive->AvailableSpace(), drive->FreeSpace()) << "whatever the quota";
    }
  }
  volume.total = 1000;
  // A value that a caller puts stands for a load; the free space has its own test.
  const Ref<CDrive> drive = Drive(u"C");
  drive->PutAvailableSpace(Variant(1));
  EXPECT_EQ(drive->TotalSize(), Variant());
  EXPECT_EQ(drive->FreeSpace(), Bytes(0));
  EXPECT_EQ(drive->TotalSize(), Bytes(1000));
  EXPECT_EQ(Engine().GetDriveInfo(u"C:", true)->TotalSize(), Bytes(1000));
}

TEST_F(Drives, RaiseTheNumberThatTheirLoadLeftWhereTheSpaceCannotBeTold) {
  const Ref<CDrive> drive = Drive(u"F");
  Err().Set(AutomationError(77, u"Before", u"Of a call before, which decides nothing"));
  EXPECT_EQ(FailureOf([&] { drive->TotalSize(); }), u"5||The device is not ready.");
  faults().FailNthOf("WNetGetUniversalNameW", 2, 1222);
  EXPECT_EQ(FailureOf([] { Drive(u"P")->TotalSize(); }),
            u"1222|Veldmark2.CSupport|" + GetAPIErrorText(3));
  local().volume(u'F').ready = true;
  EXPECT_EQ(drive->TotalSize(), Bytes(8ll << 30));
}

TEST_F(Drives, TellTheirVolumeDataWhereThereIsAMedium) {
  local().volume(u'E').label = u"Data";
  local().volume(u'E').serial = 1;
  struct Case {
    const char16_t* letter;
    const char16_t* name;
    const char16_t* file_system;
    const char16_t* share;
    const char16_t* serial;  // null: any
    std::int32_t longest;
    bool ready;
  };
  const Case cases[] = {
      {u"A", u"Removable Disk", u"FAT32", u"", nullptr, 255, true},
      {u"C", u"", u"NTFS", u"", u"1A2B-3C4D", 255, true},
      {u"D", u"DISC", u"CDFS", u"", u"FEDC-BA98", 110, true},
      {u"E", u"Data", u"NTFS", u"", u"0000-0001", 255, true},
      {u"F", u"Removable Disk", u"", u"", u"", 0, false},
      {u"P", u"Share on 'Srv'", u"NTFS", u"\\\\SRV\\Share\\", nullptr, 255, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.letter));
    const Ref<CDrive> drive = Drive(c.letter);
    EXPECT_EQ(drive->SerialNumberEx(), u"");
    EXPECT_EQ(drive->VolumeName(), c.name);
    if (c.serial) {
      EXPECT_EQ(drive->SerialNumberEx(), c.serial);
    }
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
  for (const bool player : {true, false}) {
    local().SetDiscDevice(player);
    for (const auto& [letter, sent] :
         {std::pair{u"A", 1u}, {u"C", 0u}, {u"D", 1u}, {u"F", 1u}, {u"P", 0u}}) {
      const Ref<CDrive> drive = Drive(letter);
      for (const std::string state : {"open", "closed"}) {
        journal().Clear();
        Call(*drive, state == "open" ? u"EjectDisk" : u"LoadDisk", MemberKind::kMethod);
        ASSERT_EQ(journal().entries().size(), sent) << ToUtf8(letter);
        if (sent) {
          EXPECT_EQ(journal().entries()[0].argument, "set CDAudio door " + state);
        }
      }
    }
  }
}

TEST_F(Drives, GiveARootFolderThatHasNoMoreThanTheirPath) {
  const Ref<CDrive> drive = Drive(u"C");
  journal().Clear();
  const Ref<CFolder> root = drive->GetRootFolder();
  EXPECT_EQ(root->Path() + root->FolderName, u"C:\\");
  EXPECT_EQ(root->Attributes(), FA_Normal);
  EXPECT_TRUE(journal().entries().empty());
  EXPECT_EQ(PathsIn(root->GetSubFolders()), " C:\\D C:\\Empty C:\\Secret");
}

}  // namespace
}  // namespace veldmark
