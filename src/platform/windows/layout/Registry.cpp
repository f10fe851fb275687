#include "platform/operations/Registry.h"

#include <windows.h>

namespace veldmark {

static_assert(kKeyQueryValue == KEY_QUERY_VALUE);
static_assert(kKeySetValue == KEY_SET_VALUE);
static_assert(kKeyCreateSubKey == KEY_CREATE_SUB_KEY);
static_assert(kKeyEnumerateSubKeys == KEY_ENUMERATE_SUB_KEYS);
static_assert(kKeyRead == KEY_READ);
static_assert(kKeyWrite == KEY_WRITE);
static_assert(kKeyAllAccess == KEY_ALL_ACCESS);
static_assert(kRegNone == REG_NONE);
static_assert(kRegSz == REG_SZ);
static_assert(kRegExpandSz == REG_EXPAND_SZ);
static_assert(kRegBinary == REG_BINARY);
static_assert(kRegDword == REG_DWORD);
static_assert(kRegDwordBigEndian == REG_DWORD_BIG_ENDIAN);
static_assert(kRegLink == REG_LINK);
static_assert(kRegMultiSz == REG_MULTI_SZ);
static_assert(kRegQword == REG_QWORD);
static_assert(kRegOptionNonVolatile == REG_OPTION_NON_VOLATILE);
static_assert(kRegOptionVolatile == REG_OPTION_VOLATILE);
static_assert(kRegOptionBackupRestore == REG_OPTION_BACKUP_RESTORE);
static_assert(kRegCreatedNewKey == REG_CREATED_NEW_KEY);
static_assert(kRegOpenedExistingKey == REG_OPENED_EXISTING_KEY);

}  // namespace veldmark
