#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// The first fields of the published record; the rest differs between word sizes and isn't needed.
struct SOCKETS_DATA {
  WORD wVersion;  // low byte major, high byte minor
  WORD wHighVersion;
  WORD iMaxSockets;
};

struct HOSTENT {
  char* h_name;
  char** h_aliases;
  std::int16_t h_addrtype;
  std::int16_t h_length;  // bytes of an address
  char** h_addr_list;     // ends in null
};

// Host names.
class Sockets {
 public:
  virtual ~Sockets() = default;

  // Starts the library in the wanted version (low byte major, high byte minor); each start takes a
  // WSACleanup. 0 or an error code.
  virtual int WSAStartup(WORD version, SOCKETS_DATA* data) = 0;
  // 0, or an error code where the library isn't started.
  virtual int WSACleanup() = 0;
  // The IPv4 addresses of a host, in a record of the thread that the next call replaces. Null for
  // an unknown host, and where the library isn't started.
  virtual const HOSTENT* gethostbyname(LPCSTR name) = 0;
};

}  // namespace veldmark
