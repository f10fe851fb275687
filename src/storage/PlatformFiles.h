#pragma once

#include "apartment/Apartment.h"

namespace veldmark {

/// The file operations of the calling thread's platform.
inline FileSystem& Files() { return Apartment::Current().platform.files; }

}  // namespace veldmark
