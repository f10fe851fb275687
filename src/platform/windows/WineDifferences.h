#pragma once

#include <string>
#include <string_view>

#include "platform/operations/Types.h"

namespace veldmark {

/// Whether this process runs under Wine, where some codes differ from the published ones.
bool RunsUnderWine();

/// The published code for a failure that a file operation reported on a path. Wine answers 2 for
/// what lies on a missing drive (published: 3), and 3, 66 or 144 for what lies on a missing
/// server (published: 53). Elsewhere the code is returned as it is.
DWORD PublishedPathError(LPCWSTR path, DWORD code);

/// Whether this is a server ("\\\\srv" or "srv") other than the computer that this process runs on,
/// which under Wine none of the operations on named objects and shares reaches.
bool IsOtherServer(std::u16string_view server);

/// The code for an operation on a server that Wine can't reach: 53 for any but this computer, where
/// Wine answers itself, whatever it is asked. 0 elsewhere.
DWORD OtherServerUnderWine(LPCWSTR server);

/// What Wine can do about the security of an object that is named so: 0 and the name to pass on, or
/// the published code. Wine knows files, registry keys and services only, and reports success for
/// all the others without doing anything; it takes a server's name for part of the object's (2 or
/// 123; published: 1722), and the name of a root alone for none (87). Elsewhere the name stays as
/// it is.
DWORD PublishedObjectName(LPCWSTR name, DWORD object_type, std::u16string& name_to_pass);

}  // namespace veldmark
