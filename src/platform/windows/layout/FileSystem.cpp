#include "platform/operations/FileSystem.h"

#include <windows.h>

#include "platform/windows/layout/SameLayout.h"

namespace veldmark {

VELDMARK_SAME_LAYOUT(FILETIME, dwLowDateTime, dwHighDateTime);
VELDMARK_SAME_LAYOUT(WIN32_FIND_DATAW, dwFileAttributes, ftCreationTime, ftLastAccessTime,
                     ftLastWriteTime, nFileSizeHigh, nFileSizeLow, dwReserved0, dwReserved1,
                     cFileName, cAlternateFileName);
VELDMARK_SAME_LAYOUT(WIN32_FILE_ATTRIBUTE_DATA, dwFileAttributes, ftCreationTime, ftLastAccessTime,
                     ftLastWriteTime, nFileSizeHigh, nFileSizeLow);
VELDMARK_SAME_LAYOUT(SECURITY_ATTRIBUTES, nLength, lpSecurityDescriptor, bInheritHandle);

static_assert(kMaxPath == MAX_PATH);
static_assert(kFileAttributeReadOnly == FILE_ATTRIBUTE_READONLY);
static_assert(kFileAttributeHidden == FILE_ATTRIBUTE_HIDDEN);
static_assert(kFileAttributeSystem == FILE_ATTRIBUTE_SYSTEM);
static_assert(kFileAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY);
static_assert(kFileAttributeArchive == FILE_ATTRIBUTE_ARCHIVE);
static_assert(kFileAttributeNormal == FILE_ATTRIBUTE_NORMAL);
static_assert(kFileAttributeTemporary == FILE_ATTRIBUTE_TEMPORARY);
static_assert(kFileAttributeReparsePoint == FILE_ATTRIBUTE_REPARSE_POINT);
static_assert(kFileAttributeCompressed == FILE_ATTRIBUTE_COMPRESSED);
static_assert(kFileAttributeOffline == FILE_ATTRIBUTE_OFFLINE);
static_assert(kFileAttributeNotContentIndexed == FILE_ATTRIBUTE_NOT_CONTENT_INDEXED);
static_assert(kFileAttributeEncrypted == FILE_ATTRIBUTE_ENCRYPTED);
static_assert(kGenericRead == GENERIC_READ);
static_assert(kGenericWrite == GENERIC_WRITE);
static_assert(kGenericAll == GENERIC_ALL);
static_assert(kDelete == DELETE);
static_assert(kReadControl == READ_CONTROL);
static_assert(kFileReadData == FILE_READ_DATA);
static_assert(kFileWriteData == FILE_WRITE_DATA);
static_assert(kFileAppendData == FILE_APPEND_DATA);
static_assert(kFileWriteAttributes == FILE_WRITE_ATTRIBUTES);
static_assert(kFileShareRead == FILE_SHARE_READ);
static_assert(kFileShareWrite == FILE_SHARE_WRITE);
static_assert(kFileShareDelete == FILE_SHARE_DELETE);
static_assert(kCreateNew == CREATE_NEW);
static_assert(kCreateAlways == CREATE_ALWAYS);
static_assert(kOpenExisting == OPEN_EXISTING);
static_assert(kOpenAlways == OPEN_ALWAYS);
static_assert(kTruncateExisting == TRUNCATE_EXISTING);
static_assert(kFileFlagBackupSemantics == FILE_FLAG_BACKUP_SEMANTICS);
static_assert(kFileFlagDeleteOnClose == FILE_FLAG_DELETE_ON_CLOSE);
static_assert(kFileFlagSequentialScan == FILE_FLAG_SEQUENTIAL_SCAN);
static_assert(kInvalidFileSize == INVALID_FILE_SIZE);
static_assert(kGetFileExInfoStandard == ::GetFileExInfoStandard);
static_assert(kDriveNoRootDir == DRIVE_NO_ROOT_DIR);
static_assert(kDriveRemovable == DRIVE_REMOVABLE);
static_assert(kDriveFixed == DRIVE_FIXED);
static_assert(kDriveRemote == DRIVE_REMOTE);
static_assert(kDriveCdrom == DRIVE_CDROM);
static_assert(kDriveRamdisk == DRIVE_RAMDISK);

}  // namespace veldmark
