#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "automation/Text.h"
#include "platform/operations/VersionInformation.h"

namespace veldmark {

/// A view of a file's version resource: a tree of blocks, each with a length, a key, a value and
/// children behind it. No length in it is trusted: a block ends where it says, at the latest where
/// the block around it ends. 16-bit modules have the same tree with keys and texts in the system's
/// code page.
class VersionResource {
 public:
  /// `bytes` stay the caller's, and may be followed by whatever the platform left behind them.
  /// Raises 13 where they are too few for the outermost block.
  explicit VersionResource(std::span<const std::uint8_t> bytes);

  struct Value {
    /// From the value's first byte to the end of the whole resource, since a stated length may
    /// count bytes where it should count characters. Empty where the value would lie beyond.
    std::span<const std::uint8_t> bytes;
    /// As it is stated: characters for a text, else bytes.
    std::uint16_t length;
  };

  /// The value of the block at a path of keys, in any case, each behind a "\": "\" alone is the
  /// outermost block, "\StringFileInfo\040904B0\Comments" a text. Nothing where there is no such
  /// block.
  std::optional<Value> Query(TextView path) const;

  /// What the outermost block holds. Nothing where its value is too short for that; raises 13 where
  /// it would lie beyond the resource.
  std::optional<VS_FIXEDFILEINFO> FixedInfo() const;
  /// The language and code page of the first translation as the key of its texts, "040904B0".
  /// Nothing without a list of translations, or with one too short for an entry; raises 13 where
  /// the entry would lie beyond the resource.
  std::optional<Text> FirstTranslation() const;
  /// The text of this name under a translation, to its first NUL or to the resource's end. Nothing
  /// where there is none or its length is 0; raises 13 where it would lie beyond the resource.
  std::optional<Text> StringOf(TextView translation, TextView name) const;

 private:
  struct Block {
    std::size_t start = 0;
    std::size_t end = 0;
    std::size_t key_end = 0;
    std::size_t value = 0;
    std::size_t children = 0;
    std::uint16_t value_length = 0;
  };

  std::uint16_t WordAt(std::size_t offset) const;
  std::size_t HeadSize() const { return is_16_bit_ ? 4 : 6; }
  std::size_t UnitSize() const { return is_16_bit_ ? 1 : 2; }
  char16_t UnitAt(std::size_t offset) const;
  /// The block at an offset within one that ends at `limit`; nothing where it has no room for its
  /// head or says that it has none.
  std::optional<Block> BlockAt(std::size_t offset, std::size_t limit) const;
  bool HasKey(const Block& block, TextView key) const;
  std::optional<Block> Child(const Block& parent, TextView key) const;

  std::span<const std::uint8_t> bytes_;
  bool is_16_bit_;
  Block root_;
};

}  // namespace veldmark
