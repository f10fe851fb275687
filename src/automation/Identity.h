#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace veldmark {

/// A universally unique identifier with the layout of the platform's GUID.
struct Identity {
  std::uint32_t data1 = 0;
  std::uint16_t data2 = 0;
  std::uint16_t data3 = 0;
  std::array<std::uint8_t, 8> data4{};

  auto operator<=>(const Identity&) const = default;

  /// "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX", upper case, without braces.
  std::string ToString() const;
};

/// The name-based identifier (RFC 4122, version 5) of `name` within this library. Every class,
/// interface, event interface and enumeration has the identifier of its name, so none is ever
/// written down or mistyped.
Identity IdentityOf(std::string_view name);

}  // namespace veldmark
