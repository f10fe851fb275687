#include "apartment/NetworkPages.h"

#include <optional>
#include <string>
#include <vector>

#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

/// What a call answers: how many records, the status, and where to go on; it may leave that alone.
struct Page {
  DWORD records, status;
  std::optional<DWORD> handle{};
};

using NetworkPages = ApartmentFixture;

TEST_F(NetworkPages, AreAskedForWhileTheStatusSaysThatThereAreMore) {
  // How many calls a walk makes of these pages, how many records it finds, and its error.
  const auto walk = [&](const std::vector<Page>& pages) {
    std::size_t calls = 0, records = 0;
    const auto ask = [&](BYTE** buffer, DWORD* read, DWORD* total, DWORD* handle) {
      const Page& page = pages.at(calls++);
      *buffer = static_cast<BYTE*>(
          simulated.session().AllocateNetwork(page.records * sizeof(DWORD), "a page", {}));
      *read = *total = page.records;
      *handle = page.handle.value_or(*handle);
      return page.status;
    };
    const std::int32_t error = ErrorOf(
        [&] { WalkNetworkPages<DWORD, DWORD>({}, ask, [&](DWORD) { return ++records > 0; }); });
    return std::to_string(calls) + " " + std::to_string(records) + " " + std::to_string(error);
  };
  EXPECT_EQ(walk({{2, 0, 7}}), "1 2 0");
  EXPECT_EQ(walk({{2, 234}, {1, 234}, {1, 0}}), "3 4 0") << "with the handle at 0";
  EXPECT_EQ(walk({{0, 234, 2}, {1, 0, 2}}), "2 1 0");
  EXPECT_EQ(walk({{1, 234, 2}, {0, 234, 2}}), "2 1 234") << "more, and no way to it";
  EXPECT_EQ(walk({{0, 234}}), "1 0 234");
}

}  // namespace
}  // namespace veldmark
