#include "platform/simulated/families/SimulatedNetworkManagement.h"

#include <cstring>

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/SecurityDescriptor.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kShareLevel = 502;
constexpr DWORD kUnlimitedUses = 0xFFFFFFFF;

// Lays a record out with its texts and bytes behind it, first to count and then to write.
class Block {
 public:
  explicit Block(std::uint8_t* bytes) : bytes_(bytes) {}

  std::size_t size() const { return size_; }

  void* Put(const void* content, std::size_t size) {
    size_ = (size_ + alignof(void*) - 1) / alignof(void*) * alignof(void*);
    void* const place = bytes_ == nullptr ? nullptr : bytes_ + size_;
    if (bytes_ != nullptr) std::memcpy(place, content, size);
    size_ += size;
    return place;
  }

  LPWSTR Put(const Text& text) {
    return static_cast<LPWSTR>(Put(text.c_str(), (text.size() + 1) * sizeof(WCHAR)));
  }

 private:
  std::uint8_t* bytes_;
  std::size_t size_ = 0;
};

std::size_t LayOut(const Share& share, std::uint8_t* bytes) {
  SHARE_INFO_502 record{};
  Block block(bytes);
  void* const place = block.Put(&record, sizeof record);
  record.shi502_netname = block.Put(share.name);
  record.shi502_type = share.type;
  record.shi502_remark = block.Put(Text());
  record.shi502_max_uses = kUnlimitedUses;
  record.shi502_path = block.Put(share.path);
  if (share.security != nullptr) {
    constexpr DWORD kParts =
        kOwnerSecurityInformation | kGroupSecurityInformation | kDaclSecurityInformation;
    const std::vector<std::uint8_t> descriptor = BytesOf(share.security->descriptor(), kParts);
    record.shi502_security_descriptor = block.Put(descriptor.data(), descriptor.size());
  }
  if (bytes != nullptr) std::memcpy(place, &record, sizeof record);
  return block.size();
}

}  // namespace

DWORD SimulatedNetworkManagement::NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name,
                                                  DWORD level, BYTE** buffer) {
  const TextView name = ViewOf(net_name);
  const Call call = session_.Begin("NetShareGetInfo", name);
  if (const DWORD fault = call.fault()) return fault;
  if (buffer == nullptr || name.empty()) return kErrorInvalidParameter;
  const TextView server = ViewOf(server_name);
  Estate& estate = session_.estate;
  Computer* const computer = server.empty() ? &estate.local() : estate.ReachComputer(server);
  if (computer == nullptr) return kErrorBadNetPath;
  if (level != kShareLevel) return kErrorInvalidLevel;
  // Where a share leads and who may use it is told to administrators only.
  if (!estate.token().Is(AdministratorsSid())) return kErrorAccessDenied;
  const Share* const share = computer->FindShare(name);
  if (share == nullptr) return kErrorNetNameNotFound;
  void* const memory =
      session_.AllocateNetwork(LayOut(*share, nullptr), "NetShareGetInfo", ToUtf8(name));
  *buffer = static_cast<BYTE*>(memory);
  LayOut(*share, *buffer);
  return 0;
}

DWORD SimulatedNetworkManagement::NetApiBufferFree(void* buffer) {
  const Call call = session_.Begin("NetApiBufferFree");
  const DWORD fault = call.fault();
  if (buffer == nullptr) return fault;
  if (!session_.ledger.Closed(Resource::NetworkBuffer, reinterpret_cast<std::uintptr_t>(buffer),
                              "NetApiBufferFree")) {
    return kErrorInvalidParameter;
  }
  session_.network_memory.erase(buffer);
  return fault;
}

}  // namespace veldmark::simulated
