#include <algorithm>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NetworkPages.h"
#include "network/CDomain.h"
#include "network/CDomains.h"
#include "network/CNetwork.h"
#include "network/CNetworks.h"
#include "network/ServerNames.h"

namespace veldmark {
namespace {

constexpr DWORD kWorkstationLevel = 100;
constexpr DWORD kNetworksBufferSize = 16384;
constexpr DWORD kDomainsBufferSize = 16383;

NetworkProvider& Provider() { return Apartment::Current().platform.network_provider; }
NetworkManagement& Network() { return Apartment::Current().platform.network_management; }

/// An enumeration of a network provider, with the buffer for its records.
class ResourceWalk {
 public:
  /// Opens the enumeration of what lies below `parent`; null: of all networks. Raises the
  /// platform's status.
  ResourceWalk(const NETRESOURCEW* parent, DWORD buffer_size)
      : enumeration_(Provider()),
        buffer_(RecordsFor(buffer_size)),
        capacity_(buffer_size),
        size_(buffer_size) {
    const DWORD status = Provider().WNetOpenEnumW(kResourceGlobalNet, kResourceTypeAny, 0, parent,
                                                  enumeration_.Receive());
    if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
  }

  /// Asks for as many records as fit and returns the status. The size is the platform's to change.
  DWORD Next() {
    count_ = kAllThatFit;
    size_ = std::min(size_, capacity_);
    return Provider().WNetEnumResourceW(enumeration_.Get(), &count_, buffer_.data(), &size_);
  }

  /// How many records the latest call gave, 0 or less for none.
  std::int32_t Count() const { return static_cast<std::int32_t>(count_); }
  /// Raises 13 for a count beyond the buffer.
  const NETRESOURCEW& Record(std::int32_t index) const {
    const auto position = static_cast<std::size_t>(index);
    if (position >= buffer_.size()) RaisePlatformError(kErrorInvalidData);
    return buffer_[position];
  }
  /// Takes over the size that the platform asks for; true where that is more than there was.
  bool GrowToSize() {
    if (size_ <= capacity_) return false;
    buffer_.resize(RecordsFor(size_));
    capacity_ = size_;
    return true;
  }

 private:
  static std::size_t RecordsFor(DWORD bytes) { return bytes / sizeof(NETRESOURCEW) + 1; }

  static constexpr DWORD kAllThatFit = 0xFFFFFFFF;

  NetworkEnumeration enumeration_;
  // Records, so that it is aligned for them; their texts lie behind them.
  std::vector<NETRESOURCEW> buffer_;
  DWORD capacity_;  // bytes
  DWORD size_;
  DWORD count_ = 0;
};

Ref<CNetwork> NetworkOf(const NETRESOURCEW& record) {
  auto network = Make<CNetwork>();
  network->NetworkName = TextAt(record.lpRemoteName);
  network->Comment = TextAt(record.lpComment);
  network->SetResource(record);
  NETINFOSTRUCT information{};
  information.cbStructure = sizeof information;
  if (Provider().WNetGetNetworkInformationW(record.lpProvider, &information) == kErrorSuccess) {
    const auto type = static_cast<std::int16_t>(information.wNetType);
    network->NetworkType = static_cast<NetworkTypeEnum>(type);
  }
  return network;
}

}  // namespace

Ref<CNetworks> CSupport::GetNetworks() {
  return ReRaising([&] {
    auto networks = Make<CNetworks>();
    StatusObject().RaiseStatus([] { return Text(u"Retrieving Available Networks"); });
    ResourceWalk walk(nullptr, kNetworksBufferSize);
    // Each call is read on from where the records of the one before ended, not from its beginning.
    std::int32_t position = 0;
    bool stood_still = false;
    DWORD status = kErrorMoreData;
    while (status == kErrorMoreData) {
      status = walk.Next();
      const bool more = status == kErrorMoreData;
      const bool stands_still = more && walk.Count() <= 0 && !walk.GrowToSize();
      if ((status != kErrorSuccess && !more) || (stands_still && stood_still)) {
        RaisePlatformError(static_cast<std::int32_t>(status));
      }
      stood_still = stands_still;
      const std::int32_t count = std::max(walk.Count(), 0);
      for (std::int32_t i = position; i < count; ++i) {
        const NETRESOURCEW& record = walk.Record(i);
        if (record.dwDisplayType == kDisplayTypeNetwork) networks->Add(NetworkOf(record).Get());
      }
      position += count;
    }
    return networks;
  });
}

Ref<CDomains> CSupport::GetDomains(CNetwork& network, bool async) {
  return ReRaising([&] {
    Text network_name = network.NetworkName;
    StatusObject().RaiseStatus([&] { return u"Retrieving Domains for Network " + network_name; });
    auto domains = Make<CDomains>();
    NETRESOURCEW parent = network.Resource();
    parent.lpRemoteName = parent.lpProvider = network_name.data();
    ResourceWalk walk(&parent, kDomainsBufferSize);
    bool cancel = false;
    while (!cancel) {
      const DWORD status = walk.Next();
      if (status == kErrorNoMoreItems || walk.Count() == 0) break;
      if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
      if (walk.Count() < 0) break;
      for (std::int32_t i = 0; i < walk.Count() && !cancel; ++i) {
        const NETRESOURCEW& record = walk.Record(i);
        if (record.dwDisplayType != kDisplayTypeDomain) continue;
        const auto domain = Make<CDomain>();
        domain->DomainName = TextAt(record.lpRemoteName);
        domain->SetComment(TextAt(record.lpComment));
        domain->SetNetworkName(network_name);
        StatusObject().RaiseStatus([&] { return u"Retrieved Domain " + domain->DomainName; });
        Swallow([&] {
          if (async) {
            RaiseObjectFound(*domain, cancel);
          } else {
            domains->Add(domain.Get());
          }
        });
        Err().Clear();
      }
    }
    return domains;
  });
}

Ref<CDomains> CSupport::GetTrustedDomains() {
  Ref<CDomains> domains;
  Swallow([&] {
    domains = Make<CDomains>();
    const Variant computer = ApiServerName(ComputerName());
    NetworkBuffer buffer(Network());
    LPWSTR names = nullptr;
    const auto status = Network().NetEnumerateTrustedDomains(BufferText(computer), &names);
    buffer.Reset(reinterpret_cast<BYTE*>(names));
    if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
    for (LPCWSTR name = names; name && *name != 0;) {
      const auto domain = Make<CDomain>();
      domain->DomainName = TextAt(name);
      domains->Add(domain.Get());
      name += domain->DomainName.size() + 1;
    }
  });
  return domains;
}

Text CSupport::GetDomainFromServer(const Text& server_name) {
  const Ref<Collection>& cache = Apartment::Current().domain_cache;
  if (const auto known = FindRemembered(cache, server_name)) return *known->If<Text>();
  Err().Clear();
  return ReRaising([&] {
    NetworkBuffer buffer(Network());
    const DWORD status =
        Network().NetWkstaGetInfo(server_name.c_str(), kWorkstationLevel, buffer.Receive());
    if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
    const Text domain = TextAt(RecordOf<WKSTA_INFO_100>(buffer).wki100_langroup);
    Remember(cache, server_name, Variant(domain));
    return domain;
  });
}

Text CSupport::GetPDCName(const Text& domain_name, Text server_name) {
  const Ref<Collection>& cache = Apartment::Current().pdc_cache;
  server_name = PlainServerName(server_name);
  const Text& asked = domain_name.empty() ? server_name : domain_name;
  if (!asked.empty()) {
    if (const auto known = FindRemembered(cache, asked)) return *known->If<Text>();
    if (Err().Number() == runtime_error::kInvalidCall) Err().Clear();
  }
  Text controller;
  ReRaising([&] {
    const Variant server = ApiServerName(server_name);
    NetworkBuffer buffer(Network());
    const DWORD status =
        Network().NetGetDCName(BufferText(server), domain_name.c_str(), buffer.Receive());
    if (status != kErrorSuccess) RaisePlatformError(static_cast<std::int32_t>(status));
    controller = TextAt(reinterpret_cast<LPCWSTR>(buffer.Get()));
  });
  if (!controller.empty() && !asked.empty()) {
    Swallow([&] { Remember(cache, asked, Variant(controller)); });
  }
  return controller;
}

Ref<CDomain> CSupport::GetDomainFromServerName(const Text& server_name) {
  return ReRaising([&] {
    auto domain = Make<CDomain>();
    domain->DomainName = TrimAtNulRight(GetDomainFromServer(server_name));
    return domain;
  });
}

}  // namespace veldmark
