#include "collections/KeyIndex.h"

#include <utility>

namespace veldmark {

void KeyIndex::Reserve() {
  constexpr std::size_t kFewest = 8;
  // At most three quarters full: the way to an empty cell stays short.
  if ((used_ + 1) * 4 <= cells_.size() * 3) return;
  const std::vector<Cell> old =
      std::exchange(cells_, std::vector<Cell>(cells_.empty() ? kFewest : cells_.size() * 2));
  used_ = 0;
  for (const Cell& cell : old) {
    if (cell.slot != kNone) Insert(cell.hash, cell.slot);
  }
}

void KeyIndex::Insert(std::uint32_t hash, std::uint32_t slot) noexcept {
  std::size_t cell = Home(hash);
  while (cells_[cell].slot != kNone) cell = Next(cell);
  cells_[cell] = {hash, slot};
  ++used_;
}

void KeyIndex::Erase(std::uint32_t hash, std::uint32_t slot) noexcept {
  std::size_t gap = Home(hash);
  while (cells_[gap].slot != slot) gap = Next(gap);
  // What was pushed behind its home by the cell that goes moves up, or no probe would reach it.
  for (std::size_t cell = Next(gap); cells_[cell].slot != kNone; cell = Next(cell)) {
    const std::size_t mask = cells_.size() - 1;
    const std::size_t way_to_cell = (cell - Home(cells_[cell].hash)) & mask;
    if (way_to_cell >= ((cell - gap) & mask)) cells_[std::exchange(gap, cell)] = cells_[cell];
  }
  cells_[gap] = {};
  --used_;
}

}  // namespace veldmark
