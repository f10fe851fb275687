#include "eventlog/MessageModules.h"

#include <algorithm>
#include <cstdint>

#include "apartment/Apartment.h"
#include "apartment/Errors.h"
#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

// A record of pointers is handed over as the array that it is.
static_assert(sizeof(MessageInsertArgs) == 101 * sizeof(const char16_t*));

auto FindLoad(std::vector<Module>& files, HMODULE module) {
  return std::ranges::find(files, module, [](const Module& file) { return file.Get(); });
}

}  // namespace

std::int16_t FillMessageInserts(std::span<const Text> texts, MessageInsertArgs& inserts) {
  const std::size_t count = std::min(texts.size(), inserts.fields.size());
  std::ranges::transform(texts.first(count), inserts.fields.begin(), &Text::c_str);
  return static_cast<std::int16_t>(count);
}

HMODULE LoadMessageFile(const Text& path) {
  Apartment& apartment = Apartment::Current();
  Messages& messages = apartment.platform.messages;
  Module module(messages, messages.LoadLibraryExW(path.c_str(), nullptr, kLoadLibraryAsDatafile));
  return module ? apartment.message_files.emplace_back(std::move(module)).Get() : HMODULE{0};
}

void FreeMessageFile(HMODULE module) noexcept {
  std::vector<Module>& files = Apartment::Current().message_files;
  const auto found = FindLoad(files, module);
  if (found != files.end()) files.erase(found);
}

TextView FormatModuleMessage(HMODULE module, DWORD number, std::size_t room,
                             MessageInsertArgs* inserts) {
  Apartment& apartment = Apartment::Current();
  auto& buffer = apartment.message_buffer;
  if (!buffer) buffer = std::make_unique_for_overwrite<char16_t[]>(kLongestMessage);
  const DWORD flags = kFormatMessageFromHmodule |
                      (inserts ? kFormatMessageArgumentArray : kFormatMessageIgnoreInserts);
  return {buffer.get(), apartment.platform.messages.FormatMessageW(
                            flags, reinterpret_cast<const void*>(module), number, 0, buffer.get(),
                            static_cast<DWORD>(room), inserts)};
}

TextView FormatFileMessage(HMODULE module, DWORD number, std::size_t room,
                           MessageInsertArgs* inserts) {
  auto& files = Apartment::Current().message_files;
  if (FindLoad(files, module) != files.end())
    return FormatModuleMessage(module, number, room, inserts);
  SetLastPlatformError(kErrorResourceDataNotFound);
  return {};
}

Text HandleText(HMODULE module) {
  return ToText(static_cast<std::int64_t>(static_cast<std::uintptr_t>(module)));
}

std::vector<HMODULE> HandlesIn(TextView text) {
  std::vector<HMODULE> modules;
  for (std::size_t start = 0; start < text.size();) {
    std::uintptr_t value = 0;
    for (; start < text.size() && text[start] != u'|'; ++start) {
      value = value * 10 + static_cast<std::uintptr_t>(text[start] - u'0');
    }
    modules.push_back(HMODULE{value});
    ++start;
  }
  return modules;
}

void ReleaseMessageModulesOfLastLog() noexcept {
  Apartment* const apartment = Apartment::TryCurrent();
  if (!apartment || apartment->counters[Counter::kEventLog] != 1) return;
  apartment->known_modules = nullptr;
  while (!apartment->message_files.empty()) apartment->message_files.pop_back();
  const Ref<Collection> cache = apartment->message_modules;
  for (std::int32_t position = cache ? cache->Count() : 0; position > 0; --position) {
    Swallow([&] { cache->Remove(Variant(position)); });
  }
}

}  // namespace veldmark
