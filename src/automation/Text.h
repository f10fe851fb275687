#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldmark {

/// Text as the library holds it: UTF-16 code units of any content, embedded NULs and unpaired
/// surrogates included.
using Text = std::u16string;
using TextView = std::u16string_view;

/// The decimal digits of a whole number.
Text ToText(std::int64_t number);

/// The text with ASCII letters lowered, for names that are ASCII: those of members, classes and
/// arguments.
Text LowerAscii(TextView name);

/// Where the first such unit of the text stands; its length where there is none.
std::size_t FindUnit(TextView text, char16_t unit) noexcept;

/// UTF-8 of a text; an unpaired surrogate becomes U+FFFD.
std::string ToUtf8(TextView text);

/// The text of UTF-8 bytes; every malformed byte becomes U+FFFD.
Text FromUtf8(std::string_view bytes);

}  // namespace veldmark
