#pragma once

#include "collections/CollectionClass.h"

namespace veldmark {

class CAce;

/// The entries of an access control list, in its order.
class CAces : public CollectionClass<CAces, CAce>, Counted<Counter::kAces> {
 public:
  static const Interface& Describe();
};

}  // namespace veldmark
