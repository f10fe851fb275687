#pragma once

#include "platform/simulated/estate/Path.h"
#include "platform/simulated/estate/Token.h"

namespace veldmark::simulated {

struct FileAccess {
  DWORD error = 0;    // 5, or 1314 where a privilege is missing
  DWORD granted = 0;  // all that was asked for, without generic bits
};

// What a token is granted of the access that it asks for to the existing file or folder that a path
// led to. With `backs_up` the privileges for backing up and restoring count too. The folder's own
// rights to list and to delete what is in it count as for real; so do those of a share on the way.
FileAccess CheckFileAccess(const Token& token, const Place& place, DWORD desired,
                           bool backs_up = false);

// The same for the folder that a path's last name would lie in.
FileAccess CheckFolderAccess(const Token& token, const Place& place, DWORD desired);

}  // namespace veldmark::simulated
