#include "registry/ValueData.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"

namespace veldmark {
namespace {

Text UnitsOf(DataBytes data) {
  Text units((data.size() + 1) / sizeof(char16_t), u'\0');
  for (std::size_t i = 0; i < data.size(); ++i) {
    units[i / 2] = static_cast<char16_t>(units[i / 2] | data[i] << (i % 2 == 0 ? 0 : 8));
  }
  return units;
}

Text TextOf(DataBytes data) { return TrimAtNul(UnitsOf(data)); }

/// The strings of a list with a NUL between each two: what stands before the first two NULs.
Text StringsOf(DataBytes data) {
  constexpr TextView kEnd(u"\0\0", 2);
  Text strings = UnitsOf(data);
  strings += kEnd;
  strings.resize(strings.find(kEnd));
  return strings;
}

std::int32_t NumberOf(DataBytes data) {
  std::array<std::uint8_t, sizeof(std::int32_t)> bytes{};
  std::copy_n(data.begin(), std::min(data.size(), bytes.size()), bytes.begin());
  return ReadLongAt(bytes.data());
}

Text ExpandEach(const Text& strings, const Text& machine_name) {
  if (strings.find(u'%') == Text::npos) return strings;
  CSupport& engine = Engine();
  Text expanded;
  for (TextView rest = strings;;) {
    const std::size_t end = rest.find(u'\0');
    expanded += engine.ExpandPathForMachine(Text(rest.substr(0, end)), machine_name);
    if (end == TextView::npos) return expanded;
    expanded += u'\0';
    rest.remove_prefix(end + 1);
  }
}

/// What doesn't depend on the way that the value is asked for.
Variant PlainValueOf(RegValueTypes type, DataBytes data) {
  switch (type) {
    case REG_BINARY:
      return ByteArray(std::vector<std::uint8_t>(data.begin(), data.end()));
    case REG_DWORD:
      return NumberOf(data);
    case REG_DWORD_BIG_ENDIAN:
      return SwapLongBytes(NumberOf(data));
    default:
      return {};
  }
}

}  // namespace

bool IsTextType(RegValueTypes type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

bool IsReadType(RegValueTypes type) {
  return IsTextType(type) || type == REG_BINARY || type == REG_DWORD ||
         type == REG_DWORD_BIG_ENDIAN;
}

std::int32_t SwapLongBytes(std::int32_t value) {
  const auto bits = static_cast<std::uint32_t>(value);
  return static_cast<std::int32_t>(bits >> 24 | (bits >> 8 & 0xFF00) | (bits << 8 & 0xFF0000) |
                                   bits << 24);
}

Variant ValueOf(RegValueTypes type, DataBytes data, const Text& machine_name) {
  switch (type) {
    case REG_SZ:
    case REG_MULTI_SZ:
      return ExpandEach(StringsOf(data), machine_name);
    case REG_EXPAND_SZ:
      return Engine().ExpandPathForMachine(TextOf(data), machine_name);
    default:
      return PlainValueOf(type, data);
  }
}

Variant ListedValueOf(RegValueTypes type, DataBytes data) {
  switch (type) {
    case REG_SZ:
      return TextOf(data);
    case REG_EXPAND_SZ:
      return Engine().ExpandPathForMachine(TextOf(data), Text());
    case REG_MULTI_SZ:
      return StringsOf(data);
    default:
      return PlainValueOf(type, data);
  }
}

}  // namespace veldmark
