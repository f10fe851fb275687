#pragma once

#include "platform/operations/Types.h"

// The published error codes. The published names are macros of the platform's headers, so ours are
// spelled as constants: ERROR_ACCESS_DENIED is kErrorAccessDenied.
namespace veldmark {

inline constexpr DWORD kErrorSuccess = 0;
inline constexpr DWORD kErrorInvalidFunction = 1;
inline constexpr DWORD kErrorFileNotFound = 2;
inline constexpr DWORD kErrorPathNotFound = 3;
inline constexpr DWORD kErrorTooManyOpenFiles = 4;
inline constexpr DWORD kErrorAccessDenied = 5;
inline constexpr DWORD kErrorInvalidHandle = 6;
inline constexpr DWORD kErrorNotEnoughMemory = 8;
inline constexpr DWORD kErrorInvalidData = 13;
inline constexpr DWORD kErrorOutOfMemory = 14;
inline constexpr DWORD kErrorCurrentDirectory = 16;
inline constexpr DWORD kErrorNoMoreFiles = 18;
inline constexpr DWORD kErrorWriteProtect = 19;
inline constexpr DWORD kErrorNotReady = 21;
inline constexpr DWORD kErrorSharingViolation = 32;
inline constexpr DWORD kErrorLockViolation = 33;
inline constexpr DWORD kErrorHandleEof = 38;
inline constexpr DWORD kErrorHandleDiskFull = 39;
inline constexpr DWORD kErrorNotSupported = 50;
inline constexpr DWORD kErrorBadNetPath = 53;
inline constexpr DWORD kErrorNetworkAccessDenied = 65;
inline constexpr DWORD kErrorBadDevType = 66;
inline constexpr DWORD kErrorBadNetName = 67;
inline constexpr DWORD kErrorFileExists = 80;
inline constexpr DWORD kErrorAlreadyAssigned = 85;
inline constexpr DWORD kErrorInvalidPassword = 86;
inline constexpr DWORD kErrorInvalidParameter = 87;
inline constexpr DWORD kErrorBufferOverflow = 111;
inline constexpr DWORD kErrorDiskFull = 112;
inline constexpr DWORD kErrorInsufficientBuffer = 122;
inline constexpr DWORD kErrorInvalidName = 123;
inline constexpr DWORD kErrorInvalidLevel = 124;
inline constexpr DWORD kErrorModNotFound = 126;
inline constexpr DWORD kErrorProcNotFound = 127;
inline constexpr DWORD kErrorDirNotRoot = 144;
inline constexpr DWORD kErrorDirNotEmpty = 145;
inline constexpr DWORD kErrorBadPathname = 161;
inline constexpr DWORD kErrorBusy = 170;
inline constexpr DWORD kErrorAlreadyExists = 183;
inline constexpr DWORD kErrorBadExeFormat = 193;
inline constexpr DWORD kErrorFilenameExcedRange = 206;
inline constexpr DWORD kErrorMoreData = 234;
inline constexpr DWORD kErrorNoMoreItems = 259;
inline constexpr DWORD kErrorDirectory = 267;
inline constexpr DWORD kErrorMrMidNotFound = 317;
inline constexpr DWORD kErrorIoPending = 997;
inline constexpr DWORD kErrorInvalidFlags = 1004;
inline constexpr DWORD kErrorKeyDeleted = 1018;
inline constexpr DWORD kErrorDependentServicesRunning = 1051;
inline constexpr DWORD kErrorInvalidServiceControl = 1052;
inline constexpr DWORD kErrorServiceRequestTimeout = 1053;
inline constexpr DWORD kErrorServiceDatabaseLocked = 1055;
inline constexpr DWORD kErrorServiceAlreadyRunning = 1056;
inline constexpr DWORD kErrorInvalidServiceAccount = 1057;
inline constexpr DWORD kErrorServiceDisabled = 1058;
inline constexpr DWORD kErrorCircularDependency = 1059;
inline constexpr DWORD kErrorServiceDoesNotExist = 1060;
inline constexpr DWORD kErrorServiceCannotAcceptCtrl = 1061;
inline constexpr DWORD kErrorServiceNotActive = 1062;
inline constexpr DWORD kErrorDatabaseDoesNotExist = 1065;
inline constexpr DWORD kErrorServiceDependencyFail = 1068;
inline constexpr DWORD kErrorServiceLogonFailed = 1069;
inline constexpr DWORD kErrorInvalidServiceLock = 1071;
inline constexpr DWORD kErrorServiceMarkedForDelete = 1072;
inline constexpr DWORD kErrorServiceExists = 1073;
inline constexpr DWORD kErrorServiceDependencyDeleted = 1075;
inline constexpr DWORD kErrorDuplicateServiceName = 1078;
inline constexpr DWORD kErrorNoUnicodeTranslation = 1113;
inline constexpr DWORD kErrorBadDevice = 1200;
inline constexpr DWORD kErrorBadProvider = 1204;
inline constexpr DWORD kErrorNotContainer = 1207;
inline constexpr DWORD kErrorExtendedError = 1208;
inline constexpr DWORD kErrorNoNetwork = 1222;
inline constexpr DWORD kErrorUserMappedFile = 1224;
inline constexpr DWORD kErrorNotAllAssigned = 1300;
inline constexpr DWORD kErrorUnknownRevision = 1305;
inline constexpr DWORD kErrorInvalidOwner = 1307;
inline constexpr DWORD kErrorNoImpersonationToken = 1309;
inline constexpr DWORD kErrorNoSuchPrivilege = 1313;
inline constexpr DWORD kErrorPrivilegeNotHeld = 1314;
inline constexpr DWORD kErrorLogonFailure = 1326;
inline constexpr DWORD kErrorAccountDisabled = 1331;
inline constexpr DWORD kErrorNoneMapped = 1332;
inline constexpr DWORD kErrorInvalidAcl = 1336;
inline constexpr DWORD kErrorInvalidSid = 1337;
inline constexpr DWORD kErrorInvalidSecurityDescriptor = 1338;
inline constexpr DWORD kErrorAllottedSpaceExceeded = 1344;
inline constexpr DWORD kErrorGenericNotMapped = 1360;
inline constexpr DWORD kErrorNoSuchAlias = 1376;
inline constexpr DWORD kErrorAliasExists = 1379;
inline constexpr DWORD kErrorEventlogFileCorrupt = 1500;
inline constexpr DWORD kErrorEventlogFileChanged = 1503;
inline constexpr DWORD kErrorRpcServerUnavailable = 1722;
inline constexpr DWORD kErrorNullReference = 1780;
inline constexpr DWORD kErrorInvalidUserBuffer = 1784;
inline constexpr DWORD kErrorInvalidPrinterName = 1801;
inline constexpr DWORD kErrorResourceDataNotFound = 1812;
inline constexpr DWORD kErrorResourceTypeNotFound = 1813;
inline constexpr DWORD kErrorResourceLangNotFound = 1815;
inline constexpr DWORD kErrorGroupNotFound = 2220;
inline constexpr DWORD kErrorUserNotFound = 2221;
inline constexpr DWORD kErrorGroupExists = 2223;
inline constexpr DWORD kErrorUserExists = 2224;
inline constexpr DWORD kErrorNotPrimary = 2226;
inline constexpr DWORD kErrorPasswordTooShort = 2245;
inline constexpr DWORD kErrorNotConnected = 2250;
inline constexpr DWORD kErrorNetNameNotFound = 2310;
inline constexpr DWORD kErrorOpenFiles = 2401;
inline constexpr DWORD kErrorDcNotFound = 2453;
inline constexpr DWORD kErrorNoBrowserServers = 6118;

// The results of interfaces' methods: E_INVALIDARG is kInvalidArgument.
inline constexpr HRESULT kOk = 0;
inline constexpr HRESULT kFalse = 1;
inline constexpr HRESULT kNotImplemented = static_cast<HRESULT>(0x80004001u);

// A platform error as such a result; 0 stays 0, and what is one already stays as it is.
constexpr HRESULT ResultOf(DWORD error) {
  if (error == 0 || error > 0xFFFF) return static_cast<HRESULT>(error);
  return static_cast<HRESULT>(0x80070000u | error);
}
constexpr bool Failed(HRESULT result) { return result < 0; }
inline constexpr HRESULT kInvalidArgument = ResultOf(kErrorInvalidParameter);
inline constexpr HRESULT kNoMemory = ResultOf(kErrorOutOfMemory);

}  // namespace veldmark
