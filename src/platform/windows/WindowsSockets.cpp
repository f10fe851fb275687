#include "platform/windows/WindowsSockets.h"

#include <winsock2.h>

#include "platform/windows/Recorded.h"

namespace veldmark {

int WindowsSockets::WSAStartup(WORD version, SOCKETS_DATA* data) {
  ::WSADATA whole{};
  const int result = Recorded([&] { return ::WSAStartup(version, data ? &whole : nullptr); });
  if (data != nullptr) *data = {whole.wVersion, whole.wHighVersion, whole.iMaxSockets};
  return result;
}

int WindowsSockets::WSACleanup() {
  return Recorded([&] { return ::WSACleanup(); });
}

const HOSTENT* WindowsSockets::gethostbyname(LPCSTR name) {
  return Recorded([&] { return reinterpret_cast<const HOSTENT*>(::gethostbyname(name)); });
}

}  // namespace veldmark
