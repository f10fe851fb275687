#pragma once

#include "apartment/Apartment.h"
#include "apartment/Counters.h"

namespace veldmark {

/// Counts the live objects of an exported class: `class CFolder : public Exported<CFolder>,
/// Counted<Counter::kFolder>`. An object may outlive its apartment; then nobody counts any more.
template <Counter kCounter>
class Counted {
 protected:
  Counted() { Apartment::Current().counters.Increment(kCounter); }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() {
    if (Apartment* apartment = Apartment::TryCurrent()) apartment->counters.Decrement(kCounter);
  }
};

}  // namespace veldmark
