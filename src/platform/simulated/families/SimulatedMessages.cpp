#include "platform/simulated/families/SimulatedMessages.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <string>
#include <utility>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/FileAccess.h"
#include "platform/simulated/estate/Path.h"

namespace veldmark::simulated {
namespace {

constexpr DWORD kErrorBadExeFormat = 193;
constexpr DWORD kNotAnArgument = 100;
// No text may be longer.
constexpr std::size_t kLongestWidth = 0xFFFF;

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr DWORD kPrimaryLanguage = 0x3FF;

// Any English, or no language at all: the system's texts are in this one.
bool IsEnglish(DWORD language) {
  return (language & kPrimaryLanguage) == 0 ||
         (language & kPrimaryLanguage) == (kEnglish & kPrimaryLanguage);
}

// A text of a module's tables by number and language: a language that is given is looked for
// exactly, then by its primary part, then without any; none given takes the user's, English, before
// what there is.
DWORD FindIn(const MessageTables& tables, DWORD number, DWORD language, TextView& text) {
  const bool is_given = (language & kPrimaryLanguage) != 0;
  DWORD error = tables.empty() ? kErrorResourceTypeNotFound : kErrorResourceLangNotFound;
  const MessageTable* table = nullptr;
  for (const DWORD wanted : {language, language & kPrimaryLanguage, DWORD{0}}) {
    const auto found = tables.find(static_cast<WORD>(wanted));
    if (table == nullptr && found != tables.end()) table = &found->second;
  }
  if (table == nullptr && !is_given && !tables.empty()) {
    const auto own = tables.find(kEnglish);
    table = own == tables.end() ? &tables.begin()->second : &own->second;
  }
  if (table != nullptr) {
    const auto found = table->find(number);
    error = found == table->end() ? kErrorMrMidNotFound : 0;
    if (error == 0) text = found->second;
  }
  return error;
}

// One insert's number and format, as "%1" or "%12!-8s!".
struct Insert {
  DWORD number = kNotAnArgument;
  Text format = u"s";
  std::size_t end = 0;
};

Insert ReadInsert(TextView text, std::size_t start) {
  Insert insert;
  insert.number = text[start] - u'0';
  insert.end = start + 1;
  if (insert.end < text.size() && IsDigit(text[insert.end])) {
    insert.number = insert.number * 10 + (text[insert.end++] - u'0');
  }
  if (insert.end < text.size() && text[insert.end] == u'!') {
    const std::size_t close = text.find(u'!', insert.end + 1);
    if (close != TextView::npos) {
      insert.format = text.substr(insert.end + 1, close - insert.end - 1);
      insert.end = close + 1;
    }
  }
  return insert;
}

Text NumberText(std::uintptr_t value, char16_t conversion) {
  char digits[32];
  const auto narrow = static_cast<std::uint32_t>(value);
  std::to_chars_result result{};
  switch (conversion) {
    case u'd':
    case u'i':
      result = std::to_chars(digits, digits + sizeof digits, static_cast<std::int32_t>(narrow));
      break;
    case u'u':
      result = std::to_chars(digits, digits + sizeof digits, narrow);
      break;
    default:
      result = std::to_chars(digits, digits + sizeof digits, narrow, 16);
  }
  Text text(digits, result.ptr);
  return conversion == u'X' ? ToUpper(text) : text;
}

// Formats an argument by what stands between the exclamation marks: flags, width, precision, size,
// conversion. A "*" takes an argument for its number, and the value is the one behind.
Text FormatArgument(const std::uintptr_t* next, TextView format) {
  std::size_t index = 0;
  bool left = false;
  bool zero = false;
  for (; index < format.size() && TextView(u"-0#+ ").find(format[index]) != TextView::npos;
       ++index) {
    left = left || format[index] == u'-';
    zero = zero || format[index] == u'0';
  }
  const auto number = [&] {
    std::size_t result = 0;
    if (index < format.size() && format[index] == u'*') {
      ++index;
      const auto given = static_cast<std::int32_t>(*next++);
      left = left || given < 0;
      return std::min<std::size_t>(std::abs(std::int64_t{given}), kLongestWidth);
    }
    for (; index < format.size() && IsDigit(format[index]); ++index) {
      result = std::min<std::size_t>(result * 10 + (format[index] - u'0'), kLongestWidth);
    }
    return result;
  };
  const std::size_t width = number();
  std::size_t precision = Text::npos;
  if (index < format.size() && format[index] == u'.') {
    ++index;
    precision = number();
  }
  const char16_t conversion = format.empty() ? u's' : format.back();
  const std::uintptr_t value = *next;
  Text text;
  if (TextView(u"diuxX").find(conversion) != TextView::npos) {
    text = NumberText(value, conversion);
  } else if (conversion == u'c' || conversion == u'C') {
    text = Text(1, static_cast<char16_t>(value));
  } else {
    zero = false;
    const auto* const argument = reinterpret_cast<LPCWSTR>(value);
    text = Text(argument == nullptr ? u"(null)" : argument).substr(0, precision);
  }
  if (text.size() < width) {
    const std::size_t missing = width - text.size();
    text.insert(left ? text.size() : 0, missing, zero && !left ? u'0' : u' ');
  }
  return text;
}

// The text with its escapes resolved; nothing where an insert has no argument.
std::optional<Text> Compose(TextView text, bool keeps_inserts, const std::uintptr_t* arguments) {
  Text result;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char16_t unit = text[index];
    if (unit == u'\r' || unit == u'\n') {
      result += u"\r\n";
      if (unit == u'\r' && index + 1 < text.size() && text[index + 1] == u'\n') ++index;
      continue;
    }
    if (unit != u'%' || index + 1 == text.size()) {
      result += unit;
      continue;
    }
    const char16_t escape = text[++index];
    switch (escape) {
      case u'0':
        return result;
      case u'n':
        result += u"\r\n";
        break;
      case u'r':
        result += u'\r';
        break;
      case u't':
        result += u'\t';
        break;
      default:
        if (keeps_inserts) {
          result += u'%';
          result += escape;
        } else if (escape >= u'1' && escape <= u'9') {
          const Insert insert = ReadInsert(text, index);
          if (arguments == nullptr) return std::nullopt;
          result += FormatArgument(arguments + (insert.number - 1), insert.format);
          index = insert.end - 1;
        } else {
          result += escape == u'b' ? u' ' : escape;
        }
    }
  }
  return result;
}

// Breaks or joins lines as the width in the flags asks: 0xFF joins all, another number breaks
// before it.
Text Rewrap(const Text& text, DWORD width) {
  Text result;
  std::size_t column = 0;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find_first_of(u" \r\n", start), text.size());
    const std::size_t length = end - start;
    if (width != kFormatMessageMaxWidthMask && column > 0 && column + length > width) {
      while (result.ends_with(u' ')) result.pop_back();
      result += u"\r\n";
      column = 0;
    }
    result.append(text, start, length);
    column += length;
    start = std::min(text.find_first_not_of(u" \r\n", end), text.size());
    if (end < text.size()) {
      result += u' ';
      ++column;
    }
  }
  return result;
}

}  // namespace

HMODULE SimulatedMessages::LoadLibraryExW(LPCWSTR library_file_name, HANDLE, DWORD flags) {
  const TextView name = ViewOf(library_file_name);
  const Call call = session_.Begin("LoadLibraryExW", name);
  if (const DWORD fault = call.fault()) return Fail(fault, HMODULE{0});
  const bool is_bare = name.find_first_of(u"\\/:") == TextView::npos;
  if (is_bare) {
    Text identity = ToUpper(name);
    if (identity.find(u'.') == Text::npos) identity += u".DLL";
    const auto& modules = session_.estate.modules();
    if (const auto found = modules.find(identity); found != modules.end()) {
      return Load(identity,
                  std::make_shared<const MessageTables>(MessageTables{{kEnglish, found->second}}),
                  name);
    }
    const bool as_data = (flags & kLoadLibraryAsDatafile) != 0;
    const DWORD missing = as_data ? kErrorFileNotFound : kErrorModNotFound;
    return Fail(name.empty() ? kErrorInvalidParameter : missing, HMODULE{0});
  }
  const Place place = Find(name, session_.estate);
  DWORD error = place.error == kErrorPathNotFound ? kErrorFileNotFound : place.error;
  if (place.node != nullptr) {
    const FileNode& node = *place.node;
    const Token& token = session_.estate.token();
    if (node.is_folder() || node.read_denied() ||
        CheckFileAccess(token, place, kFileReadData).error != 0) {
      error = kErrorAccessDenied;
    } else if (!node.CanOpen({.reads = true, .lets_read = true, .lets_delete = true})) {
      error = kErrorSharingViolation;
    } else if (node.messages() != nullptr) {
      return Load(ToUpper(name), node.messages(), name);
    } else {
      error = kErrorBadExeFormat;
    }
  }
  return Fail(error, HMODULE{0});
}

BOOL SimulatedMessages::FreeLibrary(HMODULE module) {
  const Call call = session_.Begin("FreeLibrary");
  const DWORD fault = call.fault();
  const auto value = static_cast<std::uintptr_t>(module);
  if (!session_.ledger.Closed(Resource::Module, value, "FreeLibrary")) {
    return Fail(value == 0 ? kErrorInvalidHandle : kErrorModNotFound);
  }
  const auto found = std::find_if(modules_.begin(), modules_.end(),
                                  [&](const auto& entry) { return entry.second.handle == module; });
  if (--found->second.loads == 0) modules_.erase(found);
  return fault == 0 ? 1 : Fail(fault);
}

DWORD SimulatedMessages::FormatMessageW(DWORD flags, const void* source, DWORD message_id,
                                        DWORD language_id, LPWSTR buffer, DWORD size,
                                        void* arguments) {
  const Call call = session_.Begin("FormatMessageW", ToText(static_cast<std::int64_t>(message_id)));
  if (const DWORD fault = call.fault()) return Fail(fault, DWORD{0});
  const bool allocates = (flags & kFormatMessageAllocateBuffer) != 0;
  if (buffer == nullptr) return Fail(kErrorInvalidParameter, DWORD{0});
  if (allocates) *reinterpret_cast<LPWSTR*>(buffer) = nullptr;
  TextView text;
  if (const DWORD error = FindText(flags, source, message_id, language_id, text)) {
    return Fail(error, DWORD{0});
  }
  const bool has_array = (flags & kFormatMessageArgumentArray) != 0;
  std::optional<Text> composed =
      Compose(text, (flags & kFormatMessageIgnoreInserts) != 0,
              has_array ? static_cast<const std::uintptr_t*>(arguments) : nullptr);
  if (!composed) return Fail(kErrorInvalidParameter, DWORD{0});
  if (const DWORD width = flags & kFormatMessageMaxWidthMask) *composed = Rewrap(*composed, width);
  const std::size_t length = composed->size();
  if (allocates) {
    auto* const block = static_cast<LPWSTR>(
        session_.AllocateLocal(std::max<std::size_t>(length + 1, size) * sizeof(WCHAR),
                               "FormatMessageW", std::to_string(message_id)));
    std::copy(composed->begin(), composed->end(), block);
    *reinterpret_cast<LPWSTR*>(buffer) = block;
  } else {
    if (length + 1 > size) return Fail(kErrorInsufficientBuffer, DWORD{0});
    std::copy_n(composed->c_str(), length + 1, buffer);
  }
  return static_cast<DWORD>(length);
}

HMODULE SimulatedMessages::Load(const Text& identity, std::shared_ptr<const MessageTables> messages,
                                TextView name) {
  auto found = modules_.find(identity);
  if (found == modules_.end()) {
    const HMODULE handle{session_.NewHandle()};
    found = modules_.emplace(identity, LoadedModule{handle, std::move(messages), 0}).first;
  }
  ++found->second.loads;
  session_.ledger.Opened(Resource::Module, static_cast<std::uintptr_t>(found->second.handle),
                         "LoadLibraryExW", ToUtf8(name));
  return found->second.handle;
}

const SimulatedMessages::LoadedModule* SimulatedMessages::FindModule(const void* source) const {
  for (const auto& [identity, module] : modules_) {
    if (static_cast<std::uintptr_t>(module.handle) == reinterpret_cast<std::uintptr_t>(source)) {
      return &module;
    }
  }
  return nullptr;
}

DWORD SimulatedMessages::FindText(DWORD flags, const void* source, DWORD message_id,
                                  DWORD language_id, TextView& text) const {
  if ((flags & kFormatMessageFromString) != 0) {
    if (source == nullptr ||
        (flags & (kFormatMessageFromHmodule | kFormatMessageFromSystem)) != 0) {
      return kErrorInvalidParameter;
    }
    text = static_cast<LPCWSTR>(source);
    return 0;
  }
  DWORD error = kErrorInvalidParameter;
  if ((flags & kFormatMessageFromHmodule) != 0) {
    const LoadedModule* const module = FindModule(source);
    if (module == nullptr) {
      // The null module is the program itself, which has no messages.
      if (source != nullptr) {
        session_.ledger.Misused(Resource::Module, reinterpret_cast<std::uintptr_t>(source),
                                "FormatMessageW");
      }
      error = kErrorResourceDataNotFound;
    } else {
      error = FindIn(*module->messages, message_id, language_id, text);
    }
  }
  if (error != 0 && (flags & kFormatMessageFromSystem) != 0) {
    const MessageTable& messages = session_.estate.system_messages();
    // The result of an interface's method that stands for a platform error has that one's text.
    const bool is_folded =
        (message_id & 0xFFFF0000) == 0x80070000 && !messages.contains(message_id);
    const auto found = messages.find(is_folded ? message_id & 0xFFFF : message_id);
    if (found == messages.end()) return kErrorMrMidNotFound;
    text = found->second;
    error = IsEnglish(language_id) ? 0 : kErrorResourceLangNotFound;
  }
  return error;
}

}  // namespace veldmark::simulated
