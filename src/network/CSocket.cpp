#include "network/CSocket.h"

#include "apartment/Apartment.h"
#include "apartment/Conversions.h"
#include "automation/Error.h"

namespace veldmark {
namespace {

constexpr std::int32_t kNotResponding = kAutomationErrorBase + 1;
constexpr std::int32_t kVersionTooOld = kAutomationErrorBase + 2;
constexpr std::int32_t kTooFewSockets = kAutomationErrorBase + 3;
constexpr std::int32_t kCleanupFailed = kAutomationErrorBase + 4;

constexpr WORD kMajorVersion = 1;
constexpr WORD kMinorVersion = 1;
constexpr WORD kFewestSockets = 1;

WORD LoByte(WORD value) { return value & 0xFF; }
WORD HiByte(WORD value) { return value / 256; }

[[noreturn]] void RaiseAs(std::int32_t number, Text description) {
  Raise(number, SourceOf(u"CSocket"), std::move(description));
}

[[noreturn]] void RaiseNotResponding() {
  RaiseAs(kNotResponding, u"Winsock.dll is not responding.");
}

}  // namespace

int CSocket::Start::Begin(SOCKETS_DATA& data) {
  const int result = sockets_.WSAStartup(kMinorVersion * 256 + kMajorVersion, &data);
  begun_ = result == 0;
  return result;
}

int CSocket::Start::End() {
  if (!begun_) return 0;
  begun_ = false;
  return sockets_.WSACleanup();
}

CSocket::CSocket() : sockets_(Apartment::Current().platform.sockets), start_(sockets_) {
  SOCKETS_DATA data{};
  if (start_.Begin(data) != 0) RaiseNotResponding();
  const WORD major = LoByte(data.wVersion);
  const WORD minor = HiByte(data.wVersion);
  if (major < kMajorVersion || (major == kMajorVersion && minor < kMinorVersion)) {
    RaiseAs(kVersionTooOld, u"Windows Sockets version " + ToText(major) + u"." + ToText(minor) +
                                u" is not supported by winsock.dll ");
  }
  if (data.iMaxSockets < kFewestSockets) {
    RaiseAs(kTooFewSockets, u"This application requires a minimum of " + ToText(kFewestSockets) +
                                u" supported sockets.");
  }
}

CSocket::~CSocket() = default;

void CSocket::PutHostName(const Text& host_name) {
  host_name_ = host_name;
  ResolveHost();
}

void CSocket::StopSockets() {
  const int result = start_.End();
  if (result == 0) return;
  RaiseAs(kCleanupFailed, u"Socket error " + ToText(result) + u" occurred in Cleanup \"");
}

void CSocket::ResolveHost() {
  std::vector<std::uint8_t> name = StringToAnsiBuffer(host_name_);
  name.push_back(0);
  const HOSTENT* const host = sockets_.gethostbyname(reinterpret_cast<LPCSTR>(name.data()));
  if (!host || !host->h_addr_list || !host->h_addr_list[0]) RaiseNotResponding();
  Text address;
  for (std::int16_t i = 0; i < host->h_length; ++i) {
    address += ToText(static_cast<std::uint8_t>(host->h_addr_list[0][i])) + u".";
  }
  if (!address.empty()) address.pop_back();
  ip_address_ = std::move(address);
}

}  // namespace veldmark
