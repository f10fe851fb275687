#include "platform/operations/Types.h"

#include <windows.h>

namespace veldmark {

static_assert(sizeof(BYTE) == sizeof(::BYTE));
static_assert(sizeof(WORD) == sizeof(::WORD));
static_assert(sizeof(DWORD) == sizeof(::DWORD));
static_assert(sizeof(LONG) == sizeof(::LONG));
static_assert(sizeof(UINT) == sizeof(::UINT));
static_assert(sizeof(INT) == sizeof(::INT));
static_assert(sizeof(BOOL) == sizeof(::BOOL));
static_assert(sizeof(LARGE_INTEGER) == sizeof(::LARGE_INTEGER));
static_assert(sizeof(UINT_PTR) == sizeof(::UINT_PTR));
static_assert(sizeof(HANDLE) == sizeof(::HANDLE));
static_assert(sizeof(HKEY) == sizeof(::HKEY));
static_assert(sizeof(HMODULE) == sizeof(::HMODULE));
static_assert(sizeof(LSTATUS) == sizeof(::LSTATUS));
static_assert(sizeof(WCHAR) == sizeof(wchar_t));

}  // namespace veldmark
