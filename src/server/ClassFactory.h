#pragma once

#include "automation/Interface.h"
#include "automation/ModuleCount.h"
#include "automation/com/ComObject.h"

namespace veldmark {

/// Creates the objects of one exported class.
class ClassFactory : public com::ComObject<IClassFactory> {
 public:
  /// `table` describes the class.
  explicit ClassFactory(const Interface& table) : table_(table) {}

  /// Starts the calling thread's apartment with its first object. What goes wrong leaves error
  /// information behind.
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  const Interface& table_;
  ModuleHold hold_;
};

}  // namespace veldmark
