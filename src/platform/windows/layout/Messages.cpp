#include "platform/operations/Messages.h"

#include <windows.h>

namespace veldmark {

static_assert(kLoadLibraryAsDatafile == LOAD_LIBRARY_AS_DATAFILE);
static_assert(kFormatMessageMaxWidthMask == FORMAT_MESSAGE_MAX_WIDTH_MASK);
static_assert(kFormatMessageAllocateBuffer == FORMAT_MESSAGE_ALLOCATE_BUFFER);
static_assert(kFormatMessageIgnoreInserts == FORMAT_MESSAGE_IGNORE_INSERTS);
static_assert(kFormatMessageFromString == FORMAT_MESSAGE_FROM_STRING);
static_assert(kFormatMessageFromHmodule == FORMAT_MESSAGE_FROM_HMODULE);
static_assert(kFormatMessageFromSystem == FORMAT_MESSAGE_FROM_SYSTEM);
static_assert(kFormatMessageArgumentArray == FORMAT_MESSAGE_ARGUMENT_ARRAY);

}  // namespace veldmark
