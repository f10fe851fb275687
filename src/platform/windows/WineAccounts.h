#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

/// What the account operations answer on this computer where Wine doesn't, or does it otherwise
/// than published. Each takes the arguments of the operation that it stands for and returns 0 or
/// its published code.

/// Level 3 of a user, which Wine refuses (2140): what its levels 1 and 10 tell, and the rest as of
/// an account that nobody has touched.
DWORD WineUser(LPCWSTR user_name, BYTE** buffer);

/// The users with that record. Wine lists them at level 0 only, and heeds no filter.
DWORD WineUsers(DWORD level, DWORD filter, BYTE** buffer, DWORD* entries_read,
                DWORD* total_entries);

/// Mends a listing of users for display: Wine gives the whole list whatever the index, and no index
/// to go on with.
void MendDisplayList(DWORD index, DWORD* entries_returned, void** buffer);

/// The built-in local groups that Wine can name. It reports success for each of these operations
/// and does nothing.
DWORD WineLocalGroups(BYTE** buffer, DWORD* entries_read, DWORD* total_entries);
DWORD WineLocalGroup(LPCWSTR group_name, BYTE** buffer);
DWORD WineLocalGroupMembers(LPCWSTR group_name, BYTE** buffer, DWORD* entries_read,
                            DWORD* total_entries);

/// The policy at levels 0 and 3, which Wine refuses (2140): it has none, so nothing is asked of
/// passwords and nobody is locked out.
DWORD WinePolicy(DWORD level, BYTE** buffer);

}  // namespace veldmark
