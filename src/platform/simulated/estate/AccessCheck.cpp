#include "platform/simulated/estate/AccessCheck.h"

#include <algorithm>

#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {
namespace {

// What is decided so far about one object type, or about the object itself.
struct Decision {
  DWORD granted = 0;
  DWORD denied = 0;

  DWORD open() const { return ~(granted | denied); }
};

bool Applies(const Ace& ace, const SecurityDescriptor& descriptor, const Token& token,
             const Sid& self) {
  if ((ace.flags & kInheritOnly) != 0) return false;
  if (ace.sid == PrincipalSelfSid()) return !self.empty() && token.Is(self);
  if (ace.sid == OwnerRightsSid()) return token.Is(descriptor.owner);
  return token.Is(ace.sid);
}

// Whether the list says itself what the owner may do.
bool LimitsOwner(const AccessList& list) {
  return std::any_of(list.begin(), list.end(), [](const Ace& ace) {
    return ace.sid == OwnerRightsSid() && (ace.flags & kInheritOnly) == 0;
  });
}

// The decisions by object type, in the order and with the levels of a list.
class TypeTree {
 public:
  explicit TypeTree(std::span<const OBJECT_TYPE_LIST> types)
      : types_(types), decisions_(std::max<std::size_t>(types.size(), 1)) {}

  const Decision& root() const { return decisions_.front(); }

  // A right granted for a type is granted for all below it, and for one above that has it granted
  // for everything below.
  void Grant(std::size_t index, DWORD mask) {
    const std::size_t end = EndOf(index);
    for (std::size_t below = index; below < end; ++below) {
      decisions_[below].granted |= mask & decisions_[below].open();
    }
    for (auto parent = ParentOf(index); parent != kNone; parent = ParentOf(parent)) {
      DWORD common = ~DWORD{0};
      for (std::size_t child = parent + 1; child < EndOf(parent); child = EndOf(child)) {
        common &= decisions_[child].granted;
      }
      decisions_[parent].granted |= common & decisions_[parent].open();
    }
  }

  // A right denied for a type is denied for all below it and all above.
  void Deny(std::size_t index, DWORD mask) {
    const DWORD fresh = mask & decisions_[index].open();
    const std::size_t end = EndOf(index);
    for (std::size_t below = index; below < end; ++below) {
      decisions_[below].denied |= fresh & decisions_[below].open();
    }
    for (auto parent = ParentOf(index); parent != kNone; parent = ParentOf(parent)) {
      decisions_[parent].denied |= fresh & decisions_[parent].open();
    }
  }

  // The entry of the list that an access entry speaks of; kNone if there is none.
  std::size_t Find(const Ace& ace) const {
    if (!ace.object_type) return 0;
    for (std::size_t index = 0; index < types_.size(); ++index) {
      const GUID* const type = types_[index].ObjectType;
      if (type != nullptr && *type == *ace.object_type) return index;
    }
    return kNone;
  }

  static constexpr std::size_t kNone = ~std::size_t{0};

 private:
  std::size_t EndOf(std::size_t index) const {
    std::size_t end = index + 1;
    while (end < types_.size() && types_[end].Level > types_[index].Level) ++end;
    return end;
  }

  std::size_t ParentOf(std::size_t index) const {
    for (std::size_t above = index; above-- > 0;) {
      if (types_[above].Level < types_[index].Level) return above;
    }
    return kNone;
  }

  std::span<const OBJECT_TYPE_LIST> types_;
  std::vector<Decision> decisions_;
};

DWORD Granted(const SecurityDescriptor& descriptor, const Token& token,
              const GENERIC_MAPPING& mapping, std::span<const OBJECT_TYPE_LIST> types,
              const Sid& self) {
  if (!descriptor.dacl) return kAllSpecificAndStandard;
  TypeTree tree(types);
  if (token.Is(descriptor.owner) && !LimitsOwner(*descriptor.dacl)) {
    tree.Grant(0, kReadControl | kWriteDac);
  }
  for (const Ace& ace : *descriptor.dacl) {
    if (!(ace.Allows() || ace.Denies()) || !Applies(ace, descriptor, token, self)) continue;
    const std::size_t index = tree.Find(ace);
    if (index == TypeTree::kNone) continue;
    const DWORD mask = MapGeneric(ace.mask, mapping);
    if (ace.Allows()) {
      tree.Grant(index, mask);
    } else {
      tree.Deny(index, mask);
    }
  }
  return tree.root().granted & kAllSpecificAndStandard;
}

}  // namespace

DWORD MapGeneric(DWORD mask, const GENERIC_MAPPING& mapping) {
  if ((mask & kGenericRead) != 0) mask |= mapping.GenericRead;
  if ((mask & kGenericWrite) != 0) mask |= mapping.GenericWrite;
  if ((mask & kGenericExecute) != 0) mask |= mapping.GenericExecute;
  if ((mask & kGenericAll) != 0) mask |= mapping.GenericAll;
  return mask & ~kAllGeneric;
}

DWORD GrantedAccess(const SecurityDescriptor& descriptor, const Token& token,
                    const GENERIC_MAPPING& mapping) {
  return Granted(descriptor, token, mapping, {}, Sid());
}

AccessCheckOutcome CheckAccess(const SecurityDescriptor& descriptor, const Token& token,
                               DWORD desired, const GENERIC_MAPPING& mapping,
                               std::span<const OBJECT_TYPE_LIST> types, const Sid& self) {
  AccessCheckOutcome outcome;
  DWORD granted = Granted(descriptor, token, mapping, types, self);
  if ((desired & kAccessSystemSecurity) != 0) {
    if (!token.IsEnabled(Privilege::Security)) {
      outcome.error = kErrorPrivilegeNotHeld;
      return outcome;
    }
    outcome.used.push_back(Privilege::Security);
    granted |= kAccessSystemSecurity;
  }
  if ((desired & ~granted & kWriteOwner) != 0 && token.IsEnabled(Privilege::TakeOwnership)) {
    outcome.used.push_back(Privilege::TakeOwnership);
    granted |= kWriteOwner;
  }
  const bool takes_all = (desired & kMaximumAllowed) != 0;
  const DWORD named = desired & ~kMaximumAllowed;
  outcome.is_allowed = (named & ~granted) == 0 && (named != 0 || !takes_all || granted != 0);
  if (outcome.is_allowed) {
    outcome.granted = takes_all ? (granted & mapping.GenericAll) | named : named;
  } else {
    outcome.error = kErrorAccessDenied;
    outcome.used.clear();
  }
  return outcome;
}

}  // namespace veldmark::simulated
