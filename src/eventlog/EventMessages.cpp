#include "eventlog/EventMessages.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

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
constexpr std::size_t kLongestParameter = 10240;
static_assert(kLongestParameter <= kLongestMessage);

Collection& Existing(const Ref<Collection>& cache) {
  if (!cache) Raise(runtime_error::kObjectNotSet);
  return *cache;
}

Collection& ModuleCache() { return Existing(Apartment::Current().message_modules); }

/// A source's key in the caches.
CollectionKey KeyOf(const MessageSource& source, TextView kind) {
  Text key(source.server);
  (key.append(1, u'|').append(source.log) += u'|').append(source.source) += u'|';
  return CollectionKey::Plain(key.append(kind));
}

CollectionKey KeyOfPath(const Text& path) { return CollectionKey::Plain(ToUpper(path)); }

/// What "%1" and "%2" of a platform text about a missing message stand for.
Variant InsertsOf(std::int32_t number, const MessageSource& source) {
  Text name(kServerStart);
  (name.append(source.server) += u'\\').append(source.log) += u'\\';
  return Variant(TextArray({ToText(std::int64_t{number}), name.append(source.source)}));
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
    registry->ConnectToRemoteRegistry(Text(source.server));
    retries = true;
  });
  Text path = Text(kEventLogKey).append(source.log);
  if (!source.source.empty()) (path += u'\\').append(source.source);
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

/// The modules of a source.
struct ModuleList : ReferenceCounted {
  explicit ModuleList(TextView handles) : modules(HandlesIn(handles)) {}
  const std::vector<HMODULE> modules;
};

/// The modules that the cache names, by the texts of their sources as they were spelled. They are
/// found by views, so that a look-up copies no text.
class KnownModules : public ReferenceCounted {
 public:
  static KnownModules& Current() {
    Ref<ReferenceCounted>& known = Apartment::Current().known_modules;
    if (!known) known = Make<KnownModules>();
    return static_cast<KnownModules&>(*known);
  }

  Ref<ModuleList> Find(const MessageSource& source, TextView kind) const {
    const auto found = lists_.find(View{source, kind});
    return found == lists_.end() ? nullptr : found->second;
  }
  void Keep(const MessageSource& source, TextView kind, Ref<ModuleList> list) {
    lists_.emplace(Key{Text(source.server), Text(source.log), Text(source.source), Text(kind)},
                   std::move(list));
  }

 private:
  struct View {
    MessageSource source;
    TextView kind;
  };
  struct Key {
    operator View() const { return {{server, log, source}, kind}; }
    Text server, log, source, kind;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(const View& view) const {
      const std::hash<TextView> hash;
      return hash(view.source.source) ^ (hash(view.source.server) + view.kind.size());
    }
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(const View& a, const View& b) const {
      return a.source.source == b.source.source && a.source.server == b.source.server &&
             a.source.log == b.source.log && a.kind == b.kind;
    }
  };

  std::unordered_map<Key, Ref<ModuleList>, Hash, Equal> lists_;
};

/// The modules that the cache names for a source; Nothing where it doesn't.
Ref<ModuleList> CachedModules(const MessageSource& source, TextView kind) {
  KnownModules& known = KnownModules::Current();
  Ref<ModuleList> modules = known.Find(source, kind);
  if (modules) return modules;
  Swallow([&] {
    modules = Make<ModuleList>(ToText(ModuleCache().Item(KeyOf(source, kind))));
    known.Keep(source, kind, modules);
  });
  return modules;
}

Ref<ModuleList> EventModules(const MessageSource& source) {
  Err().Clear();
  if (Ref<ModuleList> modules = CachedModules(source, u"Event")) return modules;
  const Text handles =
      LoadEventFiles(source, ReadFileNames(FindSourceKey(source), u"EventMessageFile"));
  Swallow([&] { ModuleCache().Add(Variant(handles), KeyOf(source, u"Event")); });
  return Make<ModuleList>(handles);
}

HMODULE FirstOf(const std::vector<HMODULE>& modules) {
  return modules.empty() ? HMODULE{0} : modules.front();
}

HMODULE ParameterModule(const MessageSource& source) {
  if (const auto known = CachedModules(source, u"Parameter")) return FirstOf(known->modules);
  const Text path = GetRemoteMessageFilePath(
      ReadFileNames(FindSourceKey(source), u"ParameterMessageFile"), source.server);
  Err().Clear();
  CollectionKey path_key = KeyOfPath(path);
  Text handle;
  if (!Swallow([&] { handle = ToText(ModuleCache().Item(path_key)); })) {
    handle = HandleText(LoadMessageFile(path));
    Swallow([&] { ModuleCache().Add(Variant(handle), KeyOf(source, u"Parameter")); });
    Swallow([&] { ModuleCache().Add(Variant(handle), std::move(path_key)); });
  }
  return FirstOf(HandlesIn(handle));
}

bool HasParameter(TextView text) { return text.find(u"%%") != TextView::npos; }

/// The strings as a message shows them: as they are or, where something in them has to be looked
/// up, in `resolved`. With an error that still stands there are none: that is the first look-up of
/// a source whose files another one has loaded.
std::span<const Text> InsertsFor(const MessageSource& source, TextView strings_text,
                                 std::span<const Text> strings, std::vector<Text>& resolved) {
  if (HasParameter(strings_text)) {
    resolved.assign(strings.begin(), strings.end());
    for (Text& text : resolved) {
      if (HasParameter(text)) Swallow([&] { text = GetParameterMessage(source, text); });
    }
    strings = resolved;
  }
  if (strings.empty() || Err().Number() != 0) {
    Err().Clear();
    return {};
  }
  if (std::ranges::none_of(strings, HasReference)) return strings;
  // A look-up lets the caller's messages in, which may change the strings themselves.
  if (resolved.empty()) resolved.assign(strings.begin(), strings.end());
  for (Text& text : resolved) Swallow([&] { text = ResolveInsertString(text, source.server); });
  return resolved;
}

/// Puts a module's message, or the words of the failure, in place of `text`. False where there is
/// no message.
bool ReadMessage(const MessageSource& source, HMODULE module, std::int32_t event_id,
                 MessageInsertArgs* inserts, Text& text) {
  TextView message =
      FormatFileMessage(module, static_cast<DWORD>(event_id), kLongestMessage, inserts);
  if (!message.empty()) {
    message = PartToNulRight(message);
    if (message.ends_with(kLineEnd)) message.remove_suffix(kLineEnd.size());
    // Most messages are one line.
    if (FindUnit(message, kLineEnd.front()) == message.size()) {
      text = message;
    } else {
      text = ReplaceAll(message, kTwoLineEnds, kLineEnd);
    }
    return true;
  }
  if (const auto error = static_cast<std::int32_t>(LastPlatformError())) {
    Swallow([&] { text = GetAPIErrorText(error, InsertsOf(event_id, source)); });
  }
  return false;
}

/// The text of a number in a parameter file.
Text ParameterText(const MessageSource& source, HMODULE module, const Text& digits) {
  const std::int32_t number = ToLong(Variant(digits));
  const TextView text =
      FormatFileMessage(module, static_cast<DWORD>(number), kLongestParameter, nullptr);
  if (!text.empty()) return TrimAtNulRight(text);
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
  const TextView message = FormatModuleMessage(
      module.Get(), static_cast<DWORD>(std::int32_t{category}), kLongestParameter, nullptr);
  if (message.empty()) {
    const auto error = static_cast<std::int32_t>(LastPlatformError());
    if (error == 0) return std::nullopt;
    Raise(error, {}, GetAPIErrorText(error, InsertsOf(category, source)));
  }
  Text text = TrimAtNulRight(message);
  if (text.ends_with(kLineEnd)) text.resize(text.size() - kLineEnd.size());
  return text;
}

}  // namespace

Text GetEventMessage(const MessageSource& source, std::int32_t event_id, TextView strings_text,
                     std::span<const Text> strings, Text& raw) {
  Text message;
  const Ref<ModuleList> list = EventModules(source);
  for (const HMODULE module : list->modules) {
    std::vector<Text> resolved;
    const std::span<const Text> texts = InsertsFor(source, strings_text, strings, resolved);
    if (module == HMODULE{0}) {
      message.clear();
      raw.clear();
      continue;
    }
    MessageInsertArgs inserts;
    FillMessageInserts(texts, inserts);
    ReadMessage(source, module, event_id, &inserts, message);
    if (ReadMessage(source, module, event_id, nullptr, raw)) break;
  }
  return message;
}

Text GetParameterMessage(const MessageSource& source, TextView text) {
  return ReRaising([&]() -> Text {
    const HMODULE module = ParameterModule(source);
    if (module == HMODULE{0}) return {};
    FreeOnError file(module);
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
        result += ParameterText(source, module, Text(text.substr(next, i - next)));
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
