#pragma once

#include <optional>

#include "automation/Text.h"
#include "automation/Variant.h"
#include "collections/Collection.h"

namespace veldmark {

inline constexpr TextView kServerNameStart = u"\\\\";

/// A server's name without "\\" before it.
inline Text PlainServerName(TextView name) {
  if (name.starts_with(kServerNameStart)) name.remove_prefix(kServerNameStart.size());
  return Text(name);
}

/// What a cache of the apartment holds under a name in any case. None where that raises anything,
/// which is left in `Err`: 5 for a name that it doesn't know.
std::optional<Variant> FindRemembered(const Ref<Collection>& cache, TextView name);
/// Puts something into a cache. Raises 91 where start-up couldn't create it.
void Remember(const Ref<Collection>& cache, TextView name, Variant value);

}  // namespace veldmark
