#pragma once

#include <cstdint>
#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "storage/ShareAccess.h"
#include "storage/ShareType.h"

namespace veldmark {

class CFolder;
class CSecurityDescriptor;

/// A shared folder or device of a computer, as it was when the shares were listed (`NetShareEnum`).
/// A caller without rights on the computer is shown name, type and comment only.
class CShare : public Exported<CShare>, Counted<Counter::kShare> {
 public:
  static const Interface& Describe();

  /// A folder with this share's network path and nothing else; the platform isn't asked.
  Ref<CFolder> GetRootFolder();
  /// The share's own descriptor; see `CSupport::GetShareSD`.
  Ref<CSecurityDescriptor> GetSecurityDescriptor();
  /// The folder on the server, or what else is shared.
  const Text& SharePath() const { return share_path_; }
  /// "\\srv\share".
  Text NetworkPath() const;
  /// Ends the share on its server (`NetShareDel`) and returns True; this object stays as it is.
  /// Raises the platform's status, 2310 where there is no such share any more.
  bool Delete();

  Text ShareName;
  Text ServerName;
  Text Comment;
  ShareTypeEnum ShareType = ST_DISKTREE;
  ShareAccessEnum ShareAccess = SA_ACCESS_NONE;
  std::int32_t MaxUses = 0;  ///< -1: as many as like
  std::int32_t CurrentUses = 0;
  Text Password;  ///< of a share with share-level security

  void SetSharePath(Text path) { share_path_ = std::move(path); }

 private:
  Text share_path_;
};

}  // namespace veldmark
