#include "services/RecordBuffer.h"

#include <optional>
#include <utility>

#include "apartment/Conversions.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

/// Takes the text that the bytes begin with, and its NUL, off the front.
Text TakeText(std::span<const std::uint8_t>& bytes) {
  std::optional<Text> text = TextToNul(bytes);
  if (!text) RaisePlatformError(kErrorInvalidData);
  bytes = bytes.subspan((text->size() + 1) * sizeof(WCHAR));
  return *std::move(text);
}

}  // namespace

Text RecordBuffer::TextOf(LPCWSTR text) const {
  if (!text) return {};
  std::span<const std::uint8_t> rest = From(text);
  return TakeText(rest);
}

Text RecordBuffer::NamesOf(LPCWSTR names) const {
  Text joined;
  if (!names) return joined;
  std::span<const std::uint8_t> rest = From(names);
  for (Text name = TakeText(rest); !name.empty(); name = TakeText(rest)) {
    if (!joined.empty()) joined += u'|';
    joined += name;
  }
  return joined;
}

void RecordBuffer::RequireRoom(std::size_t count, std::size_t size) const {
  if (count > bytes_.size() / size) RaisePlatformError(kErrorInvalidData);
}

std::span<const std::uint8_t> RecordBuffer::From(LPCWSTR address) const {
  // A pointer from outside can't be compared as one.
  const auto start = reinterpret_cast<std::uintptr_t>(bytes_.data());
  const auto place = reinterpret_cast<std::uintptr_t>(address);
  if (place < start || place - start > bytes_.size()) RaisePlatformError(kErrorInvalidData);
  return bytes_.subspan(place - start);
}

}  // namespace veldmark
