#include "platform/operations/NetworkProvider.h"

#include <windows.h>

#include <winnetwk.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(NETRESOURCEW, dwScope, dwType, dwDisplayType, dwUsage, lpLocalName,
                     lpRemoteName, lpComment, lpProvider);
VELDMARK_SAME_LAYOUT(NETINFOSTRUCT, cbStructure, dwProviderVersion, dwStatus, dwCharacteristics,
                     dwHandle, wNetType, dwPrinters, dwDrives);
VELDMARK_SAME_LAYOUT(UNIVERSAL_NAME_INFOW, lpUniversalName);

static_assert(kUniversalNameInfoLevel == UNIVERSAL_NAME_INFO_LEVEL);
static_assert(kRemoteNameInfoLevel == REMOTE_NAME_INFO_LEVEL);
static_assert(kResourceTypeAny == RESOURCETYPE_ANY);
static_assert(kResourceTypeDisk == RESOURCETYPE_DISK);
static_assert(kResourceTypePrint == RESOURCETYPE_PRINT);
static_assert(kResourceGlobalNet == RESOURCE_GLOBALNET);
static_assert(kDisplayTypeDomain == RESOURCEDISPLAYTYPE_DOMAIN);
static_assert(kDisplayTypeNetwork == RESOURCEDISPLAYTYPE_NETWORK);
static_assert(kConnectUpdateProfile == CONNECT_UPDATE_PROFILE);

}  // namespace veldmark
