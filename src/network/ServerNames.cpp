#include "network/ServerNames.h"

#include "apartment/Errors.h"
#include "automation/CaseMapping.h"

namespace veldmark {
namespace {

CollectionKey KeyOf(TextView name) { return CollectionKey::Plain(ToUpper(name)); }

Collection& Existing(const Ref<Collection>& cache) {
  if (!cache) Raise(runtime_error::kObjectNotSet);
  return *cache;
}

}  // namespace

std::optional<Variant> FindRemembered(const Ref<Collection>& cache, TextView name) {
  std::optional<Variant> found;
  Swallow([&] { found = Existing(cache).Item(KeyOf(name)); });
  return found;
}

void Remember(const Ref<Collection>& cache, TextView name, Variant value) {
  Existing(cache).Add(std::move(value), KeyOf(name));
}

}  // namespace veldmark
