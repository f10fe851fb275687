#include "services/ServiceBlock.h"

namespace veldmark {

Text ServiceBlock::TextOf(LPCWSTR text) const {
  if (!text) return {};
  std::size_t offset = OffsetOf(text);
  return TextAt(offset);
}

Text ServiceBlock::NamesOf(LPCWSTR names) const {
  Text joined;
  if (!names) return joined;
  std::size_t offset = OffsetOf(names);
  for (Text name = TextAt(offset); !name.empty(); name = TextAt(offset)) {
    if (!joined.empty()) joined += u'|';
    joined += name;
  }
  return joined;
}

std::size_t ServiceBlock::OffsetOf(LPCWSTR text) const {
  // A pointer from outside can't be compared as one.
  const auto start = reinterpret_cast<std::uintptr_t>(bytes_.data());
  const auto address = reinterpret_cast<std::uintptr_t>(text);
  if (address < start || address - start > bytes_.size()) RaisePlatformError(kErrorInvalidData);
  return address - start;
}

Text ServiceBlock::TextAt(std::size_t& offset) const {
  Text text;
  for (;;) {
    char16_t unit;
    if (bytes_.size() - offset < sizeof unit) RaisePlatformError(kErrorInvalidData);
    std::memcpy(&unit, bytes_.data() + offset, sizeof unit);
    offset += sizeof unit;
    if (unit == u'\0') return text;
    text += unit;
  }
}

}  // namespace veldmark
