// Lists of texts out of memory. A list ends at its first empty piece and isn't read beyond it.

#include <cstring>
#include <vector>

#include "FuzzTarget.h"
#include "apartment/Conversions.h"

using namespace veldmark;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  // A block that ends where the list must, at the latest, so that a read beyond it is seen.
  std::vector<char16_t> block(size / sizeof(char16_t));
  if (!block.empty()) std::memcpy(block.data(), data, block.size() * sizeof(char16_t));
  std::size_t end = 0;
  while (end < block.size() && (block[end] != 0 || (end > 0 && block[end - 1] != 0))) ++end;
  block.resize(end);
  if (!block.empty() && block.back() != 0) block.push_back(0);
  block.push_back(0);
  Text pieces(block.data(), block.size() - 1);
  if (!pieces.empty()) pieces.pop_back();
  Require(WideMultiSzToString(block.data()) == pieces);
  world.simulated.journal().Clear();
  return 0;
}
