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

/// Keeps this module loaded till the process ends. An apartment belongs to its thread, caches and
/// subscriptions included, and ends with it. An unload can't wait for that: it comes under the
/// loader lock, where an apartment mustn't be ended, least of all another thread's; and no thread
/// is to lose its apartment because a client asked whether the module could go, which it may do at
/// any time and without unloading anything. So the module goes only where no thread has had one
/// yet.
void StayLoaded();

}  // namespace veldmark
