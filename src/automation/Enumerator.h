#pragma once

#include <cstdint>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace veldmark {

/// What For Each walks: a position in a list. It holds the list, and sees items that are added
/// behind the position.
class Enumerator : public Object {
 public:
  const Interface& GetInterface() const override;

  /// Takes the next item; false at the end, `item` untouched.
  virtual bool Next(Variant& item) = 0;
  /// Steps over up to `count` items; false when fewer were left.
  virtual bool Skip(std::uint32_t count) = 0;
  virtual void Reset() = 0;
  /// A second enumerator at the same position.
  virtual Ref<Enumerator> Clone() const = 0;
};

}  // namespace veldmark
