#include "platform/operations/ErrorCodes.h"

#include <windows.h>

#include <lm.h>

namespace veldmark {

static_assert(kErrorSuccess == ERROR_SUCCESS);
static_assert(kErrorInvalidFunction == ERROR_INVALID_FUNCTION);
static_assert(kErrorFileNotFound == ERROR_FILE_NOT_FOUND);
static_assert(kErrorPathNotFound == ERROR_PATH_NOT_FOUND);
static_assert(kErrorAccessDenied == ERROR_ACCESS_DENIED);
static_assert(kErrorInvalidHandle == ERROR_INVALID_HANDLE);
static_assert(kErrorNotEnoughMemory == ERROR_NOT_ENOUGH_MEMORY);
static_assert(kErrorInvalidData == ERROR_INVALID_DATA);
static_assert(kErrorCurrentDirectory == ERROR_CURRENT_DIRECTORY);
static_assert(kErrorNoMoreFiles == ERROR_NO_MORE_FILES);
static_assert(kErrorWriteProtect == ERROR_WRITE_PROTECT);
static_assert(kErrorSharingViolation == ERROR_SHARING_VIOLATION);
static_assert(kErrorHandleEof == ERROR_HANDLE_EOF);
static_assert(kErrorNotSupported == ERROR_NOT_SUPPORTED);
static_assert(kErrorBadNetPath == ERROR_BAD_NETPATH);
static_assert(kErrorNetworkAccessDenied == ERROR_NETWORK_ACCESS_DENIED);
static_assert(kErrorBadNetName == ERROR_BAD_NET_NAME);
static_assert(kErrorFileExists == ERROR_FILE_EXISTS);
static_assert(kErrorInvalidParameter == ERROR_INVALID_PARAMETER);
static_assert(kErrorDiskFull == ERROR_DISK_FULL);
static_assert(kErrorInsufficientBuffer == ERROR_INSUFFICIENT_BUFFER);
static_assert(kErrorInvalidName == ERROR_INVALID_NAME);
static_assert(kErrorInvalidLevel == ERROR_INVALID_LEVEL);
static_assert(kErrorModNotFound == ERROR_MOD_NOT_FOUND);
static_assert(kErrorDirNotEmpty == ERROR_DIR_NOT_EMPTY);
static_assert(kErrorBadPathname == ERROR_BAD_PATHNAME);
static_assert(kErrorAlreadyExists == ERROR_ALREADY_EXISTS);
static_assert(kErrorFilenameExcedRange == ERROR_FILENAME_EXCED_RANGE);
static_assert(kErrorMoreData == ERROR_MORE_DATA);
static_assert(kErrorNoMoreItems == ERROR_NO_MORE_ITEMS);
static_assert(kErrorDirectory == ERROR_DIRECTORY);
static_assert(kErrorNoUnicodeTranslation == ERROR_NO_UNICODE_TRANSLATION);
static_assert(kErrorMrMidNotFound == ERROR_MR_MID_NOT_FOUND);
static_assert(kErrorUserMappedFile == ERROR_USER_MAPPED_FILE);
static_assert(kErrorKeyDeleted == ERROR_KEY_DELETED);
static_assert(kErrorBadDevice == ERROR_BAD_DEVICE);
static_assert(kErrorExtendedError == ERROR_EXTENDED_ERROR);
static_assert(kErrorNoNetwork == ERROR_NO_NETWORK);
static_assert(kErrorInvalidFlags == ERROR_INVALID_FLAGS);
static_assert(kErrorResourceDataNotFound == ERROR_RESOURCE_DATA_NOT_FOUND);
static_assert(kErrorResourceTypeNotFound == ERROR_RESOURCE_TYPE_NOT_FOUND);
static_assert(kErrorResourceLangNotFound == ERROR_RESOURCE_LANG_NOT_FOUND);
static_assert(kErrorNotConnected == ERROR_NOT_CONNECTED);
static_assert(kErrorServiceDoesNotExist == ERROR_SERVICE_DOES_NOT_EXIST);
static_assert(kErrorNotAllAssigned == ERROR_NOT_ALL_ASSIGNED);
static_assert(kErrorUnknownRevision == ERROR_UNKNOWN_REVISION);
static_assert(kErrorInvalidOwner == ERROR_INVALID_OWNER);
static_assert(kErrorNoImpersonationToken == ERROR_NO_IMPERSONATION_TOKEN);
static_assert(kErrorNoSuchPrivilege == ERROR_NO_SUCH_PRIVILEGE);
static_assert(kErrorPrivilegeNotHeld == ERROR_PRIVILEGE_NOT_HELD);
static_assert(kErrorInvalidAcl == ERROR_INVALID_ACL);
static_assert(kErrorInvalidSid == ERROR_INVALID_SID);
static_assert(kErrorInvalidSecurityDescriptor == ERROR_INVALID_SECURITY_DESCR);
static_assert(kErrorAllottedSpaceExceeded == ERROR_ALLOTTED_SPACE_EXCEEDED);
static_assert(kErrorGenericNotMapped == ERROR_GENERIC_NOT_MAPPED);
static_assert(kErrorRpcServerUnavailable == RPC_S_SERVER_UNAVAILABLE);
static_assert(kErrorNullReference == RPC_X_NULL_REF_POINTER);
static_assert(kErrorInvalidUserBuffer == ERROR_INVALID_USER_BUFFER);
static_assert(kErrorInvalidPrinterName == ERROR_INVALID_PRINTER_NAME);
static_assert(kErrorNetNameNotFound == NERR_NetNameNotFound);
static_assert(kErrorTooManyOpenFiles == ERROR_TOO_MANY_OPEN_FILES);
static_assert(kErrorOutOfMemory == ERROR_OUTOFMEMORY);
static_assert(kErrorNotReady == ERROR_NOT_READY);
static_assert(kErrorLockViolation == ERROR_LOCK_VIOLATION);
static_assert(kErrorHandleDiskFull == ERROR_HANDLE_DISK_FULL);
static_assert(kErrorBadDevType == ERROR_BAD_DEV_TYPE);
static_assert(kErrorAlreadyAssigned == ERROR_ALREADY_ASSIGNED);
static_assert(kErrorInvalidPassword == ERROR_INVALID_PASSWORD);
static_assert(kErrorDirNotRoot == ERROR_DIR_NOT_ROOT);
static_assert(kErrorBusy == ERROR_BUSY);
static_assert(kErrorLogonFailure == ERROR_LOGON_FAILURE);
static_assert(kErrorOpenFiles == ERROR_OPEN_FILES);
static_assert(kErrorServiceMarkedForDelete == ERROR_SERVICE_MARKED_FOR_DELETE);
static_assert(kErrorDuplicateServiceName == ERROR_DUPLICATE_SERVICE_NAME);

}  // namespace veldmark
