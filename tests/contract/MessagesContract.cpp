#include <array>
#include <string>
#include <tuple>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

constexpr DWORD kFromSystem =
    kFormatMessageAllocateBuffer | kFormatMessageIgnoreInserts | kFormatMessageFromSystem;

class MessageTexts : public Contract {
 protected:
  // The text of a message; "!" and the code if there is none.
  std::string Format(DWORD flags, const void* source, DWORD number, DWORD language = 0x400,
                     void* arguments = nullptr) {
    LocalMemory<WCHAR> text(platform_.system);
    WCHAR* memory = text.Get();
    const DWORD length = platform_.messages.FormatMessageW(
        flags | kFormatMessageAllocateBuffer, source, number, language,
        reinterpret_cast<LPWSTR>(&memory), 0, arguments);
    const DWORD error = LastPlatformError();
    text.Reset(memory);
    if (length == 0 && !text) return "!" + std::to_string(error);
    EXPECT_EQ(text.Get()[length], u'\0');
    return ToUtf8({text.Get(), length});
  }
  Module Load(const Text& file, DWORD flags = kLoadLibraryAsDatafile) {
    return Module(platform_.messages,
                  platform_.messages.LoadLibraryExW(file.c_str(), nullptr, flags));
  }
};

TEST_F(MessageTexts, OfTheSystemEndInALineEnd) {
  for (const DWORD number : {2u, 5u, 53u, 123u, 1332u}) {
    const std::string text = Format(kFromSystem, nullptr, number);
    ASSERT_GT(text.size(), 2u);
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n") << number;
  }
  EXPECT_EQ(Format(kFromSystem, nullptr, 0x12345678), "!317");
  EXPECT_EQ(Format(kFormatMessageIgnoreInserts, nullptr, 5), "!87") << "no source";
  WCHAR buffer[4];
  EXPECT_EQ(
      Code(platform_.messages.FormatMessageW(kFormatMessageFromSystem | kFormatMessageIgnoreInserts,
                                             nullptr, 5, 0, buffer, 4, nullptr)),
      kErrorInsufficientBuffer);
}

TEST_F(MessageTexts, AreThePublishedOnesOfAModuleBeforeTheSystems) {
  if (const char* why = WhyNot(Trait::PublishedTexts)) GTEST_SKIP() << why;
  EXPECT_EQ(Format(kFromSystem, nullptr, 5), "Access is denied.\r\n");
  EXPECT_EQ(Format(kFromSystem, nullptr, 2, 0), "The system cannot find the file specified.\r\n");
  EXPECT_EQ(Format(kFromSystem, nullptr, 193, 0x409), "%1 is not a valid Win32 application.\r\n");
  EXPECT_EQ(Format(kFromSystem, nullptr, 0x800401F3), "Invalid class string\r\n");
  const Module module = Load(u"netmsg.dll");
  ASSERT_TRUE(module);
  const auto* const source = reinterpret_cast<const void*>(module.Get());
  constexpr DWORD kBoth = kFromSystem | kFormatMessageFromHmodule;
  EXPECT_EQ(Format(kBoth, source, 2221), "The user name could not be found.\r\n");
  EXPECT_EQ(Format(kBoth, source, 5), "Access is denied.\r\n");
  EXPECT_EQ(Format(kFormatMessageFromHmodule, source, 5), "!317");
}

TEST_F(MessageTexts, PutInsertsInOrLeaveThem) {
  const std::uintptr_t arguments[] = {reinterpret_cast<std::uintptr_t>(u"A"),
                                      reinterpret_cast<std::uintptr_t>(u"Bcd"), 42, 255};
  const std::tuple<const char16_t*, const char*, const char*> rows[] = {
      {u"%1-%2%%%n%r%tX%0Y", "A-Bcd%\r\n\r\tX", "%1-%2%%\r\n\r\tX"},
      {u"a %1!5s!|%1!-3s!|%2!.2s!", "a     A|A  |Bc", "a %1!5s!|%1!-3s!|%2!.2s!"},
      {u"%3!d! %3!u! %4!X! %4!04x!", "42 42 FF 00ff", "%3!d! %3!u! %4!X! %4!04x!"},
      {u"x\ny\r\nz", "x\r\ny\r\nz", "x\r\ny\r\nz"},
      {u"a%!b%.c% d", "a!b.c d", "a%!b%.c% d"}};
  for (const auto& [text, filled, kept] : rows) {
    EXPECT_EQ(Format(kFormatMessageFromString | kFormatMessageArgumentArray, text, 0, 0,
                     const_cast<std::uintptr_t*>(arguments)),
              filled);
    EXPECT_EQ(Format(kFormatMessageFromString | kFormatMessageIgnoreInserts, text, 0, 0), kept);
  }
}

TEST_F(MessageTexts, OfAFileAreFoundByLanguageWithInsertsInOrLeft) {
  constexpr DWORD kFilled = kFormatMessageFromHmodule | kFormatMessageArgumentArray;
  constexpr DWORD kLeft = kFormatMessageFromHmodule | kFormatMessageIgnoreInserts;
  const Module module = Load(world_->event_texts());
  ASSERT_TRUE(module) << LastPlatformError();
  const auto* const source = reinterpret_cast<const void*>(module.Get());
  // What "%99!*.*s!" takes for width, precision and text lies behind the 99 fields.
  std::array<std::uintptr_t, 101> arguments{};
  arguments[0] = reinterpret_cast<std::uintptr_t>(u"A");
  arguments[1] = reinterpret_cast<std::uintptr_t>(u"50% %1 %%1");
  const std::tuple<DWORD, DWORD, const char*, const char*> rows[] = {
      {1, 0, "Nobody but A knows 50% %1 %%1.\r\n", "Nobody but %1 knows %2.\r\n"},
      {1, 0x407, "Niemand kennt 50% %1 %%1, nur A.\r\n", "Niemand kennt %2, nur %1.\r\n"},
      {1, 0x40C, "!1815", "!1815"},
      {3, 0x409, "Network\r\n", "Network\r\n"},
      {3, 0x407, "Netzwerk\r\n", "Netzwerk\r\n"},
      {4, 0, "!317", "!317"}};
  for (const auto& [number, language, filled, left] : rows) {
    EXPECT_EQ(Format(kFilled, source, number, language, arguments.data()), filled);
    EXPECT_EQ(Format(kLeft, source, number, language), left) << number;
  }
  EXPECT_EQ(Format(kLeft, source, 2, 0), "[%99!*.*s!][%100][%5]");
  EXPECT_EQ(Format(kFilled, source, 2, 0, arguments.data()), "[][(null)0][(null)]");
  EXPECT_TRUE(Load(world_->event_texts()));
  EXPECT_EQ(Format(kLeft, source, 3, 0), "Network\r\n") << "each load is given back by itself";
}

TEST_F(MessageTexts, NeedAModuleThatIsThere) {
  for (const char16_t* name : {u"no-such.dll", u"C:\\no such\\no-such.dll", u"C:\\no-such.dll"}) {
    EXPECT_EQ(Code(Load(name)), kErrorFileNotFound) << ToUtf8(name);
  }
  Touch(u"\\text", "no module, but long enough for the head of one, which takes sixty-four bytes");
  EXPECT_EQ(Code(Load(In(u"\\text"))), 193u);
  EXPECT_EQ(Code(Load(u"no-such.dll", 0)), kErrorModNotFound);
  EXPECT_EQ(platform_.system.LocalFree(nullptr), nullptr);
}

}  // namespace
}  // namespace veldmark
