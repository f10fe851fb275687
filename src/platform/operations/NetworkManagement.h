#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kShareTypeDisk = 0;
inline constexpr DWORD kShareTypePrintQueue = 1;
inline constexpr DWORD kShareTypeDevice = 2;
inline constexpr DWORD kShareTypeIpc = 3;
inline constexpr DWORD kShareTypeSpecial = 0x80000000;

// The texts and the descriptor lie in the same block.
struct SHARE_INFO_502 {
  LPWSTR shi502_netname;
  DWORD shi502_type;
  LPWSTR shi502_remark;
  DWORD shi502_permissions;
  DWORD shi502_max_uses;
  DWORD shi502_current_uses;
  LPWSTR shi502_path;
  LPWSTR shi502_passwd;
  DWORD shi502_reserved;
  void* shi502_security_descriptor;  // self-relative; null for a share without one
};

// The accounts and resources that servers share. Server names are "\\srv"; null and empty mean this
// computer. Each operation returns 0 or an error code; the codes common to all: 5 denied, 53 or
// 1722 the server can't be reached, 124 an unknown level.
class NetworkManagement {
 public:
  virtual ~NetworkManagement() = default;

  // Hands out the record of one share (level 502) in a block that the caller frees with
  // NetApiBufferFree. 2310: there is no such share.
  virtual DWORD NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level,
                                BYTE** buffer) = 0;

  // Frees a block of this family. 0 on success, 87 for anything else; null does nothing.
  virtual DWORD NetApiBufferFree(void* buffer) = 0;
};

}  // namespace veldmark
