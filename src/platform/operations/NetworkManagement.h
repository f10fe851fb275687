#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kMaxPreferredLength = 0xFFFFFFFF;

// Bits of a server's type.
inline constexpr DWORD kServerTypeWorkstation = 0x1;
inline constexpr DWORD kServerTypeServer = 0x2;
inline constexpr DWORD kServerTypeDomainController = 0x8;
inline constexpr DWORD kServerTypeBackupController = 0x10;
inline constexpr DWORD kServerTypeNt = 0x1000;
inline constexpr DWORD kServerTypeServerNt = 0x8000;
inline constexpr DWORD kServerTypeAll = 0xFFFFFFFF;

inline constexpr DWORD kPlatformIdNt = 500;

inline constexpr DWORD kShareTypeDisk = 0;
inline constexpr DWORD kShareTypePrintQueue = 1;
inline constexpr DWORD kShareTypeDevice = 2;
inline constexpr DWORD kShareTypeIpc = 3;
inline constexpr DWORD kShareTypeSpecial = 0x80000000;

// The texts of every record lie in the same block as the record itself.

struct SERVER_INFO_100 {
  DWORD sv100_platform_id;
  LPWSTR sv100_name;
};

struct SERVER_INFO_101 {
  DWORD sv101_platform_id;
  LPWSTR sv101_name;
  DWORD sv101_version_major;  // only the low four bits are the version
  DWORD sv101_version_minor;
  DWORD sv101_type;  // kServerType...
  LPWSTR sv101_comment;
};

// Begins as SERVER_INFO_101 does.
struct SERVER_INFO_102 {
  DWORD sv102_platform_id;
  LPWSTR sv102_name;
  DWORD sv102_version_major;
  DWORD sv102_version_minor;
  DWORD sv102_type;
  LPWSTR sv102_comment;
  DWORD sv102_users;
  LONG sv102_disc;  // minutes
  BOOL sv102_hidden;
  DWORD sv102_announce;  // seconds
  DWORD sv102_anndelta;  // milliseconds
  DWORD sv102_licenses;
  LPWSTR sv102_userpath;
};

struct WKSTA_INFO_100 {
  DWORD wki100_platform_id;
  LPWSTR wki100_computername;
  LPWSTR wki100_langroup;  // the domain or workgroup
  DWORD wki100_ver_major;
  DWORD wki100_ver_minor;
};

struct SHARE_INFO_1 {
  LPWSTR shi1_netname;
  DWORD shi1_type;  // kShareType...
  LPWSTR shi1_remark;
};

// Begins as SHARE_INFO_1 does.
struct SHARE_INFO_2 {
  LPWSTR shi2_netname;
  DWORD shi2_type;
  LPWSTR shi2_remark;
  DWORD shi2_permissions;
  DWORD shi2_max_uses;  // all bits set: unlimited
  DWORD shi2_current_uses;
  LPWSTR shi2_path;  // on the server
  LPWSTR shi2_passwd;
};

// Begins as SHARE_INFO_2 does.
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

// Computers, and what they share. Server names are "\\srv" or "srv"; null and empty mean this
// computer. Each operation returns 0 or an error code; the codes common to all: 5 denied, 53 or
// 1722 the server can't be reached, 87 a null pointer for a result, 124 an unknown level.
//
// An enumeration hands out a block with `*entries_read` records of its level in a row, which the
// caller frees with NetApiBufferFree, and `*total_entries`, about how many there were from where it
// began. 234: there is more, to be had with the same `*resume_handle`, which is 0 at first; the
// block is valid then too. A null `resume_handle` is taken as 0. `*buffer` is null where there is
// no block, as for any other code.
class NetworkManagement {
 public:
  virtual ~NetworkManagement() = default;

  // Enumerates the servers that a domain's browse list shows, by kServerType... bits. Levels 100
  // and 101. `domain` null: this computer's own. 234 is not resumed by `*resume_handle`, which
  // stays 0. 6118: there is no list of that domain.
  virtual DWORD NetServerEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                              DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                              DWORD server_type, LPCWSTR domain, DWORD* resume_handle) = 0;

  // Hands out one record of a computer, levels 100, 101 and 102. 5: the caller may not have this
  // level; 102 is for administrators and operators.
  virtual DWORD NetServerGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) = 0;

  // Hands out a WKSTA_INFO_100 (level 100, the only one here).
  virtual DWORD NetWkstaGetInfo(LPCWSTR server_name, DWORD level, BYTE** buffer) = 0;

  // Hands out the name of a domain's primary controller, with its leading "\\", as `server_name`
  // knows it. An empty or null domain is that server's own. 2453: there is none.
  virtual DWORD NetGetDCName(LPCWSTR server_name, LPCWSTR domain_name, BYTE** buffer) = 0;

  // Hands out the names of the domains that a computer's domain trusts: texts in a row, each ended
  // by a NUL, and an empty one behind the last. An NTSTATUS, not an error code.
  virtual DWORD NetEnumerateTrustedDomains(LPCWSTR server_name, LPWSTR* domain_names) = 0;

  // Enumerates the shares of a computer, levels 1 and 2. 5: level 2 is for administrators.
  virtual DWORD NetShareEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                             DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                             DWORD* resume_handle) = 0;

  // Hands out the record of one share (level 502) in a block that the caller frees with
  // NetApiBufferFree. 2310: there is no such share.
  virtual DWORD NetShareGetInfo(LPCWSTR server_name, LPCWSTR net_name, DWORD level,
                                BYTE** buffer) = 0;

  // Ends a share. `reserved` is 0. 2310: there is no such share.
  virtual DWORD NetShareDel(LPCWSTR server_name, LPCWSTR net_name, DWORD reserved) = 0;

  // Enumerates the disks of a computer (level 0): records of three units, "C:" and a NUL.
  virtual DWORD NetServerDiskEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                  DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                                  DWORD* resume_handle) = 0;

  // Frees a block of this family or of AccountManagement. 0 on success, 87 for anything else; null
  // does nothing.
  virtual DWORD NetApiBufferFree(void* buffer) = 0;
};

}  // namespace veldmark
