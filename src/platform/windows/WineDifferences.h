#pragma once

#include "platform/operations/Types.h"

namespace veldmark {

/// Whether this process runs under Wine, where some codes differ from the published ones.
bool RunsUnderWine();

/// The published code for a failure that a file operation reported on a path. Wine answers 2 for
/// what lies on a missing drive (published: 3), and 3, 66 or 144 for what lies on a missing
/// server (published: 53). Elsewhere the code is returned as it is.
DWORD PublishedPathError(LPCWSTR path, DWORD code);

}  // namespace veldmark
