// The keyed list at two sizes: the time of one step must not grow with the list, but for a removal
// from the middle.

#include <benchmark/benchmark.h>

#include "automation/Text.h"
#include "collections/Collection.h"

namespace veldmark {
namespace {

Ref<Collection> Filled(std::int64_t items) {
  auto collection = Make<Collection>();
  for (std::int64_t i = 0; i < items; ++i) {
    collection->Add(Variant(static_cast<std::int32_t>(i)),
                    CollectionKey::Encoded(u"key " + ToText(i)));
  }
  return collection;
}

void Add(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Filled(state.range(0)));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ItemByKey(benchmark::State& state) {
  const auto collection = Filled(state.range(0));
  std::int64_t i = 0;
  for (auto _ : state) {
    i = (i + 7919) % state.range(0);
    benchmark::DoNotOptimize(collection->Item(CollectionKey::Encoded(u"key " + ToText(i))));
  }
  state.SetItemsProcessed(state.iterations());
}

void ItemByPosition(benchmark::State& state) {
  const auto collection = Filled(state.range(0));
  std::int64_t i = 0;
  for (auto _ : state) {
    i = (i + 7919) % state.range(0);
    benchmark::DoNotOptimize(collection->Item(Variant(static_cast<std::int32_t>(i + 1))));
  }
  state.SetItemsProcessed(state.iterations());
}

/// Takes the item at a part of the way through by its key, and appends it again.
void RemoveAt(benchmark::State& state, double part) {
  const auto collection = Filled(state.range(0));
  const auto position = static_cast<std::int32_t>(static_cast<double>(state.range(0)) * part) + 1;
  for (auto _ : state) {
    const Variant item = collection->Item(Variant(position));
    const Text key = u"key " + ToText(*item.If<std::int32_t>());
    collection->Remove(CollectionKey::Encoded(key));
    collection->Add(item, CollectionKey::Encoded(key));
  }
  state.SetItemsProcessed(state.iterations());
}

constexpr std::int64_t kSmall = 10'000;
constexpr std::int64_t kLarge = 1'000'000;

BENCHMARK(Add)->Arg(kSmall)->Arg(kLarge)->Unit(benchmark::kMillisecond);
BENCHMARK(ItemByKey)->Arg(kSmall)->Arg(kLarge);
BENCHMARK(ItemByPosition)->Arg(kSmall)->Arg(kLarge);
BENCHMARK_CAPTURE(RemoveAt, Front, 0.0)->Arg(kSmall)->Arg(kLarge);
BENCHMARK_CAPTURE(RemoveAt, Middle, 0.5)->Arg(kSmall)->Arg(kLarge);

}  // namespace
}  // namespace veldmark
