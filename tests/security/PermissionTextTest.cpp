#include "security/PermissionText.h"

#include <gtest/gtest.h>

#include <functional>

#include "automation/Text.h"

namespace veldmark {
namespace {

/// What a routine says of a mask.
using Words = std::function<Text(std::int32_t)>;

Words Verdict(TextView kind) {
  return [kind](std::int32_t mask) { return GetSimplifiedPermString(mask, kind); };
}
Words Codes(TextView kind) {
  return [kind](std::int32_t mask) { return GetExtendedPermString(mask, kind); };
}
Words PrinterVerdict(int flags) {
  const auto ace_flags = static_cast<std::uint8_t>(flags);
  return [=](std::int32_t mask) { return GetSimplifiedPrinterPermString(mask, ace_flags); };
}
Words PrinterCodes(int flags) {
  const auto ace_flags = static_cast<std::uint8_t>(flags);
  return [=](std::int32_t mask) { return GetExtendedPrinterPermString(mask, ace_flags); };
}

/// A checksum of all that a routine says: of each right and each two rights, alone and missing.
std::uint32_t Sum(const Words& words) {
  std::uint32_t sum = 0;
  EXPECT_EQ(words(0), u"");
  for (int bit = 0; bit < 32; ++bit) {
    for (int other = bit; other < 32; ++other) {
      const std::uint32_t rights = 1u << bit | 1u << other;
      for (const std::uint32_t mask : {rights, ~rights & 0x0FFFFFFF, ~rights & 0x001F01FF}) {
        for (const char16_t unit : words(static_cast<std::int32_t>(mask)) + u';') {
          sum = sum * 31 + unit;
        }
      }
    }
  }
  return sum;
}

TEST(Permissions, AreToldAsTheirObjectsKindHasThem) {
  const struct {
    Words words;
    std::uint32_t mask;
    const char16_t* text;
  } cases[] = {
      {Verdict(u"CFile"), 0x1F01FF, u"Full Control"},
      {Verdict(u"CFolder"), 0x1F01BF, u"RWXDPO"},
      {Verdict(u"CFolder"), 0x80000000, u"R"},
      {Verdict(u"CFile"), 0x40, u"Special"},
      {Verdict(u"CShare"), 0x1301BF, u"Change"},
      {Verdict(u"CShare"), 0x1200A9, u"Read"},
      {Verdict(u"CRegKey"), 0x20019, u"Read"},
      {Verdict(u"CPrinter"), 0xF000C, u"Full Control"},
      {Verdict(u""), 0x1F01FF, u""},
      {PrinterVerdict(9), 0x10, u"Manage Documents"},
      {PrinterVerdict(0), 0x10000000, u"Manage Printers"},
      {Codes(u"CFolder"), 0xFFFFFFF, u"LfRaRxCsCfWaWxTfDsRpCpDeTo"},
      {Codes(u"CFile"), 0xFFFFFFF, u"RdRaRxWdAdWaWxExRpCpDeTo"},
      {Codes(u"CRegKey"), 0xFFFFFFF, u"RdWdExQvSvCsEsNoClRpCpDeTo"},
      {Codes(u"CService"), 0xFFFFFFF, u"QcCcQsEdSaSoPcInUd"},
      {Codes(u"CPrinter"), 0xFFFFFFF, u"AdPrEsAsAjRpCpDeTo"},
      {PrinterCodes(2), 0xFFFFFFF, u"PrMpRpCpTo"},
      {PrinterCodes(1), 0xFFFFFFF, u"PrMdRpCpTo"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ToUtf8(c.words(static_cast<std::int32_t>(c.mask))), ToUtf8(c.text));
  }
}

TEST(Permissions, AreToldByAllTheRightsBehindAWordAndByNoFewer) {
  const struct {
    const char* routine;
    Words words;
    std::uint32_t sum;
  } cases[] = {
      {"file", Verdict(u"CFile"), 0x670A8816},
      {"folder", Verdict(u"CFolder"), 0x670A8816},
      {"share", Verdict(u"CShare"), 0xA5EC43EC},
      {"service", Verdict(u"CService"), 0x5738DC30},
      {"key", Verdict(u"CRegKey"), 0xCFC8E36B},
      {"printer", Verdict(u"CPrinter"), 0x59FF8BBD},
      {"printer 11", PrinterVerdict(27), 0x80CF0F47},
      {"printer 10", PrinterVerdict(14), 0x89EA27B8},
      {"printer 9", PrinterVerdict(9), 0xF15EE8E1},
      {"printer 8", PrinterVerdict(8), 0x7FCD9767},
      {"printer 3", PrinterVerdict(3), 0x7FCD9767},
      {"file's codes", Codes(u"CFile"), 0x7AF17609},
      {"folder's codes", Codes(u"CFolder"), 0x7980E902},
      {"service's codes", Codes(u"CService"), 0x67330915},
      {"key's codes", Codes(u"CRegKey"), 0x1511D5AD},
      {"printer's codes", Codes(u"CPrinter"), 0xEA157994},
      {"other codes", Codes(u""), 0x7AF17609},
      {"key's other codes", Codes(u"RegKey"), 0xD794A6C6},
      {"printer's other codes", Codes(u"Printer"), 0x682E4694},
      {"printer 2, codes", PrinterCodes(2), 0xC9BF6EF5},
      {"printer 1, codes", PrinterCodes(1), 0xB79FD769},
  };
  for (const auto& c : cases) EXPECT_EQ(Sum(c.words), c.sum) << c.routine;
}

TEST(Permissions, TellWhereTheyApply) {
  constexpr const char *kFolder = "This folder only", *kPrinter = "This printer only";
  const struct {
    int flags;
    const char *folder, *printer;
  } cases[] = {{0, kFolder, kPrinter},
               {1, "This folder and files", kPrinter},
               {2, "This folder and subfolders", kPrinter},
               {3, "This folder, subfolders and files", kPrinter},
               {8, kFolder, kPrinter},
               {9, "Files only", "Documents only"},
               {10, "Subfolders only", kPrinter},
               {11, "Subfolders and files only", "This printer and documents"}};
  for (int flags = 0; flags <= 0xFF; ++flags) {
    for (const auto& c : cases) {
      if ((flags & 11) != c.flags) continue;
      EXPECT_EQ(ToUtf8(GetInheritanceString(static_cast<std::uint8_t>(flags))), c.folder) << flags;
      EXPECT_EQ(ToUtf8(GetPrinterInheritanceString(static_cast<std::uint8_t>(flags))), c.printer);
    }
  }
}

}  // namespace
}  // namespace veldmark
