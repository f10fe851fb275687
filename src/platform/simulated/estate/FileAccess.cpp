#include "platform/simulated/estate/FileAccess.h"

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/AccessCheck.h"

namespace veldmark::simulated {
namespace {

DWORD GrantedBy(const SecurityRef& security, const Token& token) {
  return GrantedAccess(security->descriptor(), token, kFileMapping);
}

// Folders on the way have to let those pass who lack the privilege that everybody has.
bool MayPass(const Token& token, const FileNode& node) {
  if (token.IsEnabled(Privilege::ChangeNotify)) return true;
  for (const FileNode* folder = node.parent(); folder != nullptr; folder = folder->parent()) {
    if ((GrantedBy(folder->security(), token) & kFileTraverse) == 0) return false;
  }
  return true;
}

DWORD GrantedByPrivileges(const Token& token, bool backs_up) {
  DWORD granted = token.IsEnabled(Privilege::TakeOwnership) ? kWriteOwner : 0;
  if (backs_up && token.IsEnabled(Privilege::Backup)) {
    granted |= kFileMapping.GenericRead | kFileTraverse | kAccessSystemSecurity;
  }
  if (backs_up && token.IsEnabled(Privilege::Restore)) {
    granted |= kFileMapping.GenericWrite | kWriteDac | kWriteOwner | kDelete | kFileAddFile |
               kFileAddSubdirectory | kAccessSystemSecurity;
  }
  return granted;
}

FileAccess Check(const Token& token, const FileNode& node, const FileNode* folder,
                 const Share* share, DWORD desired, bool backs_up) {
  DWORD granted = GrantedBy(node.security(), token) | GrantedByPrivileges(token, backs_up);
  if (folder != nullptr) {
    const DWORD in_folder = GrantedBy(folder->security(), token);
    if ((in_folder & kFileListDirectory) != 0) granted |= kFileReadAttributes;
    if ((in_folder & kFileDeleteChild) != 0) granted |= kDelete;
  }
  if (share != nullptr && share->security != nullptr) granted &= GrantedBy(share->security, token);
  if (token.IsEnabled(Privilege::Security)) granted |= kAccessSystemSecurity;

  const DWORD named = MapGeneric(desired & ~kMaximumAllowed, kFileMapping);
  const DWORD missing = named & ~granted;
  if (missing == kAccessSystemSecurity) return {.error = kErrorPrivilegeNotHeld};
  if (missing != 0 || !MayPass(token, node)) return {.error = kErrorAccessDenied};
  const bool takes_all = (desired & kMaximumAllowed) != 0;
  return {.granted = takes_all ? named | (granted & kFileMapping.GenericAll) : named};
}

}  // namespace

FileAccess CheckFileAccess(const Token& token, const Place& place, DWORD desired, bool backs_up) {
  return Check(token, *place.node, place.folder.get(), place.share, desired, backs_up);
}

FileAccess CheckFolderAccess(const Token& token, const Place& place, DWORD desired) {
  return Check(token, *place.folder, place.folder->parent(), place.share, desired, false);
}

}  // namespace veldmark::simulated
