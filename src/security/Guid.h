#pragma once

#include "automation/Text.h"
#include "platform/operations/Security.h"

namespace veldmark {

/// "{4FC59CAB-7EDE-48D8-B1B0-B3B8D3B3B3F1}", in capitals.
Text ConvertGUIDToString(const GUID& guid);

/// The GUID of a text with or without braces: groups of hexadecimal digits with "-" between them,
/// each within its field's width. A text that begins with "{" loses its last character, whatever
/// that is. Raises 9 for a missing group, 13 for what is no hexadecimal number, 6 for a number too
/// wide and 5 for "{" alone.
GUID ConvertStringToGUID(TextView text);

/// The GUID of a text in the platform's one form, with braces and in any case. Raises 800401F3 for
/// any other text.
GUID ConvertStringToGUID2(TextView text);

}  // namespace veldmark
