#pragma once

#include "automation/Object.h"

namespace veldmark {

/// The audit policy of a server: a name that clients know, without members.
class CServerAuditPolicy : public Exported<CServerAuditPolicy> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
