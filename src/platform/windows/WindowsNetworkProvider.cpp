#include "platform/windows/WindowsNetworkProvider.h"

#include "platform/windows/Recorded.h"
#include "platform/windows/Sdk.h"

namespace veldmark {

DWORD WindowsNetworkProvider::WNetGetUniversalNameW(LPCWSTR local_path, DWORD info_level,
                                                    void* buffer, DWORD* buffer_size) {
  return Recorded([&] {
    return ::WNetGetUniversalNameW(Sdk(local_path), info_level, buffer, Sdk(buffer_size));
  });
}

}  // namespace veldmark
