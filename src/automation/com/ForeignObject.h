#pragma once

#include <optional>
#include <span>

#include "automation/LateBound.h"
#include "automation/com/ComRef.h"

namespace veldmark::com {

/// An object of another library, held through the pointer it came by. It is of no class of ours, so
/// that a member which wants one refuses it with 13.
class ForeignObject final : public LateBoundObject {
 public:
  explicit ForeignObject(IUnknown* pointer);

  const Interface& GetInterface() const override;
  /// Its default property, read late-bound.
  bool DefaultValue(Variant& value) override;
  Variant CallMethod(TextView name, std::span<Variant> arguments) override;

  /// Null for an object without late-bound calls.
  IDispatch* Dispatch() const { return dispatch_.Get(); }
  /// The object's pointer for a receiver: its IDispatch where it has one.
  IUnknown* HandOut() const;

 private:
  ComRef<IUnknown> pointer_;
  ComRef<IDispatch> dispatch_;
};

/// Calls a member of a foreign object late-bound; empty where it says that it has no such member.
/// By-reference arguments are written back. Raises what the object reports: an exception with its
/// number, source and description, a refusal with the runtime's number for it.
std::optional<Variant> InvokeForeign(IDispatch& object, DISPID id, WORD flags,
                                     std::span<Variant> arguments);

}  // namespace veldmark::com
