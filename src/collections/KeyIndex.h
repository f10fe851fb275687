#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace veldmark {

/// Which slots hold keys of a hash: open addressing, each cell with its hash, so that neither a
/// probe nor growing looks at a key. The keys themselves stay with the owner of the slots.
class KeyIndex {
 public:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;

  /// The slot under `hash` whose key `is_it(slot)` accepts; `kNone` if there is none.
  template <class IsIt>
  std::uint32_t Find(std::uint32_t hash, IsIt is_it) const {
    if (cells_.empty()) return kNone;
    for (std::size_t cell = Home(hash); cells_[cell].slot != kNone; cell = Next(cell)) {
      if (cells_[cell].hash == hash && is_it(cells_[cell].slot)) return cells_[cell].slot;
    }
    return kNone;
  }
  /// Makes room for one more, so that `Insert` can't fail.
  void Reserve();
  void Insert(std::uint32_t hash, std::uint32_t slot) noexcept;
  /// Takes out a slot that was inserted under `hash`.
  void Erase(std::uint32_t hash, std::uint32_t slot) noexcept;

 private:
  struct Cell {
    std::uint32_t hash = 0;
    std::uint32_t slot = kNone;
  };

  std::size_t Home(std::uint32_t hash) const { return hash & (cells_.size() - 1); }
  std::size_t Next(std::size_t cell) const { return (cell + 1) & (cells_.size() - 1); }

  std::vector<Cell> cells_;  ///< a power of two of them
  std::size_t used_ = 0;
};

}  // namespace veldmark
