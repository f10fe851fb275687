#pragma once

#include "automation/Text.h"

namespace veldmark {

/// Whether an insert string may hold a reference: all others resolve to themselves.
bool HasReference(TextView text);

/// An insert string with its references "%{S-1-...}" and "%{GUID}" replaced by names; an account
/// that isn't known by its SID. What is neither stays, with a "}" where the text ends before it.
/// Raises for what isn't quite a SID as `CSupport::GetSidFromText` does, and 429 where a GUID's
/// name would need a component that isn't installed.
Text ResolveInsertString(TextView text, TextView server);

/// True if all of the text, but for one "&H" before more, is hexadecimal digits.
bool IsHexText(TextView text);

}  // namespace veldmark
