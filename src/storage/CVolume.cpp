#include "storage/CVolume.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "storage/CFolder.h"
#include "storage/VolumeData.h"

namespace veldmark {

const Interface& CVolume::Describe() {
  static const Interface table =
      Declare<CVolume>(u"CVolume", u"A disk of a computer, seen through its administrative share.")
          .Method<&CVolume::GetRootFolder>(u"GetRootFolder", u"The volume's root folder.")
          .Stored<&CVolume::VolumeName>(
              u"VolumeName", u"The disk as the computer names it, C:, and once read its label.")
          .Stored<&CVolume::ServerName>(u"ServerName", u"The computer that it belongs to.")
          .Get<&CVolume::VolumePath>(u"VolumePath", u"Its path in the network, \\\\SRV\\C$.")
          .Property<&CVolume::TotalSize, &CVolume::PutTotalSize>(u"TotalSize", u"Bytes in all.")
          .Property<&CVolume::AvailableSpace, &CVolume::PutAvailableSpace>(u"AvailableSpace",
                                                                           u"Bytes that are free.")
          .Get<&CVolume::SerialNumber>(u"SerialNumber", u"The serial number as 1A2B-3C4D.")
          .Property<&CVolume::FileSystem, &CVolume::PutFileSystem>(u"FileSystem",
                                                                   u"The name of the file system.")
          .Method<&CVolume::IsReady>(u"IsReady", u"True if it could be read.")
          .Remark(
              u"The volume is read once. One that wasn't ready then stays so; ask for a new "
              u"object.")
          .Get<&CVolume::MaxFilenameComponentLength>(u"MaxFilenameComponentLength",
                                                     u"The longest name of a file or folder.")
          .Get<&CVolume::Flags>(u"Flags", u"The flags of the file system.");
  return table;
}

Ref<CFolder> CVolume::GetRootFolder() {
  return ReRaisingAs(u"CVolume", [&] {
    auto root = Make<CFolder>();
    root->FolderName = u"\\";
    root->PutPath(volume_path_);
    return root;
  });
}

Text CVolume::SerialNumber() {
  Load();
  return SerialNumberText(serial_number_);
}

void CVolume::Load() {
  if (loaded_) return;
  loaded_ = true;
  Engine().LoadVolumeInfo(*this);
}

}  // namespace veldmark
