#include "security/PermissionText.h"

#include <functional>
#include <map>
#include <tuple>

#include "security/SecurityFixture.h"

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
Words PrinterVerdict(std::uint8_t flags) {
  return [flags](std::int32_t mask) { return GetSimplifiedPrinterPermString(mask, flags); };
}
Words PrinterCodes(std::uint8_t flags) {
  return [flags](std::int32_t mask) { return GetExtendedPrinterPermString(mask, flags); };
}

/// What is said of each mask that differs from this one in a single right of `rights`, with these
/// rights behind the words: "Read: 2 4 R; Special: 1 W; ". There too stand R, W, X and A for each
/// of the generic rights alone, and "rest" for this mask with all the bits that mean nothing.
std::string Around(const Words& words, std::uint32_t mask, std::uint32_t rights) {
  EXPECT_EQ(words(0), u"");
  std::map<std::string, std::string> told;
  const auto ask = [&](std::uint32_t asked, const std::string& name) {
    told[ToUtf8(words(static_cast<std::int32_t>(asked)))] += " " + name;
  };
  for (std::uint32_t right = 1; right <= rights; right <<= 1) {
    if ((rights & right) != 0) ask(mask ^ right, Hex(right));
  }
  ask(0x80000000, "R");
  ask(0x40000000, "W");
  ask(0x20000000, "X");
  ask(0x10000000, "A");
  ask(mask | 0x0FE0FE00, "rest");
  std::string text;
  for (const auto& [said, masks] : told) text += said + ":" + masks + "; ";
  return text;
}

TEST(Permissions, AreToldByAllTheRightsBehindAWordAndByNoFewer) {
  constexpr std::uint32_t kAny = 0x1F01FF;
  EXPECT_EQ(Around(Verdict(u"CFile"), kAny, kAny),
            "Full Control: A rest; R: R; RWDPO: 20; RWXDO: 40000; RWXDP: 80000; RWXDPO: 40; "
            "RWXPO: 10000; RXDPO: 2 4 10 100; Special: 1 8 80 20000 100000 W X; ");
  EXPECT_EQ(Around(Verdict(u"CFolder"), kAny, kAny), Around(Verdict(u"CFile"), kAny, kAny));
  // A part of a letter makes special what else would read as the letters behind it.
  EXPECT_EQ(Around(Verdict(u"CFile"), 0x10040, kAny),
            "D: 40 40000 rest; DO: 80000; Full Control: A; R: R; "
            "Special: 1 2 4 8 10 20 80 100 10000 20000 100000 W X; ");
  EXPECT_EQ(Around(Verdict(u"CFile"), 0x80040, kAny),
            "DO: 10000; Full Control: A; O: 40 rest; R: R; "
            "Special: 1 2 4 8 10 20 80 100 20000 40000 80000 100000 W X; ");
  EXPECT_EQ(Around(Verdict(u"CShare"), 0x1301BF, kAny),
            ": 1 8 20 80 20000 100000 R W X; Change: 40 40000 80000 rest; Full Control: A; "
            "Read: 2 4 10 100 10000; ");
  EXPECT_EQ(Around(Verdict(u"CService"), 0xF01FF, 0xF01FF),
            "Full Control: A rest; "
            "Special: 1 2 4 8 10 20 40 80 100 10000 20000 40000 80000 R W X; ");
  EXPECT_EQ(Around(Verdict(u"CRegKey"), 0xF003F, 0xF003F),
            "Full Control: A rest; Read: 2 4 20 10000 40000 80000 R X; Special: 1 8 10 20000 W; ");
  EXPECT_EQ(Around(Verdict(u"CPrinter"), 0xF000C, 0xF000C),
            ": 8 20000; Full Control: A rest; Print: 4 10000 40000 80000 R W X; ");
  EXPECT_EQ(Around(Verdict(u""), 0, 0), ": R W X A rest; ");
  EXPECT_EQ(Around(PrinterVerdict(11), 0xF000C, 0xF000C),
            ": 20000; Full Control: A rest; Print: 4 10000 40000 80000 R W X; Read: 8; ");
  EXPECT_EQ(Around(PrinterVerdict(10), 0xF000C, 0xF000C),
            "Invalid: 20000; Read Permissions: 4 8 10000 40000 80000 R W X A rest; ");
  EXPECT_EQ(Around(PrinterVerdict(9), 0x20010, 0x20018),
            "Manage Documents: 8 20000 A rest; Print: R W X; Read: 10; ");
  EXPECT_EQ(Around(PrinterVerdict(8), 0xF000C, 0xF000C),
            ": 20000; Manage Printers: A rest; Print: 4 10000 40000 80000 R W X; Read: 8; ");
  EXPECT_EQ(Around(PrinterVerdict(3), 0, 0), ": rest; Manage Printers: A; Print: R W X; ");
  EXPECT_EQ(Around(Codes(u"CFolder"), 0, kAny),
            ": 100000 rest; Cf: 2; Cp: 40000; Cs: 4; CsCfWaWxRp: W; De: 10000; Ds: 40; Lf: 1; "
            "LfRaRxCsCfWaWxTfDsRpCpDeTo: A; LfRaRxRp: R; Ra: 80; RaTfRp: X; Rp: 20000; Rx: 8; "
            "Tf: 20; To: 80000; Wa: 100; Wx: 10; ");
  EXPECT_EQ(Around(Codes(u"CFile"), 0, kAny),
            ": 40 100000 rest; Ad: 4; Cp: 40000; De: 10000; Ex: 20; Ra: 80; RaExRp: X; Rd: 1; "
            "RdRaRxRp: R; RdRaRxWdAdWaWxExRpCpDeTo: A; Rp: 20000; Rx: 8; To: 80000; Wa: 100; "
            "Wd: 2; WdAdWaWxRp: W; Wx: 10; ");
  EXPECT_EQ(Around(Codes(u"CService"), 0, kAny),
            ": 10000 20000 40000 80000 100000 rest; Cc: 2; CcQsSaUd: W; Ed: 8; In: 80; Pc: 40; "
            "Qc: 1; QcCcQsEdSaSoPcInUd: A; QcEdIn: R; Qs: 4; Sa: 10; So: 20; SoIn: X; Ud: 100; ");
  EXPECT_EQ(Around(Codes(u"CRegKey"), 0, kAny),
            ": 40 80 100 100000 rest; Cl: 20; Cp: 40000; Cs: 4; De: 10000; Es: 8; No: 10; Qv: 1; "
            "RdExQvEsNoRp: R X; RdWdExQvSvCsEsNoClRpCpDeTo: A; Rp: 20000; Sv: 2; To: 80000; "
            "WdSvCsRp: W; ");
  EXPECT_EQ(Around(Codes(u"CRegKey"), 0x2001F, 0x2001F),
            "QvSvCsEsNo: 20000; RdExQvCsEsNoRp: 2; RdExQvEsNoRp: R X; RdExQvSvEsNoRp: 4; "
            "RdWdExQvSvCsEsNoClRpCpDeTo: A; RdWdExQvSvCsEsNoRp: rest; WdQvSvCsEsRp: 10; "
            "WdQvSvCsNoRp: 8; WdSvCsEsNoRp: 1; WdSvCsRp: W; ");
  EXPECT_EQ(Around(Codes(u"CPrinter"), 0x1F, 0x1F),
            "AdEsAsAj: 8; AdPrAsAj: 2; AdPrEsAj: 1; AdPrEsAs: 10; AdPrEsAsAj: rest; "
            "AdPrRpCpDeTo: A; PrEsAsAj: 4; PrRp: R W X; ");
  EXPECT_EQ(Around(PrinterCodes(2), 0, kAny),
            ": 1 2 20 40 80 100 10000 100000 rest; Cp: 40000; Md: 10; Mp: 4; Pr: 8; "
            "PrMpRpCpTo: A; PrRp: R W X; Rp: 20000; To: 80000; ");
  EXPECT_EQ(Around(PrinterCodes(1), 0, kAny),
            ": 1 2 20 40 80 100 10000 100000 rest; Cp: 40000; Md: 4 10; Pr: 8; PrMdRpCpTo: A; "
            "PrRp: R W X; Rp: 20000; To: 80000; ");
  // Any other kind has a file's codes, and the generic rights of the class that it shortens.
  EXPECT_EQ(Around(Codes(u""), 0, 0),
            ": rest; RaExRp: X; RdRaRxRp: R; RdRaRxWdAdWaWxExRpCpDeTo: A; WdAdWaWxRp: W; ");
  EXPECT_EQ(Around(Codes(u"RegKey"), 0, 0),
            ": rest; RdRxWdAdWxExRpCpDeTo: A; RdRxWxRp: R X; WdAdRp: W; ");
  EXPECT_EQ(Around(Codes(u"Printer"), 0, 0), ": rest; RxAdRpCpDeTo: A; RxRp: R W X; ");
}

TEST(Permissions, TellWhereTheyApply) {
  constexpr const char *kFolder = "This folder only", *kPrinter = "This printer only";
  const std::tuple<int, const char*, const char*> cases[] = {
      {0, kFolder, kPrinter},
      {1, "This folder and files", kPrinter},
      {2, "This folder and subfolders", kPrinter},
      {3, "This folder, subfolders and files", kPrinter},
      {8, kFolder, kPrinter},
      {9, "Files only", "Documents only"},
      {10, "Subfolders only", kPrinter},
      {11, "Subfolders and files only", "This printer and documents"}};
  for (int flags = 0; flags <= 0xFF; ++flags) {
    for (const auto& [scope, folder, printer] : cases) {
      if ((flags & 11) != scope) continue;
      EXPECT_EQ(ToUtf8(GetInheritanceString(static_cast<std::uint8_t>(flags))), folder) << flags;
      EXPECT_EQ(ToUtf8(GetPrinterInheritanceString(static_cast<std::uint8_t>(flags))), printer);
    }
  }
}

}  // namespace
}  // namespace veldmark
