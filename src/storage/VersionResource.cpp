#include "storage/VersionResource.h"

#include <algorithm>
#include <cstring>

#include "apartment/Conversions.h"
#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

constexpr std::size_t kTypeOffset = 4;

constexpr std::size_t Aligned(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

[[noreturn]] void RaiseInvalidData() {
  RaisePlatformError(static_cast<std::int32_t>(kErrorInvalidData));
}

}  // namespace

VersionResource::VersionResource(std::span<const std::uint8_t> bytes)
    // A 16-bit block has the first letter of its key where others have their type, 0 or 1.
    : bytes_(bytes), is_16_bit_(bytes.size() > kTypeOffset && bytes[kTypeOffset] >= u' ') {
  const auto root = BlockAt(0, bytes_.size());
  if (!root) RaiseInvalidData();
  root_ = *root;
}

std::optional<VersionResource::Value> VersionResource::Query(TextView path) const {
  Block block = root_;
  while (!path.empty()) {
    const std::size_t length = std::min(path.find(u'\\'), path.size());
    if (length > 0) {
      const auto child = Child(block, path.substr(0, length));
      if (!child) return std::nullopt;
      block = *child;
    }
    path.remove_prefix(std::min(length + 1, path.size()));
  }
  return Value{bytes_.subspan(std::min(block.value, bytes_.size())), block.value_length};
}

std::optional<VS_FIXEDFILEINFO> VersionResource::FixedInfo() const {
  VS_FIXEDFILEINFO info;
  const auto value = Query(u"\\");
  if (value->length < sizeof info) return std::nullopt;
  if (value->bytes.size() < sizeof info) RaiseInvalidData();
  std::memcpy(&info, value->bytes.data(), sizeof info);
  return info;
}

std::optional<Text> VersionResource::FirstTranslation() const {
  constexpr std::size_t kEntrySize = 4;
  const auto value = Query(u"\\VarFileInfo\\Translation");
  if (!value || value->length < kEntrySize) return std::nullopt;
  if (value->bytes.size() < kEntrySize) RaiseInvalidData();
  Text key;
  for (const std::size_t index : {1, 0, 3, 2}) {
    for (const int shift : {4, 0}) {
      key += u"0123456789ABCDEF"[value->bytes[index] >> shift & 0xF];
    }
  }
  return key;
}

std::optional<Text> VersionResource::StringOf(TextView translation, TextView name) const {
  const auto value =
      Query(Text(u"\\StringFileInfo\\").append(translation).append(1, u'\\').append(name));
  if (!value || value->length == 0) return std::nullopt;
  if (value->bytes.empty()) RaiseInvalidData();
  std::size_t end = 0;
  while (end + UnitSize() <= value->bytes.size() &&
         (value->bytes[end] | value->bytes[end + UnitSize() - 1]) != 0) {
    end += UnitSize();
  }
  const auto text = value->bytes.first(end);
  return is_16_bit_ ? AnsiBufferToString(text.data(), static_cast<std::int32_t>(end))
                    : ByteArrayToString(text);
}

std::uint16_t VersionResource::WordAt(std::size_t offset) const {
  return static_cast<std::uint16_t>(bytes_[offset] | bytes_[offset + 1] << 8);
}

char16_t VersionResource::UnitAt(std::size_t offset) const {
  return is_16_bit_ ? bytes_[offset] : WordAt(offset);
}

std::optional<VersionResource::Block> VersionResource::BlockAt(std::size_t offset,
                                                               std::size_t limit) const {
  if (offset > limit || limit - offset < HeadSize()) return std::nullopt;
  const std::size_t length = WordAt(offset);
  if (length < HeadSize()) return std::nullopt;
  Block block{.start = offset, .end = std::min(offset + length, limit)};
  block.value_length = WordAt(offset + 2);
  block.key_end = offset + HeadSize();
  while (block.key_end + UnitSize() <= block.end && UnitAt(block.key_end) != 0) {
    block.key_end += UnitSize();
  }
  block.value = Aligned(block.key_end + UnitSize());
  const bool counts_characters = !is_16_bit_ && WordAt(offset + kTypeOffset) != 0;
  block.children =
      Aligned(block.value + std::size_t{block.value_length} * (counts_characters ? 2 : 1));
  return block;
}

bool VersionResource::HasKey(const Block& block, TextView key) const {
  std::size_t position = block.start + HeadSize();
  if (block.key_end - position != key.size() * UnitSize()) return false;
  for (const char16_t unit : key) {
    if (UpperCase(UnitAt(position)) != UpperCase(unit)) return false;
    position += UnitSize();
  }
  return true;
}

std::optional<VersionResource::Block> VersionResource::Child(const Block& parent,
                                                             TextView key) const {
  auto block = BlockAt(parent.children, parent.end);
  while (block && !HasKey(*block, key)) {
    // Each step leads on: no block is shorter than its head.
    block = BlockAt(Aligned(block->start + WordAt(block->start)), parent.end);
  }
  return block;
}

}  // namespace veldmark
