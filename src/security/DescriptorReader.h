#pragma once

#include "automation/Object.h"
#include "automation/Text.h"
#include "security/BinaryDescriptor.h"
#include "security/ObjectType.h"

namespace veldmark {

class CAcl;
class CSecurityDescriptor;
class CSid;

/// Walks self-relative descriptors of one kind of object into the object model.
struct DescriptorReader {
  SE_OBJECT_TYPE object_type;  ///< chooses what the generic rights of entries become
  Text object_class;       ///< the class of the secured object, which an entry's words depend on
  Text resides_on_server;  ///< the server to ask about the accounts
  bool plain_entries_only = false;  ///< reads every entry as a plain one, whatever its type

  /// Stores the bytes and the header in `descriptor` and returns its parts. Raises 1338.
  BinaryDescriptor ReadHeader(CSecurityDescriptor& descriptor, Bytes bytes) const;
  /// Stores the owner, where there is a sound one.
  void ReadOwner(CSecurityDescriptor& descriptor, const BinaryDescriptor& parts) const;
  /// Stores the list; one without entries where the descriptor has a null list or none. Says of
  /// each entry that it was retrieved. Raises 1336 and 1337.
  void ReadDacl(CSecurityDescriptor& descriptor, const BinaryDescriptor& parts) const;
};

/// Stores a list that allows everyone everything.
void AllowEveryone(CSecurityDescriptor& descriptor, TextView object_class);

}  // namespace veldmark
