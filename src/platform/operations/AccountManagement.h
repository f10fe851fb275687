#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

// Which accounts NetUserEnum lists.
inline constexpr DWORD kFilterNormalAccount = 0x2;
inline constexpr DWORD kFilterWorkstationTrustAccount = 0x10;
inline constexpr DWORD kFilterServerTrustAccount = 0x20;

// Flags of an account.
inline constexpr DWORD kAccountDisabled = 0x2;
inline constexpr DWORD kAccountLockout = 0x10;
inline constexpr DWORD kAccountPasswordCantChange = 0x40;
inline constexpr DWORD kAccountNormal = 0x200;
inline constexpr DWORD kAccountWorkstationTrust = 0x1000;
inline constexpr DWORD kAccountServerTrust = 0x2000;
inline constexpr DWORD kAccountDontExpirePassword = 0x10000;

// The time of an account that never expires.
inline constexpr DWORD kTimeForever = 0xFFFFFFFF;

inline constexpr DWORD kIncludeIndirectGroups = 0x1;

// The texts and SIDs of every record lie in the same block as the record itself. Times are seconds
// since 1970, UTC.

struct USER_INFO_0 {
  LPWSTR usri0_name;
};

struct USER_INFO_1 {
  LPWSTR usri1_name;
  LPWSTR usri1_password;
  DWORD usri1_password_age;
  DWORD usri1_priv;
  LPWSTR usri1_home_dir;
  LPWSTR usri1_comment;
  DWORD usri1_flags;
  LPWSTR usri1_script_path;
};

struct USER_INFO_3 {
  LPWSTR usri3_name;
  LPWSTR usri3_password;     // always null in what is handed out
  DWORD usri3_password_age;  // seconds
  DWORD usri3_priv;
  LPWSTR usri3_home_dir;
  LPWSTR usri3_comment;
  DWORD usri3_flags;
  LPWSTR usri3_script_path;
  DWORD usri3_auth_flags;
  LPWSTR usri3_full_name;
  LPWSTR usri3_usr_comment;
  LPWSTR usri3_parms;
  LPWSTR usri3_workstations;
  DWORD usri3_last_logon;    // 0: never
  DWORD usri3_last_logoff;   // 0: unknown
  DWORD usri3_acct_expires;  // kTimeForever: never
  DWORD usri3_max_storage;
  DWORD usri3_units_per_week;
  BYTE* usri3_logon_hours;
  DWORD usri3_bad_pw_count;
  DWORD usri3_num_logons;
  LPWSTR usri3_logon_server;
  DWORD usri3_country_code;
  DWORD usri3_code_page;
  DWORD usri3_user_id;
  DWORD usri3_primary_group_id;
  LPWSTR usri3_profile;
  LPWSTR usri3_home_dir_drive;
  DWORD usri3_password_expired;
};

struct USER_INFO_10 {
  LPWSTR usri10_name;
  LPWSTR usri10_comment;
  LPWSTR usri10_usr_comment;
  LPWSTR usri10_full_name;
};

struct USER_INFO_1003 {
  LPWSTR usri1003_password;
};

struct NET_DISPLAY_USER {
  LPWSTR usri1_name;
  LPWSTR usri1_comment;
  DWORD usri1_flags;
  LPWSTR usri1_full_name;
  DWORD usri1_user_id;
  DWORD usri1_next_index;
};

struct GROUP_USERS_INFO_0 {
  LPWSTR grui0_name;
};

struct GROUP_INFO_0 {
  LPWSTR grpi0_name;
};

struct GROUP_INFO_1 {
  LPWSTR grpi1_name;
  LPWSTR grpi1_comment;
};

struct GROUP_INFO_2 {
  LPWSTR grpi2_name;
  LPWSTR grpi2_comment;
  DWORD grpi2_group_id;
  DWORD grpi2_attributes;
};

struct LOCALGROUP_USERS_INFO_0 {
  LPWSTR lgrui0_name;
};

struct LOCALGROUP_INFO_1 {
  LPWSTR lgrpi1_name;
  LPWSTR lgrpi1_comment;
};

struct LOCALGROUP_MEMBERS_INFO_0 {
  void* lgrmi0_sid;
};

struct USER_MODALS_INFO_0 {
  DWORD usrmod0_min_passwd_len;
  DWORD usrmod0_max_passwd_age;  // seconds; kTimeForever: passwords don't expire
  DWORD usrmod0_min_passwd_age;
  DWORD usrmod0_force_logoff;
  DWORD usrmod0_password_hist_len;
};

struct USER_MODALS_INFO_3 {
  DWORD usrmod3_lockout_duration;  // seconds
  DWORD usrmod3_lockout_observation_window;
  DWORD usrmod3_lockout_threshold;
};

// The account database of a computer, which on a controller is its domain's. Server names are
// "\\srv" or "srv"; null and empty mean this computer. Each operation returns 0 or an error code;
// the codes common to all: 5 denied, 53 or 1722 the server can't be reached, 87 a null pointer for
// a result or a record, 124 an unknown level, 2221 there is no such user, 2220 no such group, 1376
// no such local group. Reading is open to every account; writing, and level 3 of a user, are for
// administrators.
//
// Enumerations hand out blocks as those of NetworkManagement do, and NetApiBufferFree there frees
// every block of this family.
class AccountManagement {
 public:
  virtual ~AccountManagement() = default;

  // Enumerates the accounts that `filter` (kFilter..., 0: all) lets through, levels 0 and 3.
  virtual DWORD NetUserEnum(LPCWSTR server_name, DWORD level, DWORD filter, BYTE** buffer,
                            DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                            DWORD* resume_handle) = 0;

  // Enumerates users for display (level 1: NET_DISPLAY_USER, sorted by name), from `index` on,
  // which is 0 at first and the last record's usri1_next_index then. 234: there is more. With
  // nothing left it returns 0, `*entries_returned` 0 and a null buffer.
  virtual DWORD NetQueryDisplayInformation(LPCWSTR server_name, DWORD level, DWORD index,
                                           DWORD entries_requested, DWORD preferred_length,
                                           DWORD* entries_returned, void** buffer) = 0;

  // Hands out one user's record, levels 3 and 10.
  virtual DWORD NetUserGetInfo(LPCWSTR server_name, LPCWSTR user_name, DWORD level,
                               BYTE** buffer) = 0;

  // Changes a user: level 1 (all but name and password where those are null) or 1003 (the password
  // alone). `*parameter_error` (may be null) tells the index of a bad field (87). 2245: the
  // password doesn't meet the policy; 86: it is refused.
  virtual DWORD NetUserSetInfo(LPCWSTR server_name, LPCWSTR user_name, DWORD level,
                               const BYTE* record, DWORD* parameter_error) = 0;

  // Hands out the global groups that a user is in (level 0: GROUP_USERS_INFO_0).
  virtual DWORD NetUserGetGroups(LPCWSTR server_name, LPCWSTR user_name, DWORD level, BYTE** buffer,
                                 DWORD preferred_length, DWORD* entries_read,
                                 DWORD* total_entries) = 0;

  // Hands out the local groups that a user ("ann" or "CORP\ann") is in (level 0:
  // LOCALGROUP_USERS_INFO_0); with kIncludeIndirectGroups those too that he is in by a global
  // group.
  virtual DWORD NetUserGetLocalGroups(LPCWSTR server_name, LPCWSTR user_name, DWORD level,
                                      DWORD flags, BYTE** buffer, DWORD preferred_length,
                                      DWORD* entries_read, DWORD* total_entries) = 0;

  // Enumerates the global groups (level 0: GROUP_INFO_0).
  virtual DWORD NetGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                             DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                             UINT_PTR* resume_handle) = 0;

  // Enumerates the members of a global group (level 0: GROUP_USERS_INFO_0).
  virtual DWORD NetGroupGetUsers(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                                 BYTE** buffer, DWORD preferred_length, DWORD* entries_read,
                                 DWORD* total_entries, UINT_PTR* resume_handle) = 0;

  // Hands out the record of a global group (level 2: GROUP_INFO_2).
  virtual DWORD NetGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                                BYTE** buffer) = 0;

  // Adds a global group (level 1: GROUP_INFO_1). 2223: there is one; 2224: a user has the name;
  // 2226: the computer is no controller.
  virtual DWORD NetGroupAdd(LPCWSTR server_name, DWORD level, const BYTE* record,
                            DWORD* parameter_error) = 0;

  // Changes the comment of a global group (level 1); the name in the record is ignored.
  virtual DWORD NetGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                                const BYTE* record, DWORD* parameter_error) = 0;

  // Enumerates the local groups (level 1: LOCALGROUP_INFO_1).
  virtual DWORD NetLocalGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer,
                                  DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                                  UINT_PTR* resume_handle) = 0;

  // Enumerates the members of a local group (level 0: LOCALGROUP_MEMBERS_INFO_0).
  virtual DWORD NetLocalGroupGetMembers(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                                        BYTE** buffer, DWORD preferred_length, DWORD* entries_read,
                                        DWORD* total_entries, UINT_PTR* resume_handle) = 0;

  // Hands out the record of a local group (level 1: LOCALGROUP_INFO_1).
  virtual DWORD NetLocalGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                                     BYTE** buffer) = 0;

  // Adds a local group (level 1: LOCALGROUP_INFO_1). 1379: there is one; 2223, 2224: a global group
  // or user has the name.
  virtual DWORD NetLocalGroupAdd(LPCWSTR server_name, DWORD level, const BYTE* record,
                                 DWORD* parameter_error) = 0;

  // Changes the comment of a local group (level 1); the name in the record is ignored.
  virtual DWORD NetLocalGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                                     const BYTE* record, DWORD* parameter_error) = 0;

  // Hands out the policy of the account database, levels 0 (USER_MODALS_INFO_0) and 3
  // (USER_MODALS_INFO_3).
  virtual DWORD NetUserModalsGet(LPCWSTR server_name, DWORD level, BYTE** buffer) = 0;
};

}  // namespace veldmark
