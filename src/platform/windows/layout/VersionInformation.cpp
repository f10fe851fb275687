#include "platform/operations/VersionInformation.h"

#include <windows.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(VS_FIXEDFILEINFO, dwSignature, dwStrucVersion, dwFileVersionMS,
                     dwFileVersionLS, dwProductVersionMS, dwProductVersionLS, dwFileFlagsMask,
                     dwFileFlags, dwFileOS, dwFileType, dwFileSubtype, dwFileDateMS, dwFileDateLS);

static_assert(kFixedFileInfoSignature == VS_FFI_SIGNATURE);

}  // namespace veldmark
