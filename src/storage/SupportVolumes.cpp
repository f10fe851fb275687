#include <array>
#include <set>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "collections/Deliver.h"
#include "network/CServer.h"
#include "storage/CShare.h"
#include "storage/CShares.h"
#include "storage/CVolume.h"
#include "storage/CVolumes.h"
#include "storage/PlatformFiles.h"
#include "storage/VolumeData.h"

namespace veldmark {
namespace {

/// "C:" and a NUL.
using DiskRecord = std::array<WCHAR, 3>;

std::set<Text> NamesOf(CShares& shares) {
  std::set<Text> names;
  for (std::int32_t index = 1; index <= shares.Count(); ++index) {
    names.insert(shares.ItemByIndex(index)->ShareName);
  }
  return names;
}

}  // namespace

Ref<CVolumes> CSupport::GetVolumes(CServer& server, bool async) {
  return ReRaising([&] {
    const Ref<CServer> walked(&server);
    auto volumes = Make<CVolumes>();
    const std::set<Text> shared = NamesOf(*GetShares(server));
    NetworkManagement& network = Apartment::Current().platform.network_management;
    const Text name = server.ServerName;
    const LPCWSTR server_name = name.empty() ? nullptr : name.c_str();
    WalkNetworkPages<DiskRecord, DWORD>(
        {},
        [&](BYTE** buffer, auto... counts) {
          return network.NetServerDiskEnum(server_name, 0, buffer, kMaxPreferredLength, counts...);
        },
        [&](const DiskRecord& disk) {
          const auto volume = Make<CVolume>();
          volume->VolumeName = TrimAtNul(TextView(disk.data(), disk.size()));
          const Text share = volume->VolumeName.substr(0, 1) + u"$";
          volume->SetVolumePath(u"\\\\" + name + u"\\" + share);
          // One that isn't shared for administration can't be reached.
          if (!shared.contains(share)) return true;
          volume->ServerName = name;
          return Deliver(*this, volumes, volume, async);
        });
    return volumes;
  });
}

void CSupport::LoadVolumeInfo(CVolume& volume) {
  ReRaising([&] {
    const Ref<CVolume> loaded(&volume);
    std::uint64_t free_to_caller = 0;
    std::uint64_t total = 0;
    std::uint64_t total_free = 0;
    if (Files().GetDiskFreeSpaceExW(volume.VolumePath().c_str(), &free_to_caller, &total,
                                    &total_free)) {
      volume.PutTotalSize(SizeValue(total));
      volume.PutAvailableSpace(SizeValue(total_free));
    }
    const VolumeData data = ReadVolumeData(volume.VolumePath() + u"\\");
    if (!data.name.empty()) volume.VolumeName = data.name;
    if (data.serial_number != 0) volume.SetSerialNumber(data.serial_number);
    if (!data.file_system.empty()) volume.PutFileSystem(data.file_system);
    if (data.maximum_component_length != 0) {
      volume.SetMaxFilenameComponentLength(data.maximum_component_length);
    }
    if (data.flags != 0) volume.SetFlags(data.flags);
    volume.SetIsReady(data.is_ready);
  });
}

}  // namespace veldmark
