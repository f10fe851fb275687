// 12,000 event messages of 20 sources asked of entries, beside a loop over plain records that makes
// the calls that a message takes of modules that are loaded once, and keeps the texts:
//
//   bench_messages.exe SERVER.dll
//
// Built over the libraries that the server is made of: Wine's logs hand out no entries. Takes
// event_texts.dll from beside the server, copies it to a file a source, and registers the sources
// while it runs.

// Before the platform's macros of their enumerators' names.
#include "apartment/CSupport.h"
#include "eventlog/CEventLogEntry.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Measure.h"
#include "apartment/Apartment.h"
#include "platform/windows/WindowsPlatform.h"

namespace {

using namespace bench;

constexpr int kSources = 20;
constexpr int kMessages = 12'000;
constexpr DWORD kEvent = 1;
constexpr DWORD kBufferLength = 65536;
constexpr wchar_t kLog[] = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\";

// The server's header has values of the same names.
const ::HKEY kLocalMachine = reinterpret_cast<::HKEY>(static_cast<LONG_PTR>(-2147483646));
constexpr DWORD kExpandableText = 2;

std::wstring SourceName(int number) { return L"Veldmark2 bench " + std::to_wstring(number); }

// 20 sources of this computer's System log with a file each, while this lives. The paths have no
// drive: Wine has no administrative shares.
class Sources {
 public:
  explicit Sources(const std::wstring& texts) {
    wchar_t temporary[MAX_PATH];
    GetTempPathW(MAX_PATH, temporary);
    folder_ = std::wstring(temporary) + L"Veldmark2 bench messages";
    CreateDirectoryW(folder_.c_str(), nullptr);
    SetCurrentDirectoryW(folder_.substr(0, 3).c_str());
    for (int i = 0; i < kSources; ++i) {
      const std::wstring file = File(i);
      Require(CopyFileW(texts.c_str(), file.c_str(), FALSE), "CopyFileW");
      ::HKEY key = nullptr;
      Require(RegCreateKeyExW(kLocalMachine, (kLog + SourceName(i)).c_str(), 0, nullptr, 0,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr) == 0,
              "RegCreateKeyExW");
      RegSetValueExW(key, L"EventMessageFile", 0, kExpandableText,
                     reinterpret_cast<const BYTE*>(file.c_str()),
                     static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t)));
      RegCloseKey(key);
    }
  }
  Sources(const Sources&) = delete;
  Sources& operator=(const Sources&) = delete;
  ~Sources() {
    for (int i = 0; i < kSources; ++i) {
      RegDeleteKeyW(kLocalMachine, (kLog + SourceName(i)).c_str());
      DeleteFileW(File(i).c_str());
    }
    RemoveDirectoryW(folder_.c_str());
  }

  std::wstring File(int number) const {
    return folder_.substr(2) + L"\\" + std::to_wstring(number) + L".dll";
  }

 private:
  static void Require(bool done, const char* what) { Check(done ? S_OK : E_FAIL, what); }

  std::wstring folder_;
};

// The files of the sources, loaded once.
class BareModules {
 public:
  explicit BareModules(const Sources& sources) {
    for (int i = 0; i < kSources; ++i) {
      modules_[i] = LoadLibraryExW(sources.File(i).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    }
  }
  BareModules(const BareModules&) = delete;
  BareModules& operator=(const BareModules&) = delete;
  ~BareModules() {
    for (const HMODULE module : modules_) FreeLibrary(module);
  }

  HMODULE module(int message) const { return modules_[message % kSources]; }

 private:
  HMODULE modules_[kSources] = {};
};

// A record, its texts kept.
struct Plain {
  void Read(wchar_t* buffer, bool with_raw) {
    static const wchar_t* inserts[99];
    for (std::size_t i = 0; i < strings.size(); ++i) inserts[i] = strings[i].c_str();
    message.assign(
        buffer, FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ARGUMENT_ARRAY, module,
                               kEvent, 0, buffer, kBufferLength,
                               reinterpret_cast<va_list*>(const_cast<wchar_t**>(inserts))));
    if (!with_raw) return;
    raw.assign(buffer, FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      module, kEvent, 0, buffer, kBufferLength, nullptr));
  }

  HMODULE module;
  std::vector<std::wstring> strings = {L"the print spooler", L"the page"};
  std::wstring message{};
  std::wstring raw{};
};

std::vector<Plain> Records(const BareModules& modules, int count) {
  std::vector<Plain> records;
  for (int i = 0; i < count; ++i) records.push_back({modules.module(i)});
  return records;
}

class Library {
 public:
  Library() { veldmark::Apartment::Start(veldmark::WindowsPlatform()); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { veldmark::Apartment::End(); }

  static std::vector<veldmark::Ref<veldmark::CEventLogEntry>> Entries(int count) {
    const auto origin =
        veldmark::Make<veldmark::EventOrigin>(u"System", veldmark::Engine().ComputerName());
    std::vector<veldmark::Ref<veldmark::CEventLogEntry>> entries;
    for (int i = 0; i < count; ++i) {
      const std::wstring name = SourceName(i % kSources);
      veldmark::EventFields fields;
      fields.event_id = kEvent;
      fields.source_name.assign(name.begin(), name.end());
      fields.origin = origin;
      fields.strings = {u"the print spooler", u"the page"};
      entries.push_back(veldmark::Make<veldmark::CEventLogEntry>());
      entries.back()->Fill(std::move(fields));
    }
    return entries;
  }
  static std::size_t LoadedFiles() { return veldmark::Apartment::Current().message_files.size(); }
};

bool Agree(const BareModules& modules, wchar_t* buffer) {
  auto records = Records(modules, kSources);
  const auto entries = Library::Entries(kSources);
  for (int i = 0; i < kSources; ++i) {
    records[i].Read(buffer, false);
    std::wstring& bare = records[i].message;
    if (bare.ends_with(L"\r\n")) bare.resize(bare.size() - 2);
    const veldmark::Text ours = entries[i]->EventMessage();
    if (bare.empty() || std::wstring(ours.begin(), ours.end()) != bare) return false;
  }
  return true;
}

// Works on each of the items; keeps the best time of all such runs.
template <class Items, class Work>
void Run(double& best, Items items, Work&& work) {
  best = std::min(best, Best([&] { std::ranges::for_each(items, work); }, 1));
}

bool Measure(const std::wstring& texts) {
  const Sources sources(texts);
  const BareModules modules(sources);
  const Library library;
  std::vector<wchar_t> buffer(kBufferLength);
  if (!Agree(modules, buffer.data())) {
    std::printf("the two readings disagree\n");
    return false;
  }
  double one_call = 1e9;
  double both_calls = 1e9;
  double ours = 1e9;
  const auto bare = [&](bool with_raw) {
    return [&buffer, with_raw](Plain& record) { record.Read(buffer.data(), with_raw); };
  };
  // By turns, so that what disturbs the computer meets all of them.
  for (int i = 0; i < 3 * kRuns; ++i) {
    Run(one_call, Records(modules, kMessages), bare(false));
    Run(both_calls, Records(modules, kMessages), bare(true));
    Run(ours, Library::Entries(kMessages), [](const auto& entry) { entry->EventMessage(); });
  }
  if (Library::LoadedFiles() != kSources) {
    std::printf("%zu loads of %d files\n", Library::LoadedFiles(), kSources);
    return false;
  }
  Head();
  Row("12,000 event messages with their raw texts", ours * 1000, both_calls * 1000, "ms", 1.5);
  std::printf("(%.3f ms and %.2f times with one call a message, which gives no raw text)\n",
              one_call * 1000, ours / one_call);
  return true;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  const std::wstring server = argv[1];
  return Measure(server.substr(0, server.rfind(L'\\') + 1) + L"event_texts.dll") ? 0 : 1;
}
