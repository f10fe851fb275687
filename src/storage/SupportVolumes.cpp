#include <array>
#include <set>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "collections/Deliver.h"
#include "network/CServer.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/operations/Records.h"
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
    DWORD resume = 0;
    for (DWORD code = kErrorMoreData; code == kErrorMoreData;) {
      NetworkBuffer buffer(network);
      DWORD read = 0;
      DWORD total = 0;
      const DWORD asked_from = resume;
      code = network.NetServerDiskEnum(server_name, 0, buffer.Receive(), kMaxPreferredLength, &read,
                                       &total, &resume);
      const bool leads_nowhere = code == kErrorMoreData && read == 0 && resume == asked_from;
      if ((code != 0 && code != kErrorMoreData) || leads_nowhere) {
        RaisePlatformError(static_cast<std::int32_t>(code));
      }
      for (const DiskRecord& disk : RecordsIn<DiskRecord>(buffer.Get(), read)) {
        const auto volume = Make<CVolume>();
        volume->VolumeName = TrimAtNul(TextView(disk.data(), disk.size()));
        const Text share = volume->VolumeName.substr(0, 1) + u"$";
        volume->SetVolumePath(u"\\\\" + name + u"\\" + share);
        // One that isn't shared for administration can't be reached.
        if (!shared.contains(share)) continue;
        volume->ServerName = name;
        if (!Deliver(*this, volumes, volume, async)) return volumes;
      }
    }
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
