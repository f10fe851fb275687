#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/Text.h"

namespace veldmark::simulated {

// What a file says about itself in its version resource.
struct VersionDescription {
  // From the most to the least significant.
  using Number = std::array<std::uint16_t, 4>;
  // Name and value, in the order that they are stored in.
  using Strings = std::vector<std::pair<Text, Text>>;

  Number file{};
  Number product{};
  // Language and code page as eight hexadecimal digits, "040904B0"; without any, the resource has
  // no list of translations.
  std::vector<Text> translations{};
  // String tables by translation.
  std::vector<std::pair<Text, Strings>> strings{};

  // "5.1.2600.0": one to four numbers below 65536, the rest 0. Throws std::invalid_argument.
  static Number ParseNumber(std::string_view text);

  // The resource as a module holds it. Throws std::invalid_argument for a translation that isn't
  // eight hexadecimal digits, and for more than the 65535 bytes that a resource can count.
  std::vector<std::uint8_t> Build() const;
};

}  // namespace veldmark::simulated
