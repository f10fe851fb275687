#include <array>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "storage/CDrive.h"
#include "storage/CDrives.h"
#include "storage/PlatformFiles.h"
#include "storage/VolumeData.h"

namespace veldmark {

Ref<CDrives> CSupport::GetDrives() {
  return ReRaising([&] {
    auto drives = Make<CDrives>();
    constexpr DWORD kLength = 256;
    std::array<WCHAR, kLength + 1> buffer{};
    Files().GetLogicalDriveStringsW(kLength, buffer.data());
    const TextView roots(buffer.data(), kLength);
    for (std::size_t end = roots.find(u'\\', 2); end != TextView::npos;
         end = roots.find(u'\\', end + 1)) {
      drives->Add(GetDriveInfo(Text(roots.substr(end - 2, 2)), false).Get());
    }
    return drives;
  });
}

Ref<CDrive> CSupport::GetDriveInfo(const Text& drive_path, bool load_info) {
  return ReRaising([&] {
    auto drive = Make<CDrive>();
    drive->Path = drive_path;
    drive->DriveLetter = drive->Path.substr(0, 1);
    drive->DriveType = static_cast<DriveTypeConst>(Files().GetDriveTypeW(drive->Path.c_str()));
    if (load_info) LoadDriveInfo(*drive);
    return drive;
  });
}

void CSupport::LoadDriveInfo(CDrive& drive) {
  ReRaising([&] {
    Err().Clear();
    const Text root = drive.DriveType == DT_Remote ? drive.ShareName() : drive.DriveLetter + u":\\";
    std::uint64_t free_to_caller = 0;
    std::uint64_t total = 0;
    std::uint64_t total_free = 0;
    if (!Files().GetDiskFreeSpaceExW(root.c_str(), &free_to_caller, &total, &total_free)) {
      Raise(Err().Number(), Err().Source(), GetAPIErrorText(Err().LastDllError()));
    }
    drive.PutTotalSize(SizeValue(total));
    drive.PutFreeSpace(SizeValue(total_free));
    drive.PutAvailableSpace(drive.FreeSpace());
  });
}

}  // namespace veldmark
