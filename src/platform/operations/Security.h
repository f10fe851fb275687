#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kOwnerSecurityInformation = 0x1;
inline constexpr DWORD kGroupSecurityInformation = 0x2;
inline constexpr DWORD kDaclSecurityInformation = 0x4;
inline constexpr DWORD kSaclSecurityInformation = 0x8;
inline constexpr DWORD kProtectedDaclSecurityInformation = 0x80000000;
inline constexpr DWORD kUnprotectedDaclSecurityInformation = 0x20000000;

inline constexpr DWORD kTokenQuery = 0x8;
inline constexpr DWORD kTokenAdjustPrivileges = 0x20;

inline constexpr DWORD kSePrivilegeEnabled = 0x2;

inline constexpr DWORD kSddlRevision1 = 1;

// The number of a privilege, valid on one computer until it restarts.
struct LUID {
  DWORD LowPart;
  LONG HighPart;
};

struct LUID_AND_ATTRIBUTES {
  LUID Luid;
  DWORD Attributes;
};

// The published record ends in an array of any length; this is its form with one entry.
struct TOKEN_PRIVILEGES {
  DWORD PrivilegeCount;
  LUID_AND_ATTRIBUTES Privileges[1];
};

struct GENERIC_MAPPING {
  DWORD GenericRead;
  DWORD GenericWrite;
  DWORD GenericExecute;
  DWORD GenericAll;
};

struct GUID {
  DWORD Data1;
  WORD Data2;
  WORD Data3;
  BYTE Data4[8];
  bool operator==(const GUID&) const = default;
};

struct OBJECT_TYPE_LIST {
  WORD Level;
  WORD Sbz;
  GUID* ObjectType;
};

// Security descriptors of files and other named objects, access checks, and the privileges of this
// process.
//
// Descriptors go out in the self-relative form: a header of 20 bytes with the offsets of owner,
// group, system and discretionary list. `information` is a set of k...SecurityInformation and says
// which of them are meant. Reading owner, group and discretionary list needs kReadControl on the
// object, writing the list needs WRITE_DAC (0x40000); an object's owner always has both.
class Security {
 public:
  virtual ~Security() = default;

  // Writes the descriptor of a file or folder to `descriptor` of `length` bytes and the size needed
  // to `*length_needed`. Non-zero on success. 122: too small (nothing is written); 5: denied, also
  // to a caller who may override it by a privilege; 32: in use; 2, 3, 53, 67, 123 as files fail.
  virtual BOOL GetFileSecurityW(LPCWSTR file_name, DWORD information, void* descriptor,
                                DWORD length, DWORD* length_needed) = 0;

  // The same for an open handle with kReadControl; 5 for one without, 6 for none.
  virtual BOOL GetKernelObjectSecurity(HANDLE handle, DWORD information, void* descriptor,
                                       DWORD length, DWORD* length_needed) = 0;

  // Hands out the descriptor of a named object in a block that the caller frees with LocalFree.
  // `object_type` is an SE_OBJECT_TYPE: a file is named by its path, a service or printer as
  // "\\srv\name" or "name", a registry key as "MACHINE\Software" ("CLASSES_ROOT", "CURRENT_USER",
  // "USERS", "\\srv\MACHINE\..."), a share as "\\srv\share", a directory object by its
  // distinguished name. `*descriptor` is null for a share without one. Each of the four
  // pointers before it may be null and receives the place of that part within the block, or null
  // where the descriptor has none. Returns 0 or an error code, and stores nothing then: 2, 3, 53
  // and 67 as files fail, 2 for a missing key or directory object, 1060
  // for a missing service, 1801 for a missing printer, 2310 for a missing share, 1722 for an
  // unreachable server of any of these, 5, 87 for an object type that has no names.
  virtual DWORD GetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type, DWORD information,
                                      void** owner, void** group, void** dacl, void** sacl,
                                      void** descriptor) = 0;

  // Replaces the parts of a named object's descriptor that `information` names; the others stay.
  // With kUnprotectedDaclSecurityInformation the object inherits from its parent: the inherited
  // entries of `dacl` give way to what the parent hands down. With
  // kProtectedDaclSecurityInformation nothing is inherited. Inheritable entries reach the objects
  // below that aren't protected. A null `dacl` with kDaclSecurityInformation stores a null list:
  // everybody has every access. Returns 0 or a code as for reading; 1336 for a list that isn't
  // sound, 1337 for a SID that isn't, 1307 for an owner that the caller can't make one.
  virtual DWORD SetNamedSecurityInfoW(LPCWSTR object_name, DWORD object_type, DWORD information,
                                      const void* owner, const void* group, const void* dacl,
                                      const void* sacl) = 0;

  // Hands out the descriptor that a string describes, in a block that the caller frees with
  // LocalFree; `*size` (may be null) receives its bytes. Non-zero on success. 87: the string isn't
  // one; 1305: a revision other than kSddlRevision1; 1336: an entry in it isn't one, perhaps
  // by its account; 1337: an owner or group that stands for no account.
  virtual BOOL ConvertStringSecurityDescriptorToSecurityDescriptorW(LPCWSTR string_descriptor,
                                                                    DWORD revision,
                                                                    void** descriptor,
                                                                    DWORD* size) = 0;

  // The size in bytes of a descriptor that the platform handed out.
  virtual DWORD GetSecurityDescriptorLength(const void* descriptor) = 0;

  // Tests `desired_access` against a descriptor with owner and group for the client behind an
  // impersonation token. `*granted_access` and `*access_status` (non-zero: allowed) tell the
  // outcome. An entry for an object type counts only where `object_types` names that type, and
  // `self` stands for the SID S-1-5-10. Non-zero if the test could be made. 122: `privileges` of
  // `*privileges_length` bytes is too small for the PRIVILEGE_SET of what was used, the size needed
  // is in `*privileges_length`; 1309: the token is none for impersonation; 6: no token; 5: not
  // opened for query; 1338: no descriptor, or one without owner or group; 1360: `desired_access`
  // holds generic bits; 87: an object type list that doesn't begin at level 0.
  virtual BOOL AccessCheckByType(const void* descriptor, const void* self, HANDLE client_token,
                                 DWORD desired_access, OBJECT_TYPE_LIST* object_types,
                                 DWORD object_types_length, GENERIC_MAPPING* mapping,
                                 void* privileges, DWORD* privileges_length, DWORD* granted_access,
                                 BOOL* access_status) = 0;

  // Finds the SID of an account, "name" or "DOMAIN\\name", on a computer (null and empty: this
  // one) and where that asks. Writes the SID to `sid` of `*sid_size` bytes, the domain's name to
  // `domain` of `*domain_size` units, and what it is to `*use` (SidTypeEnum). Non-zero on success;
  // the sizes then tell the SID's bytes and the domain's units without its NUL. 122: one of them is
  // too small, both sizes receive what is needed, the NUL counted; 1332: there is no such account;
  // 1722: the computer can't be reached; 87.
  virtual BOOL LookupAccountNameW(LPCWSTR system_name, LPCWSTR account_name, void* sid,
                                  DWORD* sid_size, LPWSTR domain, DWORD* domain_size, INT* use) = 0;

  // Finds the account behind a SID, as above: its name and domain with their sizes in units. 1332:
  // there is none; 1722; 1337: no SID; 122.
  virtual BOOL LookupAccountSidW(LPCWSTR system_name, const void* sid, LPWSTR name,
                                 DWORD* name_size, LPWSTR domain, DWORD* domain_size, INT* use) = 0;

  // This process as a handle that needs no closing.
  virtual HANDLE GetCurrentProcess() = 0;

  // Opens a process's token with these kToken... rights; `*token` is closed with CloseHandle.
  // Non-zero on success; 5, 6.
  virtual BOOL OpenProcessToken(HANDLE process, DWORD desired_access, HANDLE* token) = 0;

  // The number of a privilege ("SeBackupPrivilege", without regard to case) on a computer; null and
  // empty mean this one. Non-zero on success. 1313: there is no such privilege; 1722: the computer
  // can't be reached. `*luid` stays as it is then.
  virtual BOOL LookupPrivilegeValueW(LPCWSTR system_name, LPCWSTR name, LUID* luid) = 0;

  // Turns privileges on (kSePrivilegeEnabled) or off (0); with `disable_all` all of them off.
  // `previous_state` of `buffer_length` bytes receives those that changed and `*return_length` its
  // size; both may be null. Non-zero on success, also where the token lacks some of the privileges:
  // the last error is 1300 then, else 0. 5 for a token not opened for it, 6 for none, 122 if
  // `previous_state` is too small (nothing is changed).
  virtual BOOL AdjustTokenPrivileges(HANDLE token, BOOL disable_all,
                                     const TOKEN_PRIVILEGES* new_state, DWORD buffer_length,
                                     TOKEN_PRIVILEGES* previous_state, DWORD* return_length) = 0;
};

}  // namespace veldmark
