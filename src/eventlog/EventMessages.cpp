#include "eventlog/EventMessages.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "automation/LastError.h"
#include "eventlog/InsertStrings.h"
#include "eventlog/MessageModules.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "registry/CRegKey.h"
#include "registry/CRegistry.h"

namespace veldmark {
namespace {

constexpr TextView kEventLogKey = u"SYSTEM\\CurrentControlSet\\Services\\EventLog\\";
constexpr TextView kServerStart = u"\\\\";
constexpr TextView kLineEnd = u"\r\n";
constexpr TextView kTwoLineEnds = u"\r\n\r\n";

// In characters.
constexpr std::size_t kLongestMessage = 65536;
constexpr std::size_t kLongestParameter = 10240;

Collection& Existing(const Ref<Collection>& cache) {
  if (!cache) Raise(runtime_error::kObjectNotSet);
  return *cache;
}

Collection& ModuleCache() { return Existing(Apartment::Current().message_modules); }

CollectionKey KeyOf(const MessageSource& source, TextView kind) {
  Text key = source.server;
  ((key += u'|') += source.log) += u'|';
  (key += source.source) += u'|';
  return CollectionKey::Plain(key.append(kind));
}

CollectionKey KeyOfPath(const Text& path) { return CollectionKey::Plain(ToUpper(path)); }

/// What "%1" and "%2" of a platform text about a missing message stand for.
Variant InsertsOf(std::int32_t number, const MessageSource& source) {
  return Variant(TextArray({ToText(std::int64_t{number}),
                            u"\\\\" + source.server + u"\\" + source.log + u"\\" + source.source}));
}

/// The key of a source in the registry of its computer or, failing that, of this one; Nothing where
/// neither has it.
Ref<CRegKey> FindSourceKey(const MessageSource& source) {
  Err().Clear();
  Ref<CRegKey> key;
  bool retries = false;
  auto registry = Make<CRegistry>();
  Swallow([&] {
    if (Engine().ComputerName() == source.server) return;
    registry->ConnectToRemoteRegistry(source.server);
    retries = true;
  });
  const Text path =
      Text(kEventLogKey) + source.log + (source.source.empty() ? Text() : u"\\" + source.source);
  for (;;) {
    Swallow([&] { key = registry->GetRegKey(HKEY_LOCAL_MACHINE, path); });
    if (key || !retries) return key;
    retries = false;
    registry = Make<CRegistry>();
    Apartment::Current().platform.timers.DoEvents();
  }
}

/// A text of a source's key; empty where that can't be read.
Text ReadFileNames(const Ref<CRegKey>& key, TextView value_name) {
  Text value;
  Swallow([&] {
    if (!key) Raise(runtime_error::kObjectNotSet);
    value = ToText(key->GetValue(Text(value_name), REG_EXPAND_SZ));
  });
  return value;
}

/// Loads the files of a list with ";" between them and remembers each by its path.
Text LoadEventFiles(const MessageSource& source, TextView files) {
  Text handles;
  for (std::size_t start = 0; start < files.size() || (start > 0 && start == files.size());) {
    const std::size_t end = std::min(files.find(u';', start), files.size());
    const Text path = GetRemoteMessageFilePath(files.substr(start, end - start), source.server);
    const Text handle = HandleText(LoadMessageFile(path));
    if (start > 0) handles += u'|';
    handles += handle;
    Swallow([&] { ModuleCache().Add(Variant(handle), KeyOfPath(path)); });
    start = end + 1;
  }
  return handles;
}

std::vector<HMODULE> EventModules(const MessageSource& source) {
  Err().Clear();
  CollectionKey key = KeyOf(source, u"Event");
  Text handles;
  if (!Swallow([&] { handles = ToText(ModuleCache().Item(key)); })) {
    handles = LoadEventFiles(source, ReadFileNames(FindSourceKey(source), u"EventMessageFile"));
    Swallow([&] { ModuleCache().Add(Variant(handles), std::move(key)); });
  }
  return HandlesIn(handles);
}

HMODULE ParameterModule(const MessageSource& source) {
  CollectionKey key = KeyOf(source, u"Parameter");
  Text handle;
  if (!Swallow([&] { handle = ToText(ModuleCache().Item(key)); })) {
    const Text path = GetRemoteMessageFilePath(
        ReadFileNames(FindSourceKey(source), u"ParameterMessageFile"), source.server);
    Err().Clear();
    CollectionKey path_key = KeyOfPath(path);
    if (!Swallow([&] { handle = ToText(ModuleCache().Item(path_key)); })) {
      handle = HandleText(LoadMessageFile(path));
      Swallow([&] { ModuleCache().Add(Variant(handle), std::move(key)); });
      Swallow([&] { ModuleCache().Add(Variant(handle), std::move(path_key)); });
    }
  }
  const std::vector<HMODULE> modules = HandlesIn(handle);
  return modules.empty() ? HMODULE{0} : modules.front();
}

/// The strings as a message shows them. With an error that still stands there are none: that is the
/// first look-up of a source whose files another one has loaded.
std::vector<Text> InsertsFor(const MessageSource& source, TextView strings_text,
                             const std::optional<TextArray>& strings) {
  std::vector<Text> texts;
  if (strings) texts = strings->elements;
  if (strings_text.find(u"%%") != TextView::npos) {
    for (Text& text : texts) {
      if (text.find(u"%%") == Text::npos) continue;
      Swallow([&] { text = GetParameterMessage(source, text); });
    }
  }
  if (!strings || Err().Number() != 0) {
    Err().Clear();
    return {};
  }
  for (Text& text : texts) Swallow([&] { text = ResolveInsertString(text, source.server); });
  return texts;
}

/// Puts a module's message, or the words of the failure, in place of `text`. False where there is
/// no message.
bool ReadMessage(const MessageSource& source, HMODULE module, std::int32_t event_id,
                 std::span<char16_t> buffer, MessageInsertArgs* inserts, Text& text) {
  const DWORD length = FormatFileMessage(module, static_cast<DWORD>(event_id), buffer, inserts);
  if (length != 0) {
    text = TrimAtNulRight({buffer.data(), length});
    if (text.ends_with(kLineEnd)) text.resize(text.size() - kLineEnd.size());
    if (text.find(kTwoLineEnds) != Text::npos) text = ReplaceAll(text, kTwoLineEnds, kLineEnd);
    return true;
  }
  if (const auto error = static_cast<std::int32_t>(LastPlatformError())) {
    Swallow([&] { text = GetAPIErrorText(error, InsertsOf(event_id, source)); });
  }
  return false;
}

/// The text of a number in a parameter file.
Text ParameterText(const MessageSource& source, HMODULE module, const Text& digits,
                   std::span<char16_t> buffer) {
  const std::int32_t number = ToLong(Variant(digits));
  const DWORD length = FormatFileMessage(module, static_cast<DWORD>(number), buffer, nullptr);
  if (length != 0) return TrimAtNulRight({buffer.data(), length});
  const DWORD error = LastPlatformError();
  if (error == 0) return u"%%" + digits;
  const auto code = static_cast<std::int32_t>(error);
  Raise(code, {},
        error == kErrorMrMidNotFound ? GetAPIErrorText(code, InsertsOf(number, source))
                                     : GetAPIErrorText(code));
}

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// Frees a message file where an error leaves its scope.
class FreeOnError {
 public:
  explicit FreeOnError(HMODULE module) : module_(module) {}
  FreeOnError(const FreeOnError&) = delete;
  FreeOnError& operator=(const FreeOnError&) = delete;
  ~FreeOnError() {
    if (module_ != HMODULE{0}) FreeMessageFile(module_);
  }
  void Keep() { module_ = HMODULE{0}; }

 private:
  HMODULE module_;
};

/// The text of a category; nothing where the platform has none and says no more.
std::optional<Text> CategoryText(const MessageSource& source, const Module& module,
                                 std::int16_t category) {
  const auto buffer = std::make_unique_for_overwrite<char16_t[]>(kLongestParameter);
  const DWORD length = Apartment::Current().platform.messages.FormatMessageW(
      kFormatMessageFromHmodule | kFormatMessageIgnoreInserts,
      reinterpret_cast<const void*>(module.Get()), static_cast<DWORD>(std::int32_t{category}), 0,
      buffer.get(), static_cast<DWORD>(kLongestParameter), nullptr);
  if (length == 0) {
    const auto error = static_cast<std::int32_t>(LastPlatformError());
    if (error == 0) return std::nullopt;
    Raise(error, {}, GetAPIErrorText(error, InsertsOf(category, source)));
  }
  Text text = TrimAtNulRight({buffer.get(), length});
  if (text.ends_with(kLineEnd)) text.resize(text.size() - kLineEnd.size());
  return text;
}

}  // namespace

Text GetEventMessage(const MessageSource& source, std::int32_t event_id, TextView strings_text,
                     const std::optional<TextArray>& strings, Text& raw) {
  Text message;
  const std::vector<HMODULE> modules = EventModules(source);
  if (modules.empty()) return message;
  const auto memory = std::make_unique_for_overwrite<char16_t[]>(kLongestMessage);
  const std::span<char16_t> buffer(memory.get(), kLongestMessage);
  for (const HMODULE module : modules) {
    const std::vector<Text> texts = InsertsFor(source, strings_text, strings);
    if (module == HMODULE{0}) {
      message.clear();
      raw.clear();
      continue;
    }
    MessageInsertArgs inserts;
    FillMessageInserts(texts, inserts);
    ReadMessage(source, module, event_id, buffer, &inserts, message);
    if (ReadMessage(source, module, event_id, buffer, nullptr, raw)) break;
  }
  return message;
}

Text GetParameterMessage(const MessageSource& source, TextView text) {
  return ReRaising([&]() -> Text {
    const HMODULE module = ParameterModule(source);
    if (module == HMODULE{0}) return {};
    FreeOnError file(module);
    const auto memory = std::make_unique_for_overwrite<char16_t[]>(kLongestParameter);
    Text result;
    for (std::size_t i = 0; i < text.size();) {
      const std::size_t next = i + 1;
      if (text[i] != u'%' || next == text.size()) {
        result += text[i++];
      } else if (text[next] == u'%') {
        ++i;
      } else if (!IsDigit(text[next])) {
        result += text[i++];
      } else {
        i = static_cast<std::size_t>(
            std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(next), text.end(),
                             IsDigit) -
            text.begin());
        result += ParameterText(source, module, Text(text.substr(next, i - next)),
                                {memory.get(), kLongestParameter});
      }
    }
    file.Keep();
    Err().Clear();
    return result;
  });
}

Text GetCategoryMessage(const MessageSource& source, std::int16_t category) {
  return ReRaising([&]() -> Text {
    const auto cache = []() -> Collection& {
      return Existing(Apartment::Current().category_texts);
    };
    CollectionKey key = KeyOf(source, u"Category|" + ToText(std::int64_t{category}));
    Text text;
    if (Swallow([&] { text = ToText(cache().Item(key)); })) return text;
    const Ref<CRegKey> source_key = FindSourceKey(source);
    const Text path = source_key
                          ? GetRemoteMessageFilePath(
                                ReadFileNames(source_key, u"CategoryMessageFile"), source.server)
                          : Text();
    Err().Clear();
    if (path.empty()) return {};
    Messages& messages = Apartment::Current().platform.messages;
    const Module module(messages,
                        messages.LoadLibraryExW(path.c_str(), nullptr, kLoadLibraryAsDatafile));
    if (!module) {
      Swallow([&] { cache().Add(Variant(Text()), std::move(key)); });
      constexpr auto kNotFound = static_cast<std::int32_t>(kErrorFileNotFound);
      Raise(kNotFound, {}, GetAPIErrorText(kNotFound) + u" (" + path + u")");
    }
    const std::optional<Text> found = CategoryText(source, module, category);
    if (!found) return {};
    Swallow([&] { cache().Add(Variant(*found), std::move(key)); });
    return *found;
  });
}

Text GetRemoteMessageFilePath(TextView path, TextView server) {
  if (server.starts_with(kServerStart)) server.remove_prefix(kServerStart.size());
  if (path.size() < 2 || path[1] != u':') return Text(path);
  return Text(kServerStart)
      .append(server)
      .append(u"\\")
      .append(1, path[0])
      .append(u"$")
      .append(path.substr(2));
}

}  // namespace veldmark
