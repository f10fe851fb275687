#pragma once

#include "automation/com/ComRef.h"

namespace veldmark::com {

/// The type library in this module's own resources, loaded once for the process; null where the
/// module carries none.
ComRef<ITypeLib> OwnTypeLibrary() noexcept;

}  // namespace veldmark::com
