#pragma once

#include "automation/Text.h"
#include "platform/operations/Sockets.h"

namespace veldmark {

/// The IPv4 address of a host. The socket library is started with the object and ended with it.
class CSocket {
 public:
  /// Raises 80040001 where the library can't be started, 80040002 where its version is too old and
  /// 80040003 where it has no sockets.
  CSocket();
  CSocket(const CSocket&) = delete;
  CSocket& operator=(const CSocket&) = delete;
  ~CSocket();

  const Text& HostName() const { return host_name_; }
  /// Looks the host up at once. Raises 80040001 for one that isn't found; the address stays then.
  void PutHostName(const Text& host_name);
  /// The first address of the host, "10.1.2.3".
  const Text& IPAddress() const { return ip_address_; }
  /// Ends the library ahead of the object; it can look nothing up any more. Raises 80040004 where
  /// that fails, which the end of the object can't tell.
  void StopSockets();

 private:
  /// A start of the library that is still to be ended.
  class Start {
   public:
    explicit Start(Sockets& sockets) : sockets_(sockets) {}
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;
    ~Start() { End(); }
    int Begin(SOCKETS_DATA& data);
    int End();

   private:
    Sockets& sockets_;
    bool begun_ = false;
  };

  void ResolveHost();

  Sockets& sockets_;
  Start start_;
  Text host_name_;
  Text ip_address_;
};

}  // namespace veldmark
