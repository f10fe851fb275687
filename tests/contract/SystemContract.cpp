#include <cstring>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "automation/Text.h"
#include "contract/World.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"

namespace veldmark {
namespace {

class SystemCalls : public Contract {
 protected:
  System& system_ = platform_.system;
};

TEST_F(SystemCalls, GiveNamesAndTheSizeThatTheyNeed) {
  WCHAR name[300];
  DWORD needed = 0;
  EXPECT_EQ(Code(system_.GetUserNameW(name, &needed)), kErrorInsufficientBuffer);
  DWORD size = needed;
  ASSERT_TRUE(system_.GetUserNameW(name, &size));
  EXPECT_EQ(size, needed);
  EXPECT_EQ(system_.lstrlenW(name) + 1, static_cast<INT>(needed));

  needed = 0;
  EXPECT_EQ(Code(system_.GetComputerNameW(name, &needed)), kErrorBufferOverflow);
  size = needed;
  ASSERT_TRUE(system_.GetComputerNameW(name, &size));
  EXPECT_EQ(size + 1, needed) << "without the NUL";
  EXPECT_EQ(system_.lstrlenW(name), static_cast<INT>(size));
  EXPECT_EQ(system_.lstrlenW(nullptr), 0);
  EXPECT_FALSE(system_.ModuleFolder().empty());
  EXPECT_NE(system_.ModuleFolder().back(), u'\\');
}

TEST_F(SystemCalls, ConvertTimesThatExist) {
  const std::pair<SYSTEMTIME, std::int64_t> table[] = {
      {{1601, 1, 1, 1, 0, 0, 0, 1}, 10'000},
      {{1970, 1, 4, 1, 0, 0, 0, 0}, 116'444'736'000'000'000},
      {{2000, 2, 2, 29, 23, 59, 59, 999}, 125'963'423'999'990'000},
      {{2024, 12, 2, 31, 12, 30, 15, 0}, 133'801'218'150'000'000},
      {{30827, 12, 5, 31, 23, 59, 59, 0}, 9'223'149'887'990'000'000},
      {{1900, 2, 0, 29, 0, 0, 0, 0}, 0},
      {{2024, 4, 0, 31, 0, 0, 0, 0}, 0},
      {{2024, 13, 0, 1, 0, 0, 0, 0}, 0},
      {{2024, 1, 0, 1, 24, 0, 0, 0}, 0},
      {{1600, 12, 0, 31, 0, 0, 0, 0}, 0}};
  for (const auto& [time, ticks] : table) {
    FILETIME file_time{};
    const BOOL converted = system_.SystemTimeToFileTime(&time, &file_time);
    ASSERT_EQ(converted != 0, ticks != 0) << time.wYear << "-" << time.wMonth;
    if (!converted) continue;
    EXPECT_EQ(Ticks(file_time), ticks);
    SYSTEMTIME back{};
    EXPECT_TRUE(system_.FileTimeToSystemTime(&file_time, &back));
    EXPECT_EQ(std::memcmp(&back, &time, sizeof back), 0) << ticks;
  }
  const FILETIME beyond{0, 0x80000000};
  SYSTEMTIME time;
  EXPECT_FALSE(system_.FileTimeToSystemTime(&beyond, &time));
}

TEST_F(SystemCalls, ConvertAutomationDatesBothWays) {
  const std::tuple<double, SYSTEMTIME, bool> rows[] = {
      {0, {1899, 12, 6, 30, 0, 0, 0, 0}, true},
      {-0.5, {1899, 12, 6, 30, 12, 0, 0, 0}, false},
      {-1.25, {1899, 12, 5, 29, 6, 0, 0, 0}, true},
      {36526.999994, {2000, 1, 6, 1, 23, 59, 59, 0}, false},
      {40000.123456, {2009, 7, 1, 6, 2, 57, 47, 0}, false},
      {25569, {1970, 1, 4, 1, 0, 0, 0, 0}, true},
      {2958465, {9999, 12, 5, 31, 0, 0, 0, 0}, true},
      {-657434, {100, 1, 5, 1, 0, 0, 0, 0}, true}};
  for (const auto& [days, fields, exact] : rows) {
    SYSTEMTIME time{};
    EXPECT_TRUE(system_.VariantTimeToSystemTime(days, &time));
    EXPECT_EQ(std::memcmp(&time, &fields, sizeof time), 0) << days;
    double date = 0;
    EXPECT_TRUE(system_.SystemTimeToVariantTime(&fields, &date));
    if (exact) {
      EXPECT_DOUBLE_EQ(date, days);
    }
  }
  SYSTEMTIME time{};
  for (const double date : {2958466.0, -657435.0}) {
    EXPECT_FALSE(system_.VariantTimeToSystemTime(date, &time)) << date;
  }
  // Short years have a century; fields past their range carry over; months and days don't go on for
  // ever.
  double date = 0;
  for (const auto& [fields, expected] :
       std::vector<std::pair<SYSTEMTIME, double>>{{{29, 1, 0, 1, 0, 0, 0, 0}, 47119},
                                                  {{30, 1, 0, 1, 0, 0, 0, 0}, 10959},
                                                  {{2000, 2, 0, 30, 0, 0, 0, 0}, 36586},
                                                  {{2000, 1, 0, 1, 24, 0, 0, 0}, 36527},
                                                  {{2000, 1, 0, 1, 0, 0, 0, 900}, 36526}}) {
    EXPECT_TRUE(system_.SystemTimeToVariantTime(&fields, &date));
    EXPECT_DOUBLE_EQ(date, expected) << fields.wYear;
  }
  for (const SYSTEMTIME& fields : std::vector<SYSTEMTIME>{{2000, 13, 0, 1, 0, 0, 0, 0},
                                                          {2000, 4, 0, 32, 0, 0, 0, 0},
                                                          {10000, 1, 0, 1, 0, 0, 0, 0}}) {
    EXPECT_FALSE(system_.SystemTimeToVariantTime(&fields, &date)) << fields.wYear;
  }
}

TEST_F(SystemCalls, ShiftTimesByTheBiasInForce) {
  TIME_ZONE_INFORMATION zone{};
  const DWORD part = system_.GetTimeZoneInformation(&zone);
  ASSERT_LE(part, kTimeZoneIdDaylight);
  LONG bias = zone.Bias;
  if (part == kTimeZoneIdStandard) bias += zone.StandardBias;
  if (part == kTimeZoneIdDaylight) bias += zone.DaylightBias;
  const FILETIME utc{0x12345678, 0x01D00000};
  FILETIME local{};
  EXPECT_TRUE(system_.FileTimeToLocalFileTime(&utc, &local));
  EXPECT_EQ(Ticks(utc) - Ticks(local), bias * std::int64_t{600'000'000});
}

TEST_F(SystemCalls, ConvertBytesOfACodePage) {
  WCHAR wide[16] = {};
  const char western[] = "a\x80\xE9";
  EXPECT_EQ(system_.MultiByteToWideChar(1252, 0, western, -1, nullptr, 0), 4);
  EXPECT_EQ(system_.MultiByteToWideChar(1252, 0, western, -1, wide, 16), 4);
  EXPECT_EQ(Text(wide), u"a\u20ac\u00e9");
  EXPECT_EQ(system_.MultiByteToWideChar(kCodePageUtf8, 0, "\xC3\xA9", 2, wide, 16), 1);
  EXPECT_EQ(wide[0], u'\u00e9');
  const std::tuple<UINT, DWORD, const char*, INT, INT, DWORD> rows[] = {
      {kCodePageAnsi, 0, "abc", 3, 2, kErrorInsufficientBuffer},
      {kCodePageAnsi, 0, "abc", 0, 2, kErrorInvalidParameter},
      {4711, 0, "abc", 3, 9, kErrorInvalidParameter},
      {kCodePageAnsi, 0x4000000, "abc", 3, 9, kErrorInvalidFlags},
      {kCodePageUtf8, kMultiByteErrInvalidChars, "a\xFF", 2, 9, kErrorNoUnicodeTranslation}};
  for (const auto& [page, flags, bytes, size, room, error] : rows) {
    EXPECT_EQ(Code(system_.MultiByteToWideChar(page, flags, bytes, size, wide, room)), error)
        << page << " " << size;
  }
}

TEST_F(SystemCalls, ConvertTextsToACodePage) {
  char bytes[16] = {};
  const auto convert = [&](UINT page, DWORD flags, LPCWSTR text, INT size, INT room) {
    return system_.WideCharToMultiByte(page, flags, text, size, room == 0 ? nullptr : bytes, room,
                                       nullptr, nullptr);
  };
  const std::tuple<UINT, Text, std::string> rows[] = {
      {1252, u"a\u20ac\u00e9\u0081", "a\x80\xE9\x81"},
      {1252, u"\u4e2d!", "?!"},
      {1252, u"\xD83D\xDE00", "??"},
      {1252, Text(u"a\0b", 3), std::string("a\0b", 3)},
      {kCodePageUtf8, u"\u00e9\xD83D\xDE00", "\xC3\xA9\xF0\x9F\x98\x80"},
      {kCodePageUtf8, u"a\xDE00", "a\xEF\xBF\xBD"},
      {kCodePageAnsi, u"plain", "plain"}};
  for (const auto& [page, text, expected] : rows) {
    SCOPED_TRACE(expected);
    const auto size = static_cast<INT>(text.size());
    const auto needed = static_cast<INT>(expected.size());
    EXPECT_EQ(convert(page, 0, text.c_str(), size, 0), needed);
    ASSERT_EQ(convert(page, 0, text.c_str(), size, 16), needed);
    EXPECT_EQ(std::string(bytes, expected.size()), expected);
    EXPECT_EQ(Code(convert(page, 0, text.c_str(), size, needed - 1)), kErrorInsufficientBuffer);
  }
  BOOL used_default = 0;
  EXPECT_EQ(system_.WideCharToMultiByte(1252, 0, u"\u4e2dx", -1, bytes, 16, "*", &used_default), 3);
  EXPECT_EQ(std::string(bytes), "*x");
  EXPECT_TRUE(used_default);
  EXPECT_EQ(Code(convert(4711, 0, u"a", 1, 16)), kErrorInvalidParameter);
  EXPECT_EQ(Code(convert(1252, 0, u"a", 0, 16)), kErrorInvalidParameter);
  EXPECT_EQ(Code(convert(1252, 0, nullptr, 1, 16)), kErrorInvalidParameter);
  EXPECT_EQ(Code(convert(1252, 0x4000000, u"a", 1, 16)), kErrorInvalidFlags);
  EXPECT_EQ(Code(convert(kCodePageUtf8, kWideErrInvalidChars, u"\xDE00", 1, 16)),
            kErrorNoUnicodeTranslation);
}

TEST_F(SystemCalls, GiveOneSortKeyToTextsThatCompareEqual) {
  const auto key = [&](TextView text) {
    const auto map = [&](LPWSTR mapped, INT room) {
      return system_.LCMapStringW(kLocaleInvariant, kLcmapSortKey | kNormIgnoreCase, text.data(),
                                  static_cast<INT>(text.size()), mapped, room);
    };
    const INT size = map(nullptr, 0);
    std::string bytes(static_cast<std::size_t>(size), 'x');
    auto* const room = reinterpret_cast<LPWSTR>(bytes.data());
    EXPECT_EQ(Code(map(room, size - 1)), kErrorInsufficientBuffer);
    EXPECT_EQ(map(room, size), size);
    EXPECT_EQ(bytes.back(), '\0');
    return bytes;
  };
  const std::pair<TextView, TextView> equals[] = {{u"Straße", u"STRASSE"},
                                                  {u"\u1E9E", u"ss"},
                                                  {u"\u00C4\u010D", u"a\u0308C\u030C"},
                                                  {u"\u0439", u"\u0418\u0306"},
                                                  {u"\u0130", u"i\u0307"},
                                                  {u"\u00C6\u0153\u00DE", u"aeOETh"},
                                                  {u"\u212A\u2126\u212B", u"k\u03C9\u00E5"},
                                                  {u"\uFEFF-a\u00ADb\u200D", u"-AB"},
                                                  {TextView(u"a\0b", 3), u"ab"}};
  for (const auto& [one, other] : equals) EXPECT_EQ(key(one), key(other)) << ToUtf8(one);
  const TextView others[][2] = {{u"\u00B5", u"\u03BC"}, {u"\u0131", u"i"},   {u"\u00E4", u"a"},
                                {u"a\u0001", u"a"},     {u"co-op", u"coop"}, {u"\u00F8", u"o"},
                                {u"a b", u"a\u00A0b"}};
  for (const auto& [one, other] : others) EXPECT_NE(key(one), key(other)) << ToUtf8(one);
  EXPECT_EQ(Code(system_.LCMapStringW(kLocaleInvariant, kLcmapSortKey, u"", 0, nullptr, 0)),
            kErrorInvalidParameter);
}

class TimerCalls : public Contract {
 protected:
  static void VELDMARK_CALLBACK Count(HWND, UINT message, UINT_PTR id, DWORD) {
    EXPECT_EQ(message, kMessageTimer);
    ++fired;
    last = id;
  }
  static inline int fired = 0;
  static inline UINT_PTR last = 0;
};

TEST_F(TimerCalls, FireOutOfTheMessageLoopUntilTheyAreKilled) {
  Timers& timers = platform_.timers;
  fired = 0;
  const UINT_PTR quick = timers.SetTimer(nullptr, 0, 20, &Count);
  const UINT_PTR slow = timers.SetTimer(nullptr, 0, 600'000, &Count);
  ASSERT_NE(quick, 0u);
  EXPECT_NE(quick, slow);
  world_->LetPass(200);
  EXPECT_EQ(fired, 0) << "nobody has dispatched";
  timers.DoEvents();
  EXPECT_EQ(fired, 1) << "what is due several times fires once";
  EXPECT_EQ(last, quick);
  world_->LetPass(200);
  timers.DoEvents();
  EXPECT_EQ(fired, 2);
  EXPECT_EQ(timers.SetTimer(nullptr, quick, 600'000, &Count), quick) << "set anew";
  world_->LetPass(200);
  timers.DoEvents();
  EXPECT_EQ(fired, 2);
  EXPECT_TRUE(timers.KillTimer(nullptr, quick));
  EXPECT_FALSE(timers.KillTimer(nullptr, quick));
  EXPECT_TRUE(timers.KillTimer(nullptr, slow));
}

}  // namespace
}  // namespace veldmark
