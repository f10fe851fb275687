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
  // WSACleanup. 0 or an error code: 10092 for version 0, 10014 for no `data`. The version in `data`
  // is the wanted one or, where the library is older, the library's.
  virtual int WSAStartup(WORD version, SOCKETS_DATA* data) = 0;
  // 0; -1 on failure, with last error 10093 where the library isn't started.
  virtual int WSACleanup() = 0;
  // The IPv4 addresses of a host (null and empty: this computer), in a record of the thread that
  // the next call replaces. Null on failure: 11001 for an unknown host, 10093 where the library
  // isn't started.
  virtual const HOSTENT* gethostbyname(LPCSTR name) = 0;
};

}  // namespace veldmark
