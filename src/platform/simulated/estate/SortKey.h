#pragma once

#include <cstdint>
#include <vector>

#include "automation/Text.h"

namespace veldmark::simulated {

// The estate's sort key of a text, without regard to case: equal for texts that compare equal. It
// tells nothing of their order. Its table covers the Latin letters of the European languages and
// the Cyrillic two with a mark, which equal their decomposed forms; the letters that equal two
// others (the sharp s, the ligatures, thorn); the signs for ohm, kelvin and angstrom; and the
// ignorable characters: NUL, the soft hyphen, the joiners, the direction marks and the byte-order
// mark. Of everything else only the case is folded.
std::vector<std::uint8_t> SortKey(TextView text);

}  // namespace veldmark::simulated
