#pragma once

#include <array>
#include <functional>
#include <memory>

#include "platform/simulated/estate/AccessCheck.h"
#include "platform/simulated/estate/SecurityDescriptor.h"

namespace veldmark::simulated {

class SecurityBlock;
using SecurityRef = std::shared_ptr<const SecurityBlock>;

// A descriptor that never changes, shared by all the objects that have the same one: of ten
// thousand files below a folder, those that only inherit from it share one block.
class SecurityBlock : public std::enable_shared_from_this<SecurityBlock> {
 public:
  explicit SecurityBlock(SecurityDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  static SecurityRef Make(SecurityDescriptor descriptor);

  const SecurityDescriptor& descriptor() const { return descriptor_; }

  // What an object made below has, if it is made by an administrator and nothing is said about it.
  SecurityRef HandedDown(bool to_container, const GENERIC_MAPPING& mapping) const;

  // The entries that an object below inherits.
  AccessList InheritedBy(bool container, const Sid& owner, const Sid& group,
                         const GENERIC_MAPPING& mapping) const;

 private:
  SecurityDescriptor descriptor_;
  mutable std::array<SecurityRef, 2> handed_down_;
  // Most folders hand down just what they have themselves; a reference would be a cycle then.
  mutable bool hands_itself_down_ = false;
};

// A file, folder or registry key as what bears a descriptor and hands it down.
class SecuredNode {
 public:
  virtual ~SecuredNode() = default;

  // Its own, or else what its parent hands down.
  SecurityRef security() const;

  // Gives the node a descriptor, as if it had been there from the start: parts that it lacks are
  // the default ones, and unless it is protected, it inherits from the parent besides.
  void Describe(SecurityDescriptor descriptor);

  // Replaces the descriptor of a node that is in use, and hands it down as the platform does:
  // below, inherited entries give way to the new ones.
  void Replace(SecurityDescriptor descriptor);

  // Makes the token's owner and group those of a node just made.
  void Own(const Token& token);

 protected:
  // Keeps what it has inherited when it is taken from its parent.
  void KeepSecurity() { own_ = security(); }

 private:
  virtual const SecuredNode* holder() const = 0;
  virtual bool is_container() const = 0;
  virtual const GENERIC_MAPPING& mapping() const = 0;
  virtual void ForEachHeld(const std::function<void(SecuredNode&)>& action) = 0;
  virtual SecurityRef RootSecurity() const = 0;

  // The descriptor with what the holder hands down now in place of what it has inherited so far.
  SecurityDescriptor Inheriting(SecurityDescriptor descriptor) const;
  void Adopt(SecurityDescriptor descriptor);
  // Takes the holder's new entries over, where it had `before` until now. In use, an object that
  // has inherited everything is left with nothing once nothing is handed down; one that is still
  // being described has what a new object gets.
  void Reinherit(const SecurityBlock& before, bool in_use);

  mutable SecurityRef own_;  // null: what the holder hands down
};

}  // namespace veldmark::simulated
