#include "platform/simulated/families/SimulatedSockets.h"

#include <algorithm>

#include "automation/LastError.h"

namespace veldmark::simulated {
namespace {

constexpr int kSocketError = -1;
constexpr DWORD kErrorBadPointer = 10014;
constexpr DWORD kErrorVersionNotSupported = 10092;
constexpr DWORD kErrorNotStarted = 10093;
constexpr DWORD kErrorHostNotFound = 11001;
constexpr std::int16_t kInternetFamily = 2;

int Major(WORD version) { return version & 0xFF; }

// Major before minor.
int Rank(WORD version) { return Major(version) << 8 | version >> 8; }

}  // namespace

int SimulatedSockets::WSAStartup(WORD version, SOCKETS_DATA* data) {
  const Call call = session_.Begin("WSAStartup", ToText(version));
  if (const DWORD fault = call.fault()) return static_cast<int>(fault);
  if (Major(version) == 0) return static_cast<int>(kErrorVersionNotSupported);
  if (data == nullptr) return static_cast<int>(kErrorBadPointer);
  const SocketLibrary& library = session_.estate.socket_library();
  data->wHighVersion = library.version;
  data->wVersion = Rank(version) < Rank(library.version) ? version : library.version;
  data->iMaxSockets = Major(data->wVersion) >= 2 ? WORD{0} : library.most_sockets;
  starts_.push_back(session_.NewHandle());
  session_.ledger.Opened(Resource::SocketLibrary, starts_.back(), "WSAStartup", "");
  return 0;
}

int SimulatedSockets::WSACleanup() {
  const Call call = session_.Begin("WSACleanup");
  DWORD error = call.fault();
  if (starts_.empty()) {
    session_.ledger.Misused(Resource::SocketLibrary, 0, "WSACleanup");
    error = kErrorNotStarted;
  } else {
    session_.ledger.Closed(Resource::SocketLibrary, starts_.back(), "WSACleanup");
    starts_.pop_back();
  }
  SetLastPlatformError(error);
  return error == 0 ? 0 : kSocketError;
}

const HOSTENT* SimulatedSockets::gethostbyname(LPCSTR name) {
  const Text asked = FromUtf8(name == nullptr ? "" : name);
  const Call call = session_.Begin("gethostbyname", asked);
  DWORD error = call.fault();
  const std::vector<Address>* const found = session_.estate.FindHost(asked);
  if (error == 0 && starts_.empty()) error = kErrorNotStarted;
  if (error == 0 && (found == nullptr || found->empty())) error = kErrorHostNotFound;
  if (error != 0) {
    SetLastPlatformError(error);
    return nullptr;
  }
  name_ = ToUtf8(asked.empty() ? session_.estate.local().name() : asked);
  addresses_ = *found;
  address_list_.clear();
  for (Address& address : addresses_) {
    address_list_.push_back(reinterpret_cast<char*>(address.data()));
  }
  address_list_.push_back(nullptr);
  aliases_ = {nullptr};
  record_ = {.h_name = name_.data(),
             .h_aliases = aliases_.data(),
             .h_addrtype = kInternetFamily,
             .h_length = sizeof(Address),
             .h_addr_list = address_list_.data()};
  return &record_;
}

}  // namespace veldmark::simulated
