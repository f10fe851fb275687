#include "eventlog/MessageModules.h"

#include <algorithm>
#include <cstdint>

#include "apartment/Apartment.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "collections/Collection.h"

namespace veldmark {
namespace {

/// Gives back the modules of one entry of the cache: their handles in decimal, joined by "|".
void FreeModules(Messages& messages, TextView handles) {
  while (!handles.empty()) {
    const TextView handle = handles.substr(0, handles.find(u'|'));
    Swallow([&] {
      const HMODULE module{static_cast<std::uintptr_t>(ToLongLong(Variant(handle)))};
      // 0 stands for a file that could not be loaded.
      if (module != HMODULE{0}) messages.FreeLibrary(module);
    });
    handles.remove_prefix(std::min(handles.size(), handle.size() + 1));
  }
}

}  // namespace

void ReleaseMessageModulesOfLastLog() noexcept {
  Apartment* apartment = Apartment::TryCurrent();
  if (!apartment || apartment->counters[Counter::kEventLog] != 1) return;
  const Ref<Collection> cache = apartment->message_modules;
  for (std::int32_t position = cache ? cache->Count() : 0; position > 0; --position) {
    const Variant index(position);
    Swallow([&] { FreeModules(apartment->platform.messages, ToText(cache->Item(index))); });
    Swallow([&] { cache->Remove(index); });
  }
}

}  // namespace veldmark
