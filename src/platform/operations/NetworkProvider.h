#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kUniversalNameInfoLevel = 1;
inline constexpr DWORD kRemoteNameInfoLevel = 2;

// The text that the pointer names lies behind the record, in the same buffer.
struct UNIVERSAL_NAME_INFOW {
  LPWSTR lpUniversalName;
};

// Network connections and names. Each operation returns 0 or an error code.
class NetworkProvider {
 public:
  virtual ~NetworkProvider() = default;

  // Fills the caller's `buffer` of `*buffer_size` bytes with a UNIVERSAL_NAME_INFOW (level
  // kUniversalNameInfoLevel) that holds the network form of a path on a redirected drive: "Z:\a"
  // gives
  // "\\srv\share\a". 234: the buffer is too small (a null buffer of size 0 included),
  // `*buffer_size` receives the size needed. 2250: the drive isn't redirected. 1200: the path
  // doesn't begin with a drive. 124: another level. 1222: no network.
  virtual DWORD WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level, void* buffer,
                                      DWORD* buffer_size) = 0;
};

}  // namespace veldmark
