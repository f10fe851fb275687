#include "platform/operations/System.h"

#include <windows.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(SYSTEMTIME, wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond,
                     wMilliseconds);
VELDMARK_SAME_LAYOUT(TIME_ZONE_INFORMATION, Bias, StandardName, StandardDate, StandardBias,
                     DaylightName, DaylightDate, DaylightBias);

static_assert(kTimeZoneIdUnknown == TIME_ZONE_ID_UNKNOWN);
static_assert(kTimeZoneIdStandard == TIME_ZONE_ID_STANDARD);
static_assert(kTimeZoneIdDaylight == TIME_ZONE_ID_DAYLIGHT);
static_assert(kTimeZoneIdInvalid == TIME_ZONE_ID_INVALID);
static_assert(kCodePageAnsi == CP_ACP);
static_assert(kCodePageUtf8 == CP_UTF8);
static_assert(kMultiBytePrecomposed == MB_PRECOMPOSED);
static_assert(kMultiByteErrInvalidChars == MB_ERR_INVALID_CHARS);
static_assert(kWideErrInvalidChars == WC_ERR_INVALID_CHARS);
static_assert(kLocaleInvariant == LOCALE_INVARIANT);
static_assert(kLcmapSortKey == LCMAP_SORTKEY);
static_assert(kNormIgnoreCase == NORM_IGNORECASE);
static_assert(kLocalZeroInitialised == LMEM_ZEROINIT);

}  // namespace veldmark
