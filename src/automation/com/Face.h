#pragma once

#include <cstdint>

#include "automation/Abi.h"
#include "automation/Error.h"
#include "automation/Identity.h"
#include "automation/Object.h"

/// The COM face of the library's objects. An object's dual interface is its one identity; it
/// answers for IUnknown, IDispatch and the class's own interface. The secondary interfaces
/// (ISupportErrorInfo, IProvideClassInfo2, IConnectionPointContainer where the class has events)
/// are made on demand and forward their identity.
///
/// A client's references are counted in the object, and an object with at least one of them holds
/// the module; references of the library itself don't.
namespace veldmark::com {

/// Hands out one interface of an object; null and `E_NOINTERFACE` where it has none of that
/// identifier. Returns a platform result code.
std::int32_t QueryObject(Object& object, const Identity& interface_identity, void** out) noexcept;

/// Leaves an error as the thread's error information, as raised by interface
/// `interface_identity`, and returns its failure code.
std::int32_t ReportError(const AutomationError& error, const Identity& interface_identity) noexcept;

/// Whether an object goes out as an IDispatch; an enumerator and some foreign objects don't.
/// Nothing does.
bool IsDispatch(const Object* object);

/// Hands out an object's main interface whatever it is: a foreign object's own pointer need not be
/// an IDispatch.
abi::RawObject HandOutAny(Object* object);

/// A client-side reference of the library's own making, for what it hands out on an object's
/// behalf.
class ExternalReference {
 public:
  explicit ExternalReference(Object& object);
  ExternalReference(const ExternalReference& other) : ExternalReference(*other.object_) {}
  ExternalReference& operator=(const ExternalReference&) = delete;
  ~ExternalReference();

  Object& operator*() const { return *object_; }
  Object* operator->() const { return object_; }

 private:
  Object* object_;
};

}  // namespace veldmark::com
