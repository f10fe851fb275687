#pragma once

#include <functional>

#include "automation/Text.h"

namespace veldmark::simulated {

// Whether a file or folder can bear this name: 1 to 255 characters, no control characters, none of
// < > : " / \ | ? *, and neither "." nor "..".
bool IsValidName(TextView name);

// Whether what a listing is asked for can be matched at all: as a name, but wildcards may stand in
// it.
bool IsValidPattern(TextView pattern);

// The 8.3 name that belongs to a long name, in upper case; empty if the long name is an 8.3 name
// itself. `taken` tells whether the folder already has a name. As the file system makes them: six
// characters and a number up to ~4, then two characters and a checksum of the long name.
Text MakeShortName(TextView name, const std::function<bool(TextView)>& taken);

// A listing's pattern in the form that the file system matches: upper case, with the wildcards of
// old in the places that the platform gives them ("*.*" becomes "*", "*." matches what has no
// extension, "?" at a name's end or before its dot may match nothing). `ends_in_dot` tells of a dot
// that path normalisation has dropped.
Text TranslatePattern(TextView pattern, bool ends_in_dot);

// Whether a name matches a translated pattern. `upper_name` is in upper case.
bool MatchesPattern(TextView translated, TextView upper_name);

}  // namespace veldmark::simulated
