#include "platform/simulated/families/SimulatedNetworkProvider.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/families/RecordBlock.h"

namespace veldmark::simulated {
namespace {

// The letter of "Z:", in upper case; 0 for anything else.
char16_t DriveOf(TextView name) {
  if (name.size() != 2 || name[1] != u':') return 0;
  const char16_t letter = UpperCase(name[0]);
  return letter >= u'A' && letter <= u'Z' ? letter : u'\0';
}

bool IsPrinterPort(TextView name) {
  return name.size() == 4 && StartsWithNoCase(name, u"LPT") && name[3] >= u'1' && name[3] <= u'9';
}

bool IsFolderBelow(const FileNode& root, TextView path) {
  std::shared_ptr<const FileNode> node = root.shared_from_this();
  while (!path.empty() && node != nullptr) {
    const std::size_t end = std::min(path.find(u'\\'), path.size());
    if (end > 0) node = node->Child(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return node != nullptr && node->is_folder();
}

}  // namespace

DWORD SimulatedNetworkProvider::WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level,
                                                      void* buffer, DWORD* buffer_size) {
  const TextView path = ViewOf(local_path);
  const Call call = session_.Begin("WNetGetUniversalNameW", path);
  if (const DWORD fault = call.fault()) return fault;
  if (info_level != kUniversalNameInfoLevel) return kErrorInvalidLevel;
  if (buffer_size == nullptr) return kErrorInvalidParameter;
  if (path.size() < 2 || path[1] != u':') return kErrorBadDevice;
  const auto& mapped = session_.estate.mapped_drives();
  const auto found = mapped.find(UpperCase(path[0]));
  if (found == mapped.end()) return kErrorNotConnected;
  const Text name = found->second + Text(path.substr(2));
  const std::size_t text_size = (name.size() + 1) * sizeof(WCHAR);
  const std::size_t needed = sizeof(UNIVERSAL_NAME_INFOW) + text_size;
  if (buffer == nullptr || *buffer_size < needed) {
    *buffer_size = static_cast<DWORD>(needed);
    return kErrorMoreData;
  }
  auto* const text = static_cast<std::uint8_t*>(buffer) + sizeof(UNIVERSAL_NAME_INFOW);
  const UNIVERSAL_NAME_INFOW record{reinterpret_cast<LPWSTR>(text)};
  std::memcpy(buffer, &record, sizeof record);
  std::memcpy(text, name.c_str(), text_size);
  return 0;
}

DWORD SimulatedNetworkProvider::WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource,
                                                    LPCWSTR password, LPCWSTR user_name,
                                                    DWORD flags) {
  const NETRESOURCEW nothing{};
  if (resource == nullptr) resource = &nothing;
  const TextView local = ViewOf(resource->lpLocalName);
  const TextView remote = ViewOf(resource->lpRemoteName);
  // What is noted of a call never holds the password; a null pointer is a "-".
  const auto shown = [](LPCWSTR text) { return Text(text == nullptr ? u"-" : text); };
  const Text noted = shown(resource->lpLocalName) + u" -> " + shown(resource->lpRemoteName) +
                     u" as " + shown(user_name) + u" for " +
                     ToText(reinterpret_cast<std::intptr_t>(owner)) + u", " +
                     ToText(std::int64_t{flags});
  const Call call = session_.Begin("WNetAddConnection3W", noted);
  if (const DWORD fault = call.fault()) return fault;
  Estate& estate = session_.estate;

  if (remote.empty()) return kErrorInvalidParameter;
  if (resource->dwType > kResourceTypePrint) return kErrorBadDevType;
  const char16_t drive = DriveOf(local);
  if (!local.empty()) {
    if (drive == 0 && !IsPrinterPort(local)) return kErrorBadDevice;
    const DWORD needed = drive != 0 ? kResourceTypeDisk : kResourceTypePrint;
    if (resource->dwType != needed) return kErrorBadDevType;
    if (estate.local().drives().contains(drive) || estate.mapped_drives().contains(drive)) {
      return kErrorAlreadyAssigned;
    }
  }
  const auto name = NetworkName::Parse(remote);
  if (!name) return kErrorBadNetName;
  const Computer* const computer = estate.ReachComputer(name->server);
  if (computer == nullptr) return kErrorBadNetPath;
  const Share* const share = computer->FindShare(name->share);
  if (share == nullptr) return kErrorBadNetName;
  if (share->provider_fails) return kErrorExtendedError;
  if (resource->dwType == kResourceTypePrint || share->folder == nullptr) return kErrorBadDevType;
  if (share->denied) return kErrorAccessDenied;
  // Null stands for the caller himself, who isn't known to a share that asks.
  if (share->user && (user_name == nullptr || !EqualNoCase(*share->user, user_name))) {
    return kErrorLogonFailure;
  }
  if (share->password && (password == nullptr || *share->password != password)) {
    return kErrorInvalidPassword;
  }
  if (!IsFolderBelow(*share->folder, name->below)) return kErrorBadNetName;
  if (drive != 0) {
    estate.MapDrive(drive, Text(remote));
  } else {
    estate.Connect(*computer, *share);
  }
  return 0;
}

DWORD SimulatedNetworkProvider::WNetCancelConnection2W(LPCWSTR connection, DWORD flags,
                                                       BOOL force) {
  const TextView named = ViewOf(connection);
  const Text noted = Text(named) + u", " + ToText(std::int64_t{flags});
  const Call call = session_.Begin("WNetCancelConnection2W", noted);
  if (const DWORD fault = call.fault()) return fault;
  Estate& estate = session_.estate;
  const char16_t drive = DriveOf(named);
  const auto name = NetworkName::Parse(named);
  const Computer* const computer = name ? estate.FindComputer(name->server) : nullptr;
  const Share* const share = computer != nullptr ? computer->FindShare(name->share) : nullptr;
  const bool connected = drive != 0 ? estate.mapped_drives().contains(drive)
                                    : share != nullptr && estate.IsOpen(*computer, *share);
  if (!connected) return kErrorNotConnected;
  const Text key =
      drive != 0 ? Text{drive, u':'} : ToUpper(u"\\\\" + name->server + u"\\" + name->share);
  const bool in_use = std::ranges::any_of(session_.network_handles,
                                          [&](const auto& handle) { return handle.second == key; });
  if (in_use && force == 0) return kErrorOpenFiles;
  if (drive != 0) {
    estate.UnmapDrive(drive);
  } else {
    estate.Disconnect(*computer, *share);
  }
  return 0;
}

DWORD SimulatedNetworkProvider::WNetOpenEnumW(DWORD scope, DWORD, DWORD, const NETRESOURCEW* parent,
                                              HANDLE* enumeration) {
  const TextView remote = parent == nullptr ? u"-" : ViewOf(parent->lpRemoteName);
  const Call call = session_.Begin("WNetOpenEnumW", remote);
  if (const DWORD fault = call.fault()) return fault;
  if (scope != kResourceGlobalNet || enumeration == nullptr) return kErrorInvalidParameter;
  *enumeration = nullptr;
  Estate& estate = session_.estate;
  if (estate.networks().empty()) return kErrorNoNetwork;
  OpenEnumeration open;
  if (parent == nullptr) {
    for (const Network& network : estate.networks()) {
      open.found.push_back(
          {network.name, network.comment, network.provider_name(), network.display_type});
    }
  } else {
    const TextView provider = ViewOf(parent->lpProvider);
    const Network* const network =
        estate.FindNetworkByProvider(provider.empty() ? remote : provider);
    if (network == nullptr) return kErrorBadProvider;
    if (!EqualNoCase(network->name, remote)) return kErrorNotContainer;
    const auto add = [&](const Text& name, const Text& comment, DWORD display_type) {
      open.found.push_back({name, comment, network->provider_name(), display_type});
    };
    for (const Domain& domain : estate.domains()) {
      const bool is_here = EqualNoCase(domain.network, network->name);
      // A workgroup is there as long as somebody is in it.
      if (is_here && (!domain.is_workgroup() || estate.HasMembers(domain))) {
        add(domain.name, domain.comment, kDisplayTypeDomain);
      }
    }
    for (const Network::Entry& other : network->others) {
      add(other.name, other.comment, other.display_type);
    }
    open.page = network->page;
  }
  const std::uintptr_t value = session_.NewHandle();
  enumerations_[value] = std::move(open);
  session_.ledger.Opened(Resource::NetworkEnumeration, value, "WNetOpenEnumW", ToUtf8(remote));
  *enumeration = HandleOf(value);
  return 0;
}

DWORD SimulatedNetworkProvider::WNetEnumResourceW(HANDLE enumeration, DWORD* count, void* buffer,
                                                  DWORD* buffer_size) {
  const Call call = session_.Begin("WNetEnumResourceW");
  if (const DWORD fault = call.fault()) return fault;
  const auto open = enumerations_.find(ValueOf(enumeration));
  if (open == enumerations_.end()) {
    session_.ledger.Misused(Resource::NetworkEnumeration, ValueOf(enumeration),
                            "WNetEnumResourceW");
    return kErrorInvalidHandle;
  }
  if (count == nullptr || buffer == nullptr || buffer_size == nullptr) {
    return kErrorInvalidParameter;
  }
  auto& [found, next, page] = open->second;
  const std::span<const Found> rest = std::span<const Found>(found).subspan(next);
  if (rest.empty()) return kErrorNoMoreItems;
  const auto fill = [](NETRESOURCEW& record, const Found& item, RecordBlock& block) {
    constexpr DWORD kUsageContainer = 2;
    record = {.dwScope = kResourceGlobalNet,
              .dwType = kResourceTypeAny,
              .dwDisplayType = item.display_type,
              .dwUsage = kUsageContainer,
              .lpLocalName = nullptr,
              .lpRemoteName = block.Put(item.name),
              .lpComment = block.Put(item.comment),
              .lpProvider = block.Put(item.provider)};
  };
  std::size_t taken = CountFitting<NETRESOURCEW>(rest, fill, *buffer_size);
  if (taken == 0) {
    *buffer_size = static_cast<DWORD>(LayOut<NETRESOURCEW>(rest.first(1), fill, nullptr));
    return kErrorMoreData;
  }
  taken = std::min<std::size_t>(taken, *count);
  if (page != 0) taken = std::min(taken, page);
  LayOut<NETRESOURCEW>(rest.first(taken), fill, static_cast<std::uint8_t*>(buffer));
  next += taken;
  *count = static_cast<DWORD>(taken);
  return 0;
}

DWORD SimulatedNetworkProvider::WNetCloseEnum(HANDLE enumeration) {
  const Call call = session_.Begin("WNetCloseEnum");
  const DWORD fault = call.fault();
  if (!session_.ledger.Closed(Resource::NetworkEnumeration, ValueOf(enumeration),
                              "WNetCloseEnum")) {
    return kErrorInvalidHandle;
  }
  enumerations_.erase(ValueOf(enumeration));
  return fault;
}

DWORD SimulatedNetworkProvider::WNetGetNetworkInformationW(LPCWSTR provider,
                                                           NETINFOSTRUCT* information) {
  const TextView name = ViewOf(provider);
  const Call call = session_.Begin("WNetGetNetworkInformationW", name);
  if (const DWORD fault = call.fault()) return fault;
  if (information == nullptr || information->cbStructure != sizeof *information) {
    return kErrorInvalidParameter;
  }
  const Network* const network = session_.estate.FindNetworkByProvider(name);
  if (network == nullptr || !network->type) return kErrorBadProvider;
  constexpr DWORD kAllDrives = 0x03FFFFFF;
  *information = {.cbStructure = sizeof *information,
                  .dwProviderVersion = 1,
                  .dwStatus = 0,
                  .dwCharacteristics = 0,
                  .dwHandle = 0,
                  .wNetType = *network->type,
                  .dwPrinters = 0,
                  .dwDrives = kAllDrives};
  return 0;
}

}  // namespace veldmark::simulated
