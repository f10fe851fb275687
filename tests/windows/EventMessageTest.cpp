// Before the platform's macros of their enumerators' names.
#include "eventlog/CEventLog.h"
#include "eventlog/CEventLogEntry.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/windows/WindowsPlatform.h"
#include "windows/BuiltServer.h"

namespace {

const ::HKEY kLocalMachine = HKEY_LOCAL_MACHINE;

}  // namespace

namespace veldmark {
namespace {

/// A source of this computer's System log, registered while this lives. Its file stands without a
/// drive: Wine has no administrative shares.
class RealMessages : public testing::Test {
 protected:
  RealMessages() {
    ::SetCurrentDirectoryW(L"Z:\\");
    const std::wstring file = WindowsPath(VELDMARK_BINARY_DIR, L"event_texts.dll").substr(2);
    const auto size = static_cast<::DWORD>((file.size() + 1) * sizeof(wchar_t));
    for (const wchar_t* name :
         {L"EventMessageFile", L"ParameterMessageFile", L"CategoryMessageFile"}) {
      EXPECT_EQ(::RegSetKeyValueW(kLocalMachine, kKey, name, REG_EXPAND_SZ, file.c_str(), size), 0);
    }
    Apartment::Start(WindowsPlatform());
  }
  ~RealMessages() override {
    Apartment::End();
    ::RegDeleteKeyW(kLocalMachine, kKey);
  }

  static Ref<CEventLogEntry> Entry(std::int32_t id, std::vector<Text> strings = {}) {
    auto entry = Make<CEventLogEntry>();
    EventFields fields;
    fields.event_id = id;
    fields.category = 3;
    fields.source_name = u"Veldmark2 test";
    fields.origin = Make<EventOrigin>(u"System", Engine().ComputerName());
    fields.strings = std::move(strings);
    entry->Fill(std::move(fields));
    return entry;
  }
  static bool IsMapped(HMODULE module) {
    ::MEMORY_BASIC_INFORMATION memory{};
    const auto base = static_cast<std::uintptr_t>(module) & ~std::uintptr_t{0xFFFF};
    ::VirtualQuery(reinterpret_cast<const void*>(base), &memory, sizeof memory);
    return memory.State != MEM_FREE;
  }

  static constexpr const wchar_t* kKey =
      L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\System\\Veldmark2 test";
};

TEST_F(RealMessages, AreReadFromARealFileThatStaysUntilTheLastLogEnds) {
  auto log = Make<CEventLog>();
  EXPECT_EQ(Entry(1, {u"A", u"B"})->EventMessage(), u"Nobody but A knows B.");
  EXPECT_EQ(Entry(1, {u"A", u"%%3"})->EventMessage(), u"Nobody but A knows Network\r\n.");
  EXPECT_EQ(Entry(1)->EventMessageRaw(), u"Nobody but %1 knows %2.");
  // Its width is a string's address, too large for any buffer.
  EXPECT_EQ(Entry(2, std::vector<Text>(120, u"x"))->EventMessage(),
            GetAPIErrorText(static_cast<std::int32_t>(kErrorInsufficientBuffer)));
  EXPECT_EQ(Entry(1)->EventCategoryDescription(), u"Network");
  const std::vector<Module>& files = Apartment::Current().message_files;
  ASSERT_EQ(files.size(), 1u) << "event and parameter file are one";
  const HMODULE module = files.front().Get();
  EXPECT_TRUE(IsMapped(module));
  log = nullptr;
  EXPECT_TRUE(files.empty());
  EXPECT_FALSE(IsMapped(module));
}

}  // namespace
}  // namespace veldmark
