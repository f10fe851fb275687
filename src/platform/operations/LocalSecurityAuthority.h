#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

inline constexpr DWORD kPolicyViewLocalInformation = 0x1;
inline constexpr DWORD kPolicyLookupNames = 0x800;

// The result of these operations, 0 on success; LsaNtStatusToWinError makes an error code of it.
using NTSTATUS = std::int32_t;

// A counted text; lengths in bytes. The buffer need have no NUL.
struct LSA_UNICODE_STRING {
  WORD Length;
  WORD MaximumLength;
  LPWSTR Buffer;
};

// Nothing in it counts but that it is there.
struct LSA_OBJECT_ATTRIBUTES {
  DWORD Length;
  HANDLE RootDirectory;
  LSA_UNICODE_STRING* ObjectName;
  DWORD Attributes;
  void* SecurityDescriptor;
  void* SecurityQualityOfService;
};

struct LSA_ENUMERATION_INFORMATION {
  void* Sid;
};

// The rights of accounts on a computer.
class LocalSecurityAuthority {
 public:
  virtual ~LocalSecurityAuthority() = default;

  // Opens the policy of a computer ("\\srv"; an empty text means this one) with kPolicy... rights.
  // `*policy` is closed with LsaClose. Codes: 5 denied, 53 or 1722 the computer can't be reached.
  virtual NTSTATUS LsaOpenPolicy(LSA_UNICODE_STRING* system_name, LSA_OBJECT_ATTRIBUTES* attributes,
                                 DWORD desired_access, HANDLE* policy) = 0;

  // Hands out the SIDs of the accounts that have a right ("SeBackupPrivilege"), as records in a
  // block that the caller frees with LsaFreeMemory. Codes: 259 nobody has it, 1313 there is no such
  // right, 6 no policy, 5.
  virtual NTSTATUS LsaEnumerateAccountsWithUserRight(HANDLE policy, LSA_UNICODE_STRING* right,
                                                     void** buffer, DWORD* count) = 0;

  // The error code of a result; 317 for one that has none.
  virtual DWORD LsaNtStatusToWinError(NTSTATUS status) = 0;

  virtual NTSTATUS LsaFreeMemory(void* buffer) = 0;
  virtual NTSTATUS LsaClose(HANDLE policy) = 0;
};

}  // namespace veldmark
