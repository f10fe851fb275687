#pragma once

#include <cstddef>

#include "automation/Text.h"

namespace veldmark {

/// Case as the platform's text functions see it: one code unit becomes one code unit, in every
/// locale alike. The dotted and dotless i, the long s and the Kelvin sign keep theirs, so that no
/// ASCII text ever equals one that isn't.

char16_t UpperCase(char16_t unit) noexcept;
char16_t LowerCase(char16_t unit) noexcept;
/// The form in which two units that differ in case alone are the same.
char16_t FoldCase(char16_t unit) noexcept;

Text ToUpper(TextView text);
Text ToLower(TextView text);
/// Every unit in its `FoldCase` form: what a key that ignores case is stored and hashed by.
Text ToFolded(TextView text);
/// Each word begins with a capital, the rest of it is lowered. Words end at a NUL, a blank, a tab
/// or a line end.
Text ToProperCase(TextView text);

bool EqualNoCase(TextView left, TextView right) noexcept;
bool StartsWithNoCase(TextView text, TextView start) noexcept;
/// Where `part` first stands in `text` from `from` on, in any case; `TextView::npos` if nowhere. An
/// empty part stands everywhere.
std::size_t FindNoCase(TextView text, TextView part, std::size_t from = 0) noexcept;

/// The text with every occurrence of `part` replaced, from left to right and never within what was
/// put in. An empty part occurs nowhere.
Text ReplaceAll(TextView text, TextView part, TextView replacement);
Text ReplaceAllNoCase(TextView text, TextView part, TextView replacement);

}  // namespace veldmark
