#pragma once

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "storage/DriveType.h"

namespace veldmark {

class CFolder;

/// A drive of this computer. A listing fills letter, path and type; space and volume data are
/// fetched by the first get that needs them, and again as long as they are empty.
///
/// Sizes are currency values in bytes. The gets of the space raise error 5 with the platform's text
/// where it can't be told (the number that stands in `Err`, if one does), and 6 for a size over
/// 922337203685477 bytes. Those of the volume data don't raise: what can't be told is empty or 0.
class CDrive : public Exported<CDrive>, Counted<Counter::kDrive> {
 public:
  static const Interface& Describe();

  /// Opens or closes the door of the system's default disc player, whatever drive this is, as long
  /// as it is one for discs or for media that can be taken out. Nothing is raised.
  void EjectDisk();
  void LoadDisk();
  /// Whether the volume data could be read. A name that was read once isn't asked for again.
  bool IsReady();
  /// A folder with this drive's path and nothing else; the platform isn't asked.
  Ref<CFolder> GetRootFolder();

  /// What is free in all, whatever the caller's quota.
  Variant AvailableSpace();
  void PutAvailableSpace(const Variant& value) { available_space_ = value; }
  Variant FreeSpace();
  void PutFreeSpace(const Variant& value) { free_space_ = value; }
  Variant TotalSize();
  void PutTotalSize(const Variant& value) { total_size_ = value; }

  Text FileSystem();
  void PutFileSystem(const Text& value) { file_system_ = value; }
  /// The share behind a remote drive, as "\\srv\share\".
  Text ShareName();
  void PutShareName(const Text& value) { share_name_ = value; }
  /// The label; "Removable Disk" for any drive of that kind, "Share on 'Srv'" for a remote one.
  Text VolumeName();
  void PutVolumeName(const Text& value) { volume_name_ = value; }
  std::int32_t MaxFilenameComponentLength();
  /// The flags of the file system.
  std::int32_t Flags();

  /// The serial number as "1A2B-3C4D"; empty until the volume data has been read.
  Text SerialNumberEx() const;

  Text DriveLetter;  ///< one letter, without a colon
  DriveTypeConst DriveType{};
  Text Path;                      ///< "C:"
  std::int32_t SerialNumber = 0;  ///< 0 until the volume data has been read

 private:
  bool HasDoor() const { return DriveType == DT_CDRom || DriveType == DT_Removable; }
  void LoadVolumeData();

  Variant available_space_;
  Variant free_space_;
  Variant total_size_;
  Text file_system_;
  Text share_name_;
  Text volume_name_;
  std::int32_t maximum_component_length_ = 0;
  std::int32_t flags_ = 0;
  bool is_ready_ = false;
};

}  // namespace veldmark
