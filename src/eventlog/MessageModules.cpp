#include "eventlog/MessageModules.h"

#include <algorithm>
#include <cstdint>

#include "frame/Apartment.h"
#include "frame/Errors.h"
#include "platform/automation/Conversion.h"

namespace veldmark {
namespace {

/// Gives back the modules of one entry of the cache: their handles in decimal, joined by "|".
void FreeModules(Messages& messages, TextView handles) {
  while (!handles.empty()) {
    const TextView handle = handles.substr(0, handles.find(u'|'));
    Swallow([&] {
      const std::int64_t module = ToLongLong(Variant(handle));
      messages.FreeLibrary(HMODULE{static_cast<std::uintptr_t>(module)});
    });
    handles.remove_prefix(std::min(handles.size(), handle.size() + 1));
  }
}

}  // namespace

void ReleaseMessageModulesOfLastLog() noexcept {
  Apartment* apartment = Apartment::TryCurrent();
  if (!apartment || apartment->counters[Counter::kEventLog] != 1) return;
  const Ref<Collection> cache = apartment->g_colMessageModules;
  for (std::int32_t position = cache ? cache->Count() : 0; position > 0; --position) {
    const Variant index(position);
    Swallow([&] { FreeModules(apartment->platform.messages, ToText(cache->Item(index))); });
    Swallow([&] { cache->Remove(index); });
  }
}

}  // namespace veldmark
