#pragma once

#include "platform/operations/AccountManagement.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The accounts of an estate's computers and domains. The journal notes a call's server as it was
// given, "-" for null, then the account and the level or flags; never a password.
class SimulatedAccountManagement : public AccountManagement {
 public:
  explicit SimulatedAccountManagement(Session& session) : session_(session) {}

  DWORD NetUserEnum(LPCWSTR server_name, DWORD level, DWORD filter, BYTE** buffer,
                    DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                    DWORD* resume_handle) override;
  DWORD NetQueryDisplayInformation(LPCWSTR server_name, DWORD level, DWORD index,
                                   DWORD entries_requested, DWORD preferred_length,
                                   DWORD* entries_returned, void** buffer) override;
  DWORD NetUserGetInfo(LPCWSTR server_name, LPCWSTR user_name, DWORD level, BYTE** buffer) override;
  DWORD NetUserSetInfo(LPCWSTR server_name, LPCWSTR user_name, DWORD level, const BYTE* record,
                       DWORD* parameter_error) override;
  DWORD NetUserGetGroups(LPCWSTR server_name, LPCWSTR user_name, DWORD level, BYTE** buffer,
                         DWORD preferred_length, DWORD* entries_read,
                         DWORD* total_entries) override;
  DWORD NetUserGetLocalGroups(LPCWSTR server_name, LPCWSTR user_name, DWORD level, DWORD flags,
                              BYTE** buffer, DWORD preferred_length, DWORD* entries_read,
                              DWORD* total_entries) override;
  DWORD NetGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer, DWORD preferred_length,
                     DWORD* entries_read, DWORD* total_entries, UINT_PTR* resume_handle) override;
  DWORD NetGroupGetUsers(LPCWSTR server_name, LPCWSTR group_name, DWORD level, BYTE** buffer,
                         DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                         UINT_PTR* resume_handle) override;
  DWORD NetGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                        BYTE** buffer) override;
  DWORD NetGroupAdd(LPCWSTR server_name, DWORD level, const BYTE* record,
                    DWORD* parameter_error) override;
  DWORD NetGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level, const BYTE* record,
                        DWORD* parameter_error) override;
  DWORD NetLocalGroupEnum(LPCWSTR server_name, DWORD level, BYTE** buffer, DWORD preferred_length,
                          DWORD* entries_read, DWORD* total_entries,
                          UINT_PTR* resume_handle) override;
  DWORD NetLocalGroupGetMembers(LPCWSTR server_name, LPCWSTR group_name, DWORD level, BYTE** buffer,
                                DWORD preferred_length, DWORD* entries_read, DWORD* total_entries,
                                UINT_PTR* resume_handle) override;
  DWORD NetLocalGroupGetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                             BYTE** buffer) override;
  DWORD NetLocalGroupAdd(LPCWSTR server_name, DWORD level, const BYTE* record,
                         DWORD* parameter_error) override;
  DWORD NetLocalGroupSetInfo(LPCWSTR server_name, LPCWSTR group_name, DWORD level,
                             const BYTE* record, DWORD* parameter_error) override;
  DWORD NetUserModalsGet(LPCWSTR server_name, DWORD level, BYTE** buffer) override;

 private:
  // A computer that was reached, and the accounts that it administers.
  struct Asked {
    Computer* computer;
    AccountDatabase* accounts;
  };

  // Begins a call to a computer. Returns 0 or the code that it ends with.
  DWORD Begin(std::string_view operation, const Text& noted, LPCWSTR server_name, bool is_sound,
              bool has_level, Asked& asked);
  // What stands in the way of changing a computer's accounts.
  DWORD WriteError(const Asked& asked) const;

  Session& session_;
};

}  // namespace veldmark::simulated
