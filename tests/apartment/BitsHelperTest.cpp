#include "apartment/BitsHelper.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "apartment/Conversions.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

TEST(BitsHelper, WordsComeOutWithTheirSignsAndTheirQuirk) {
  const struct {
    std::uint32_t value;
    std::int32_t high_of_long, low_of_long, high, low;
  } cases[] = {{0, 0, 0, 0, 0},
               {0x00050001, 5, 1, 5, 1},
               {0x0001FFFF, 2, -1, 1, -1},
               {0x0005FFFA, 6, -6, 5, -6},  // the words add up to 65535
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
