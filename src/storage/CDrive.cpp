#include "storage/CDrive.h"

#include <array>

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "storage/CFolder.h"
#include "storage/PlatformFiles.h"
#include "storage/VolumeData.h"

namespace veldmark {
namespace {

void SendToPlayer(const char* command) {
  std::array<char, 127> answer{};
  Apartment::Current().platform.multimedia.mciSendStringA(
      command, answer.data(), static_cast<UINT>(answer.size()), nullptr);
}

}  // namespace

const Interface& CDrive::Describe() {
  static const Interface table =
      Declare<CDrive>(u"CDrive", u"A drive of this computer.")
          .Method<&CDrive::EjectDisk>(u"EjectDisk", u"Opens the door of the disc player.")
          .Method<&CDrive::LoadDisk>(u"LoadDisk", u"Closes the door of the disc player.")
          .Method<&CDrive::IsReady>(u"IsReady", u"True if there is a volume that can be read.")
          .Method<&CDrive::GetRootFolder>(u"GetRootFolder", u"The drive's root folder.")
          .Stored<&CDrive::DriveLetter>(u"DriveLetter", u"One letter.")
          .Stored<&CDrive::DriveType>(u"DriveType", u"The kind of drive.")
          .Property<&CDrive::AvailableSpace, &CDrive::PutAvailableSpace>(u"AvailableSpace",
                                                                         u"Bytes that are free.")
          .Property<&CDrive::FileSystem, &CDrive::PutFileSystem>(u"FileSystem",
                                                                 u"The name of the file system.")
          .Property<&CDrive::FreeSpace, &CDrive::PutFreeSpace>(u"FreeSpace",
                                                               u"Bytes that are free.")
          .Stored<&CDrive::Path>(u"Path", u"The drive as C: without a backslash.")
          .Stored<&CDrive::SerialNumber>(u"SerialNumber",
                                         u"The volume's serial number, once it has been read.")
          .Get<&CDrive::SerialNumberEx>(u"SerialNumberEx",
                                        u"The volume's serial number as 1A2B-3C4D.")
          .Property<&CDrive::ShareName, &CDrive::PutShareName>(
              u"ShareName", u"The share that a remote drive stands for.")
          .Property<&CDrive::TotalSize, &CDrive::PutTotalSize>(u"TotalSize", u"Bytes in all.")
          .Property<&CDrive::VolumeName, &CDrive::PutVolumeName>(u"VolumeName",
                                                                 u"The volume's label.")
          .Get<&CDrive::MaxFilenameComponentLength>(u"MaxFilenameComponentLength",
                                                    u"The longest name of a file or folder.")
          .Get<&CDrive::Flags>(u"Flags", u"The flags of the file system.");
  return table;
}

void CDrive::EjectDisk() {
  if (HasDoor()) SendToPlayer("set CDAudio door open");
}

void CDrive::LoadDisk() {
  if (HasDoor()) SendToPlayer("set CDAudio door closed");
}

bool CDrive::IsReady() {
  Swallow([&] { VolumeName(); });
  return is_ready_;
}

Ref<CFolder> CDrive::GetRootFolder() {
  return ReRaisingAs(u"CDrive", [&] {
    auto root = Make<CFolder>();
    root->FolderName = u"\\";
    root->PutPath(Path);
    return root;
  });
}

Variant CDrive::AvailableSpace() {
  if (available_space_ == Variant()) Engine().LoadDriveInfo(*this);
  return available_space_;
}

Variant CDrive::FreeSpace() {
  if (free_space_ == Variant()) Engine().LoadDriveInfo(*this);
  return free_space_;
}

Variant CDrive::TotalSize() {
  // The available space tells whether the space has been loaded.
  if (available_space_ == Variant()) Engine().LoadDriveInfo(*this);
  return total_size_;
}

Text CDrive::FileSystem() {
  if (file_system_.empty()) LoadVolumeData();
  return file_system_;
}

Text CDrive::ShareName() {
  if (share_name_.empty()) LoadVolumeData();
  return share_name_;
}

Text CDrive::VolumeName() {
  if (volume_name_.empty()) LoadVolumeData();
  return volume_name_;
}

std::int32_t CDrive::MaxFilenameComponentLength() {
  if (maximum_component_length_ == 0) LoadVolumeData();
  return maximum_component_length_;
}

std::int32_t CDrive::Flags() {
  if (flags_ == 0) LoadVolumeData();
  return flags_;
}

Text CDrive::SerialNumberEx() const { return SerialNumberText(SerialNumber); }

void CDrive::LoadVolumeData() {
  Swallow([&] {
    const VolumeData volume = ReadVolumeData(Path.ends_with(u'\\') ? Path : Path + u'\\');
    is_ready_ = volume.is_ready;
    SerialNumber = volume.serial_number;
    maximum_component_length_ = volume.maximum_component_length;
    flags_ = volume.flags;
    volume_name_ = volume.name;
    file_system_ = volume.file_system;
  });
  if (DriveType == DT_Remote) {
    Swallow([&] { Engine().GetUNCPath(DriveLetter, volume_name_, share_name_); });
  }
  if (DriveType == DT_Removable) {
    Swallow([&] { volume_name_ = u"Removable Disk"; });
  }
}

}  // namespace veldmark
