#include "apartment/Conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "apartment/BitsHelper.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

class Support : public ApartmentFixture {
 protected:
  // A block that the platform gives away, holding a text.
  const char16_t* TaskText(TextView text) {
    auto* block = static_cast<char16_t*>(
        platform.system.CoTaskMemAlloc((text.size() + 1) * sizeof(char16_t)));
    text.copy(block, text.size());
    block[text.size()] = 0;
    return block;
  }

  FILETIME Stamp(WORD year, WORD month, WORD day, WORD hour, WORD milliseconds = 0) {
    const SYSTEMTIME parts{year, month, 0, day, hour, 0, 0, milliseconds};
    FILETIME stamp{};
    EXPECT_NE(platform.system.SystemTimeToFileTime(&parts, &stamp), 0);
    return stamp;
  }
};

Text TextOf(const Variant& buffer) { return ByteArrayToString(buffer.If<ByteArray>()->elements); }

TEST_F(Support, TextsAreReadOutOfPlatformMemory) {
  EXPECT_EQ(WidePtrToString(nullptr, true), u"");
  EXPECT_EQ(WidePtrToString(u"share", false), u"share");
  EXPECT_EQ(WidePtrToString(TaskText(u"share"), true), u"share");
  EXPECT_EQ(WidePtrToString(TaskText(u""), true), u"");  // given back all the same: the ledger

  EXPECT_EQ(WideMultiSzToString(nullptr), u"");
  EXPECT_EQ(WideMultiSzToString(u"RpcSs\0Tcpip\0"), Text(u"RpcSs\0Tcpip", 11));

  EXPECT_EQ(AnsiBufferToString("caf\xE9 \x80x", 6), u"café €");
  EXPECT_EQ(AnsiBufferToString("abc", 0), u"");
  EXPECT_EQ(AnsiBufferToString(nullptr, 5), u"");

  const std::uint8_t bytes[] = {0x41, 0, 0, 0xD8, 0x42};
  EXPECT_EQ(ByteArrayToString(bytes), Text(u"A\xD800"));

  const Text padded(u"ab  \0cd ", 8);
  EXPECT_EQ(TrimAtNul(padded), u"ab  ");
  EXPECT_EQ(TrimAtNulRight(padded), u"ab");
  EXPECT_EQ(TrimAtNulRight(u"  "), u"");

  const std::uint8_t record[] = {0, 0x78, 0x56, 0x34, 0x92};
  EXPECT_EQ(ReadLongAt(record + 1), static_cast<std::int32_t>(0x92345678u));
  EXPECT_EQ(ReadLongAt(nullptr), 0);
}

TEST_F(Support, TextsAreLaidOutForThePlatform) {
  EXPECT_EQ(TextOf(ApiStringBuffer(u"a\xD800")), Text(u"a\xD800\0", 3));
  EXPECT_EQ(TextOf(ApiServerName(u"SRV")), Text(u"\\\\SRV\0", 6));
  EXPECT_EQ(TextOf(ApiServerName(u"\\\\SRV")), Text(u"\\\\SRV\0", 6));
  EXPECT_EQ(TextOf(ApiServerName(u"a\\\\b")), Text(u"a\\\\b\0", 5));
  EXPECT_EQ(TextOf(ApiServerName(u"")), Text(1, u'\0'));
  const Variant name = ApiServerName(u"SRV");
  EXPECT_EQ(TextView(BufferText(name)), u"\\\\SRV");
  EXPECT_THROW(BufferText(Variant(u"SRV")), AutomationError);

  LSA_UNICODE_STRING record{1, 1, nullptr};
  ByteArray bytes({9});
  InitLsaString(record, u"", bytes);
  EXPECT_EQ(record.Length + record.MaximumLength, 0);
  EXPECT_EQ(bytes.elements.size(), 1u);
  InitLsaString(record, u"Sé", bytes);
  EXPECT_EQ(record.Length, 4);
  EXPECT_EQ(record.MaximumLength, 6);
  EXPECT_EQ(TextView(record.Buffer, 2), u"Sé");
  EXPECT_EQ(bytes.elements.size(), 4u);
  InitLsaString(record, Text(32767, u'x'), bytes);
  EXPECT_EQ(record.Length, 65534);
  EXPECT_GE(record.MaximumLength, record.Length);
  EXPECT_THROW(InitLsaString(record, Text(32768, u'x'), bytes), AutomationError);
}

TEST_F(Support, PathsTakeTheirLongForm) {
  const struct {
    TextView path, file, folder;
  } cases[] = {{u"\\\\srv\\share\\f", u"\\\\?\\UNC\\srv\\share\\f", u"\\\\?\\UNC\\srv\\share\\f\\"},
               {u"\\\\?\\C:\\f", u"\\\\?\\C:\\f", u"\\\\?\\C:\\f\\"},
               {u"a\\\\?\\b", u"a\\\\?\\b", u"a\\\\?\\b\\"},
               {u"C:\\", u"\\\\?\\C:\\", u"\\\\?\\C:\\"},
               {u"relative", u"\\\\?\\relative", u"\\\\?\\relative\\"},
               {u"\\\\", u"\\\\?\\UNC\\", u"\\\\?\\UNC\\"},
               {u"", u"\\\\?\\", u"\\\\?\\\\"}};
  for (const auto& c : cases) {
    EXPECT_EQ(ApiFilePath(c.path), c.file);
    EXPECT_EQ(ApiFolderPath(c.path), c.folder);
  }
  EXPECT_EQ(StripTrailingBackslash(u"C:\\a\\\\"), u"C:\\a\\");
  EXPECT_EQ(StripTrailingBackslash(u""), u"");
}

TEST_F(Support, TimeStampsBecomeDates) {
  SetZone(300, 0, -60, kTimeZoneIdStandard);
  EXPECT_EQ(FileTimeToDate(Stamp(2026, 11, 22, 18, 999), false), MakeDate(2026, 11, 22, 18));
  EXPECT_EQ(FileTimeToDate(Stamp(2026, 11, 22, 18), true), MakeDate(2026, 11, 22, 13));
  EXPECT_EQ(FileTimeToDate(Stamp(1700, 1, 1, 6), false).days, MakeDate(1700, 1, 1).days + 0.25);
  EXPECT_EQ(FileTimeToDate(Stamp(10000, 1, 1, 0), false).days, 0);
  EXPECT_EQ(FileTimeToDate({0xFFFFFFFF, 0xFFFFFFFF}, false).days, 0);
  EXPECT_EQ(FileTimeToDate({0xFFFFFFFF, 0xFFFFFFFF}, true).days, 0);

  EXPECT_EQ(UnixTimeToDate(0).days, 0);
  EXPECT_EQ(UnixTimeToDate(-86400).days, 25568);
  EXPECT_EQ(UnixTimeToDate(-2147483647 - 1).days, 25569 - 2147483648.0 / 86400);

  EXPECT_EQ(UTCDateToLocalDate(MakeDate(2026, 11, 22, 3)), MakeDate(2026, 11, 21, 22));
}

TEST_F(Support, UniversalTimeFollowsThePartOfTheYear) {
  const Date utc = MakeDate(2026, 11, 22, 3, 30);
  const struct {
    DWORD part;
    Date local;
  } cases[] = {{kTimeZoneIdInvalid, {}},
               {kTimeZoneIdUnknown, {}},
               {kTimeZoneIdStandard, MakeDate(2026, 11, 21, 22, 20)},
               {kTimeZoneIdDaylight, MakeDate(2026, 11, 21, 23, 30)}};
  for (const auto& c : cases) {
    SetZone(300, 10, -60, c.part);
    EXPECT_EQ(ConvertUtcToLocal(utc), c.local) << c.part;
  }
  SetZone(300, 0, 0, kTimeZoneIdStandard);
  EXPECT_EQ(ConvertUtcToLocal(utc), MakeDate(2026, 11, 21, 22, 30));
  EXPECT_EQ(ConvertUtcToLocal(MakeDate(1899, 12, 30)), MakeDate(1899, 12, 29, 19));
  EXPECT_EQ(ConvertUtcToLocal({-657434}), Date{});  // leaves the calendar
}

TEST_F(Support, KeysAreSpelledInBytesAndIndexesInDigits) {
  EXPECT_EQ(GetCollectionKey(u"Ab"), u"65-0-98-0-");
  EXPECT_EQ(GetCollectionKey(u"\x20AC\xFFFF"), u"172-32-255-255-");
  EXPECT_EQ(GetCollectionKey(u""), u"");
  Swallow([] { Raise(5); });
  EXPECT_TRUE(IsIndexKey(u"12"));
  EXPECT_EQ(Err().Number(), 0);
  EXPECT_TRUE(IsIndexKey(u""));
  for (const TextView text : {u"12a", u"1.5", u"-1", u" 1", u"\u0661"}) {
    EXPECT_FALSE(IsIndexKey(text));
  }
}

TEST_F(Support, ErrorTextsComeOnOneLineFromTheRightTable) {
  estate().AddSystemMessage(4001, u"First line.  \r\nSecond.\r\n\r\n");
  estate().AddSystemMessage(4002, u"%1 and %2 but %10 \r\nof %1");
  estate().AddSystemMessage(4003, u"Blanks behind   ");
  EXPECT_EQ(GetAPIErrorText(5), u"Access is denied.");
  EXPECT_EQ(GetAPIErrorText(4001), u"First line.   Second. ");
  EXPECT_EQ(GetAPIErrorText(4003), u"Blanks behind");
  EXPECT_EQ(GetAPIErrorText(654321), u"");
  EXPECT_EQ(GetAPIErrorText(4002), u"%1 and %2 but %10  of %1");
  EXPECT_EQ(GetAPIErrorText(4002, TextArray({u"A", u"(%1)"})), u"A and (%1) but A0  of A");
  EXPECT_EQ(GetAPIErrorText(4002, TextArray({u"A"}, 1)), u"%1 and A but %10  of %1");
  EXPECT_EQ(GetAPIErrorText(4002, VariantArray({Variant(7)})), u"7 and %2 but 70  of 7");
  EXPECT_THROW(GetAPIErrorText(5, Variant(u"A")), AutomationError);
  EXPECT_EQ(Err().Number(), 13);

  for (const auto& [number, loads] : {std::pair{2099, 0u}, {2100, 1u}, {2999, 1u}, {3000, 0u}}) {
    journal().Clear();
    GetAPIErrorText(number);
    EXPECT_EQ(journal().Count("LoadLibraryExW"), loads) << number;
  }
  estate().AddModule(u"netmsg.dll", {{2221, u"Nobody of that name.\r\n"}});
  EXPECT_EQ(GetAPIErrorText(2221), u"Nobody of that name.");
  estate().RemoveModule(u"netmsg.dll");
  estate().AddSystemMessage(2221, u"From the system.\r\n");
  EXPECT_EQ(GetAPIErrorText(2221), u"From the system.");
}

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(BitsHelper, WordsComeOutWithTheirSignsAndTheirQuirk) {
  // The words of 0x0005FFFA add up to 65535.
  const struct {
    std::uint32_t value;
    std::int32_t high_of_long, low_of_long, high, low;
  } cases[] = {{0x0001FFFF, 2, -1, 1, -1},
               {0x0005FFFA, 6, -6, 5, -6},
               {0x0005FFF9, 5, -7, 5, -7},
               {0x00058000, 5, -32768, 5, -32768},
               {0x7FFF7FFF, 32767, 32767, 32767, 32767},
               {0xFFFFFFFF, -1, -1, -1, -1},
               {0x80000000, -32769, 0, -32768, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    const auto value = static_cast<std::int32_t>(c.value);
    EXPECT_EQ(HiWordOfLong(value), c.high_of_long);
    EXPECT_EQ(LoWordOfLong(value), c.low_of_long);
    EXPECT_EQ(GetHiWord(value), c.high);
    EXPECT_EQ(GetLoWord(value), c.low);
  }
}

TEST(BitsHelper, BitThirtyOneIsTestedBySignAndClearedByMagnitude) {
  const auto cleared = [](std::int32_t value, std::int16_t bit) {
    ClearBit(value, bit);
    return value;
  };
  EXPECT_TRUE(TestBit(kLeast, 31));
  EXPECT_FALSE(TestBit(kMost, 31));
  EXPECT_TRUE(TestBit(0x40000000, 30));
  EXPECT_FALSE(TestBit(-1, -1));
  EXPECT_EQ(ErrorOf([] { TestBit(1, 32); }), 6);
  EXPECT_EQ(ErrorOf([] { TestBit(1, 32767); }), 6);
  EXPECT_EQ(cleared(5, 2), 1);
  EXPECT_EQ(cleared(5, 1), 5);
  EXPECT_EQ(cleared(-1, 0), -2);
  EXPECT_EQ(cleared(static_cast<std::int32_t>(0x80000001u), 31), kMost);
  EXPECT_EQ(ErrorOf([&] { cleared(kLeast, 31); }), 6);
}

TEST(BitsHelper, UnsignedValuesCrossTheSignedType) {
  EXPECT_EQ(UnsignedLongToText(-1), u"4294967295");
  EXPECT_EQ(UnsignedLongToText(0), u"0");
  EXPECT_EQ(UnsignedLongToDouble(-1), 4294967295.0);
  EXPECT_EQ(UnsignedLongToDouble(kMost), 2147483647.0);
  const struct {
    double value;
    std::int32_t result;
  } reduced[] = {{0.5, 0},
                 {1.5, 2},
                 {2147483647, kMost},
                 {2147483647.5, kLeast},
                 {2147483648, kLeast},
                 {4294967295, -1},
                 {4294967295.75, 0}};
  for (const auto& c : reduced) EXPECT_EQ(DoubleToUnsignedLong(c.value), c.result) << c.value;
  for (const double wrong : {-0.25, 4294967296.0, HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(ErrorOf([&] { DoubleToUnsignedLong(wrong); }), 6) << wrong;
  }
  const struct {
    std::int32_t value, bit, result, error;
  } shifts[] = {{1, 30, 1 << 30, 0}, {1, 31, 0, 6},   {-1, 31, kLeast, 0},
                {3, -1, 2, 0},       {5, -1, 2, 0},   {1, -2000, 0, 0},
                {0, 5, 0, 0},        {0, 2000, 0, 6}, {kLeast, 0, kLeast, 0}};
  for (const auto& c : shifts) {
    std::int32_t result = 0;
    EXPECT_EQ(ErrorOf([&] { result = ShiftLeft(c.value, c.bit); }), c.error) << c.bit;
    EXPECT_EQ(result, c.result) << c.value << " by " << c.bit;
  }
}

}  // namespace
}  // namespace veldmark
