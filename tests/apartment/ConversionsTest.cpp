#include "apartment/Conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "apartment/BitsHelper.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

class Support : public ApartmentFixture {
 protected:
  FILETIME Stamp(WORD year, WORD month, WORD day, WORD hour, WORD milliseconds = 0) {
    const SYSTEMTIME parts{year, month, 0, day, hour, 0, 0, milliseconds};
    FILETIME stamp{};
    EXPECT_NE(platform.system.SystemTimeToFileTime(&parts, &stamp), 0);
    return stamp;
  }
};

Text TextOf(const Variant& buffer) { return ByteArrayToString(buffer.If<ByteArray>()->elements); }

TEST_F(Support, TextsAreReadOutOfPlatformMemory) {
  EXPECT_EQ(WideMultiSzToString(nullptr), u"");
  EXPECT_EQ(WideMultiSzToString(u"RpcSs\0Tcpip\0"), Text(u"RpcSs\0Tcpip", 11));
  const Text padded(u"ab  \0cd ", 8);
  EXPECT_EQ(TrimAtNul(padded), u"ab  ");
  EXPECT_EQ(TrimAtNulRight(padded), u"ab");
  EXPECT_EQ(TrimAtNulRight(u"  "), u"");
  EXPECT_EQ(ReadLongAt(nullptr), 0);
}

TEST_F(Support, TextsAreLaidOutForThePlatform) {
  EXPECT_EQ(TextOf(ApiStringBuffer(u"a\xD800")), Text(u"a\xD800\0", 3));
  EXPECT_EQ(TextOf(ApiServerName(u"\\\\SRV")), Text(u"\\\\SRV\0", 6));
  EXPECT_EQ(TextOf(ApiServerName(u"a\\\\b")), Text(u"a\\\\b\0", 5));
  EXPECT_EQ(TextOf(ApiServerName(u"")), Text(1, u'\0'));
  const Variant name = ApiServerName(u"SRV");
  EXPECT_EQ(TextView(BufferText(name)), u"\\\\SRV");
  EXPECT_THROW(BufferText(Variant(u"SRV")), AutomationError);

  LSA_UNICODE_STRING record{1, 1, nullptr};
  ByteArray bytes({9});
  const auto lengths = [&](const Text& text) {
    InitLsaString(record, text, bytes);
    return std::to_string(record.Length) + " of " + std::to_string(record.MaximumLength);
  };
  EXPECT_EQ(lengths(u""), "0 of 0");
  EXPECT_EQ(bytes, ByteArray({9}));
  EXPECT_EQ(lengths(u"Sé"), "4 of 6");
  EXPECT_EQ(TextView(record.Buffer, 2), u"Sé");
  EXPECT_EQ(bytes.elements.size(), 4u);
  EXPECT_EQ(lengths(Text(32767, u'x')), "65534 of 65534");
  EXPECT_EQ(ErrorOf([&] { lengths(Text(32768, u'x')); }), 6);
}

TEST_F(Support, PathsTakeTheirLongForm) {
  const std::tuple<TextView, TextView, TextView> cases[] = {
      {u"a\\\\?\\b", u"a\\\\?\\b", u"a\\\\?\\b\\"},
      {u"relative", u"\\\\?\\relative", u"\\\\?\\relative\\"},
      {u"\\\\", u"\\\\?\\UNC\\", u"\\\\?\\UNC\\"},
      {u"", u"\\\\?\\", u"\\\\?\\\\"}};
  for (const auto& [path, file, folder] : cases) {
    EXPECT_EQ(ApiFilePath(path), file);
    EXPECT_EQ(ApiFolderPath(path), folder);
  }
  EXPECT_EQ(StripTrailingBackslash(u"C:\\a\\\\"), u"C:\\a\\");
  EXPECT_EQ(StripTrailingBackslash(u""), u"");
}

TEST_F(Support, TimeStampsBecomeDates) {
  EXPECT_EQ(FileTimeToDate(Stamp(2026, 11, 22, 18, 999), false), MakeDate(2026, 11, 22, 18));
  EXPECT_EQ(FileTimeToDate(Stamp(1700, 1, 1, 6), false).days, MakeDate(1700, 1, 1).days + 0.25);
  EXPECT_EQ(FileTimeToDate(Stamp(10000, 1, 1, 0), false).days, 0);
  EXPECT_EQ(FileTimeToDate({0xFFFFFFFF, 0xFFFFFFFF}, false).days, 0);
  EXPECT_EQ(FileTimeToDate({0xFFFFFFFF, 0xFFFFFFFF}, true).days, 0);

  EXPECT_EQ(UnixTimeToDate(-2147483647 - 1).days, 25569 - 2147483648.0 / 86400);
}

TEST_F(Support, UniversalTimeFollowsThePartOfTheYear) {
  const Date utc = MakeDate(2026, 11, 22, 3, 30);
  const std::pair<DWORD, Date> cases[] = {{kTimeZoneIdInvalid, {}},
                                          {kTimeZoneIdUnknown, {}},
                                          {kTimeZoneIdStandard, MakeDate(2026, 11, 21, 22, 20)},
                                          {kTimeZoneIdDaylight, MakeDate(2026, 11, 21, 23, 30)}};
  for (const auto& [part, local] : cases) {
    SetZone(300, 10, -60, part);
    EXPECT_EQ(ConvertUtcToLocal(utc), local) << part;
  }
  SetZone(300, 0, 0, kTimeZoneIdStandard);
  EXPECT_EQ(ConvertUtcToLocal(utc), MakeDate(2026, 11, 21, 22, 30));
  EXPECT_EQ(ConvertUtcToLocal(MakeDate(1899, 12, 30)), MakeDate(1899, 12, 29, 19));
  EXPECT_EQ(ConvertUtcToLocal({-657434}), Date{});  // leaves the calendar
}

TEST_F(Support, KeysAreSpelledInBytesAndIndexesInDigits) {
  EXPECT_EQ(GetCollectionKey(u"Ab"), u"65-0-98-0-");
  EXPECT_EQ(GetCollectionKey(u"\x20AC\xFFFF"), u"172-32-255-255-");
  Swallow([] { Raise(5); });
  EXPECT_TRUE(IsIndexKey(u"12"));
  EXPECT_EQ(Err().Number(), 0);
  for (const TextView text : {u"12a", u"1.5", u"-1", u" 1", u"\u0661"}) {
    EXPECT_FALSE(IsIndexKey(text));
  }
}

TEST_F(Support, ErrorTextsComeOnOneLineFromTheRightTable) {
  estate().AddSystemMessage(4001, u"First line.  \r\nSecond.\r\n\r\n");
  estate().AddSystemMessage(4002, u"%1 and %2 but %10 \r\nof %1");
  estate().AddSystemMessage(4003, u"Blanks behind   ");
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

TEST(BitsHelper, HighWordsOfLongsCountBy65535) {
  EXPECT_EQ(HiWordOfLong(0x0005FFFA), 6) << "its words add up to 65535";
  EXPECT_EQ(HiWordOfLong(0x0005FFF9), 5);
  EXPECT_EQ(HiWordOfLong(kLeast), -32769);
}

TEST(BitsHelper, BitThirtyOneIsTestedBySignAndClearedByMagnitude) {
  const auto cleared = [](std::int32_t value, std::int16_t bit) {
    ClearBit(value, bit);
    return value;
  };
  EXPECT_TRUE(TestBit(kLeast, 31));
  EXPECT_FALSE(TestBit(kMost, 31));
  EXPECT_FALSE(TestBit(-1, -1));
  EXPECT_EQ(ErrorOf([] { TestBit(1, 32); }), 6);
  EXPECT_EQ(cleared(5, 2), 1);
  EXPECT_EQ(cleared(5, 1), 5);
  EXPECT_EQ(cleared(-1, 0), -2);
  EXPECT_EQ(cleared(static_cast<std::int32_t>(0x80000001u), 31), kMost);
  EXPECT_EQ(ErrorOf([&] { cleared(kLeast, 31); }), 6);
}

TEST(BitsHelper, UnsignedValuesCrossTheSignedType) {
  EXPECT_EQ(UnsignedLongToText(-1), u"4294967295");
  EXPECT_EQ(UnsignedLongToDouble(-1), 4294967295.0);
  const std::pair<double, std::int32_t> reduced[] = {
      {2147483647, kMost}, {2147483647.5, kLeast}, {4294967295.75, 0}};
  for (const auto& [value, result] : reduced) {
    EXPECT_EQ(DoubleToUnsignedLong(value), result) << value;
  }
  for (const double wrong : {-0.25, HUGE_VAL, std::nan("")}) {
    EXPECT_EQ(ErrorOf([&] { DoubleToUnsignedLong(wrong); }), 6) << wrong;
  }
  // A value, a number of bits; the result, the error.
  const std::tuple<std::int32_t, std::int32_t, std::int32_t, std::int32_t> shifts[] = {
      {1, 30, 1 << 30, 0}, {1, 31, 0, 6}, {-1, 31, kLeast, 0}, {3, -1, 2, 0},         {5, -1, 2, 0},
      {1, -2000, 0, 0},    {0, 5, 0, 0},  {0, 2000, 0, 6},     {kLeast, 0, kLeast, 0}};
  for (const auto& [value, bits, shifted, error] : shifts) {
    std::int32_t result = 0;
    EXPECT_EQ(ErrorOf([&] { result = ShiftLeft(value, bits); }), error) << bits;
    EXPECT_EQ(result, shifted) << value << " by " << bits;
  }
}

}  // namespace
}  // namespace veldmark
