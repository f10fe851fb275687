#include "platform/simulated/estate/NodeSecurity.h"

#include "platform/simulated/estate/DescriptorText.h"

namespace veldmark::simulated {
namespace {

constexpr BYTE kInheritableFlags = kObjectInherit | kContainerInherit;

BYTE Flags(int flags) { return static_cast<BYTE>(flags); }

bool IsGeneric(const Ace& ace) { return (ace.mask & kAllGeneric) != 0; }

bool StandsForCreator(const Ace& ace) {
  return ace.sid == CreatorOwnerSid() || ace.sid == CreatorGroupSid();
}

// Appends an entry as an object bears it. Where it means something else for the object than for
// those below (generic rights, the creator), it comes in two: one of each.
void AppendEffective(AccessList& list, Ace ace, bool container, const Sid& owner, const Sid& group,
                     const GENERIC_MAPPING& mapping, bool substitutes_creator) {
  if ((ace.flags & kInheritOnly) != 0) {
    list.push_back(std::move(ace));
    return;
  }
  const bool stands_for_creator = substitutes_creator && StandsForCreator(ace);
  Ace effective = ace;
  effective.mask = MapGeneric(ace.mask, mapping);
  if (stands_for_creator) effective.sid = ace.sid == CreatorOwnerSid() ? owner : group;
  const bool differs = IsGeneric(ace) || stands_for_creator;
  const bool is_inheritable = container && (ace.flags & kInheritableFlags) != 0;
  if (!differs || !is_inheritable) {
    list.push_back(std::move(effective));
    return;
  }
  effective.flags = Flags(effective.flags & ~(kInheritableFlags | kNoPropagateInherit));
  ace.flags = Flags(ace.flags | kInheritOnly);
  list.push_back(std::move(effective));
  list.push_back(std::move(ace));
}

AccessList WithoutInherited(const AccessList& list) {
  AccessList own;
  for (const Ace& ace : list) {
    if ((ace.flags & kInherited) == 0) own.push_back(ace);
  }
  return own;
}

// What an object gets whose parent has nothing to hand down.
AccessList DefaultList(const Sid& owner, const GENERIC_MAPPING& mapping) {
  Ace ace{.mask = mapping.GenericAll, .sid = owner};
  AccessList list = {ace};
  ace.sid = SystemSid();
  if (owner != ace.sid) list.push_back(std::move(ace));
  return list;
}

}  // namespace

SecurityRef SecurityBlock::Make(SecurityDescriptor descriptor) {
  return std::make_shared<const SecurityBlock>(std::move(descriptor));
}

SecurityRef SecurityBlock::HandedDown(bool to_container, const GENERIC_MAPPING& mapping) const {
  if (to_container && hands_itself_down_) return shared_from_this();
  SecurityRef& handed_down = handed_down_[to_container ? 1 : 0];
  if (handed_down != nullptr) return handed_down;
  SecurityDescriptor below;
  below.owner = AdministratorsSid();
  below.group = SystemSid();
  below.control = kDaclPresent | kDaclAutoInherited;
  below.dacl = InheritedBy(to_container, below.owner, below.group, mapping);
  if (below.dacl->empty()) {
    below.control = kDaclPresent;
    below.dacl = DefaultList(below.owner, mapping);
  }
  if (to_container && below == descriptor_) {
    hands_itself_down_ = true;
    return shared_from_this();
  }
  handed_down = Make(std::move(below));
  return handed_down;
}

AccessList SecurityBlock::InheritedBy(bool container, const Sid& owner, const Sid& group,
                                      const GENERIC_MAPPING& mapping) const {
  AccessList inherited;
  for (const Ace& ace : descriptor_.dacl.value_or(AccessList())) {
    const bool to_objects = (ace.flags & kObjectInherit) != 0;
    const bool goes_on = (ace.flags & kNoPropagateInherit) == 0;
    const bool is_for_this = (container ? (ace.flags & kContainerInherit) != 0 : to_objects) &&
                             !ace.inherited_object_type;
    // What isn't meant for a folder passes through it to what lies deeper.
    const bool passes = container && goes_on && (to_objects || ace.inherited_object_type) &&
                        (ace.flags & kInheritableFlags) != 0;
    if (!is_for_this && !passes) continue;
    Ace below = ace;
    const int kept = container && goes_on ? ace.flags & kInheritableFlags : 0;
    below.flags = Flags(kept | kInherited | (is_for_this ? 0 : kInheritOnly));
    AppendEffective(inherited, std::move(below), container, owner, group, mapping, true);
  }
  return inherited;
}

SecurityRef SecuredNode::security() const {
  if (own_ != nullptr) return own_;
  if (const SecuredNode* const parent = holder()) {
    return parent->security()->HandedDown(is_container(), mapping());
  }
  own_ = RootSecurity();
  return own_;
}

void SecuredNode::Describe(SecurityDescriptor descriptor) {
  const SecurityRef before = security();
  if (descriptor.owner.empty()) descriptor.owner = before->descriptor().owner;
  if (descriptor.group.empty()) descriptor.group = before->descriptor().group;
  if ((descriptor.control & kDaclPresent) == 0) {
    descriptor.control |=
        before->descriptor().control & (kDaclPresent | kDaclAutoInherited | kDaclProtected);
    descriptor.dacl = before->descriptor().dacl;
  }
  Adopt(std::move(descriptor));
  ForEachHeld([&](SecuredNode& held) { held.Reinherit(*before, false); });
}

void SecuredNode::Replace(SecurityDescriptor descriptor) {
  const SecurityRef before = security();
  Adopt(std::move(descriptor));
  ForEachHeld([&](SecuredNode& held) { held.Reinherit(*before, true); });
}

void SecuredNode::Own(const Token& token) {
  if (token.owner() == AdministratorsSid()) return;
  SecurityDescriptor descriptor = security()->descriptor();
  descriptor.owner = token.owner();
  descriptor.group = token.primary_group();
  const bool inherits = (descriptor.control & kDaclAutoInherited) != 0;
  if (!inherits) descriptor.dacl = DefaultList(descriptor.owner, mapping());
  own_ = SecurityBlock::Make(inherits ? Inheriting(std::move(descriptor)) : std::move(descriptor));
}

SecurityDescriptor SecuredNode::Inheriting(SecurityDescriptor descriptor) const {
  const SecuredNode* const parent = holder();
  if (parent == nullptr || !descriptor.dacl) return descriptor;
  descriptor.dacl = WithoutInherited(*descriptor.dacl);
  const AccessList inherited = parent->security()->InheritedBy(is_container(), descriptor.owner,
                                                               descriptor.group, mapping());
  descriptor.dacl->insert(descriptor.dacl->end(), inherited.begin(), inherited.end());
  descriptor.control |= kDaclAutoInherited;
  return descriptor;
}

void SecuredNode::Adopt(SecurityDescriptor descriptor) {
  if (descriptor.dacl) {
    const bool is_protected = (descriptor.control & kDaclProtected) != 0;
    AccessList effective;
    for (Ace& ace : *descriptor.dacl) {
      // Nothing is inherited behind a protection: what was, is the node's own now.
      if (is_protected) ace.flags = Flags(ace.flags & ~kInherited);
      AppendEffective(effective, std::move(ace), is_container(), {}, {}, mapping(), false);
    }
    descriptor.dacl = std::move(effective);
    if (!is_protected) descriptor = Inheriting(std::move(descriptor));
  }
  own_ = SecurityBlock::Make(std::move(descriptor));
}

void SecuredNode::Reinherit(const SecurityBlock& before, bool in_use) {
  const SecurityRef old = own_ != nullptr ? own_ : before.HandedDown(is_container(), mapping());
  if ((old->descriptor().control & kDaclProtected) != 0) return;
  if (in_use || own_ != nullptr) {
    SecurityDescriptor now = Inheriting(old->descriptor());
    if (now == old->descriptor()) return;
    const SecurityRef handed_down = holder()->security()->HandedDown(is_container(), mapping());
    own_ = now == handed_down->descriptor() ? nullptr : SecurityBlock::Make(std::move(now));
  }
  ForEachHeld([&](SecuredNode& held) { held.Reinherit(*old, in_use); });
}

}  // namespace veldmark::simulated
