#include "security/PermissionText.h"

#include <gtest/gtest.h>

#include "automation/Text.h"

namespace veldmark {
namespace {

TEST(Permissions, HaveAShortVerdictForEachKindOfObject) {
  struct Case {
    std::uint32_t mask;
    const char16_t* object_type;
    const char* text;
  };
  const Case cases[] = {
      {0x1F01FF, u"CFile", "Full Control"},
      {0x10000000, u"CFolder", "Full Control"},
      {0x80000000, u"CFile", "R"},
      {0xA0000000, u"CFile", "RX"},
      {0x120089, u"CFolder", "R"},
      {0x1200A9, u"CFolder", "RX"},
      {0x1301BF, u"CFolder", "RWXD"},
      {0x1F01BF, u"CFolder", "RWXDPO"},
      {0x120116, u"CFile", "Special"},
      {0x20000, u"CFile", "Special"},
      // One stray right makes these special; without its rule each would be "D" or "O".
      {0x10001, u"CFile", "Special"},
      {0x10008, u"CFile", "Special"},
      {0x10080, u"CFile", "Special"},
      {0x10002, u"CFile", "Special"},
      {0x10004, u"CFile", "Special"},
      {0x10010, u"CFile", "Special"},
      {0x10100, u"CFile", "Special"},
      {0x10020, u"CFile", "Special"},
      {0xC0000, u"CFile", "Special"},
      {0x40, u"CFile", "Special"},
      {0x10000, u"CFile", "D"},
      {0x90000, u"CFile", "DO"},
      {0x40000, u"CFile", "Special"},
      {0x50000, u"CFile", "D"},
      {0x80000, u"CFile", "O"},
      {0x120089 | 0x2, u"CFile", "R"},
      {0xF000C, u"CPrinter", "Full Control"},
      {0x20008, u"CPrinter", "Print"},
      {0x40000000, u"CPrinter", "Print"},
      {0x20000, u"CPrinter", ""},
      {0x1F01FF, u"CShare", "Full Control"},
      {0x1301BF, u"CShare", "Change"},
      {0x1200A9, u"CShare", "Read"},
      {0x1, u"CShare", ""},
      {0xF01FF, u"CService", "Full Control"},
      {0x10000000, u"CService", "Full Control"},
      {0x1, u"CService", "Special"},
      {0xF003F, u"CRegKey", "Full Control"},
      {0x20019, u"CRegKey", "Read"},
      {0x20000000, u"CRegKey", "Read"},
      {0x2, u"CRegKey", "Special"},
      {0xF01FF, u"Service", ""},
      {0xF01FF, u"", ""},
      {0, u"CFile", ""},
      {0, u"CService", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToUtf8(GetSimplifiedPermString(static_cast<std::int32_t>(c.mask), c.object_type)),
              c.text)
        << std::hex << c.mask << " " << ToUtf8(c.object_type);
  }
}

TEST(Permissions, AreSpelledOutInTwoLetterCodes) {
  struct Case {
    std::uint32_t mask;
    const char16_t* object_type;
    const char* text;
  };
  const Case cases[] = {
      {0x1F01FF, u"CFolder", "LfRaRxCsCfWaWxTfDsRpCpDeTo"},
      {0x1F01FF, u"CFile", "RdRaRxWdAdWaWxExRpCpDeTo"},
      {0x80000000, u"CShare", "RdRaRxRp"},
      {0x20019, u"CRegKey", "RdExQvEsNoRp"},
      {0x10000000, u"CRegKey", "RdWdExQvSvCsEsNoClRpCpDeTo"},
      {0xF01FF, u"CService", "QcCcQsEdSaSoPcInUd"},
      {0xF001F, u"CPrinter", "AdPrEsAsAjRpCpDeTo"},
      {0x40, u"CFile", ""},
      {0x10000000, u"RegKey", "RdRxWdAdWxExRpCpDeTo"},
      {0x80000000, u"Printer", "RxRp"},
      {0, u"CFolder", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToUtf8(GetExtendedPermString(static_cast<std::int32_t>(c.mask), c.object_type)),
              c.text)
        << std::hex << c.mask << " " << ToUtf8(c.object_type);
  }
}

TEST(Permissions, OfPrintersDependOnTheFlags) {
  struct Case {
    std::uint32_t mask;
    std::uint8_t flags;
    const char* text;
    const char* codes;
  };
  const Case cases[] = {
      {0xF000C, 11, "Full Control", "PrMdRpCpTo"},
      {0x20008, 11, "Print", "PrRp"},
      {0x20000, 27, "Read", "Rp"},
      {0x10, 11, "", "Md"},
      {0x20000, 10, "Read Permissions", "Rp"},
      {0x10, 10, "Invalid", "Md"},
      {0xF000C, 10, "Read Permissions", "PrMpRpCpTo"},
      {0xF000C, 9, "Manage Documents", "PrMdRpCpTo"},
      {0x10, 9, "Manage Documents", "Md"},
      {0x20008, 9, "Print", "PrRp"},
      {0x20000, 9, "Read", "Rp"},
      {0x10000000, 0, "Manage Printers", "PrMpRpCpTo"},
      {0x80000000, 2, "Print", "PrRp"},
      {0x20000, 3, "Read", "Rp"},
      {0x4, 0, "", "Mp"},
      {0, 11, "", ""},
  };
  for (const Case& c : cases) {
    const auto mask = static_cast<std::int32_t>(c.mask);
    EXPECT_EQ(ToUtf8(GetSimplifiedPrinterPermString(mask, c.flags)), c.text)
        << std::hex << c.mask << " " << int{c.flags};
    EXPECT_EQ(ToUtf8(GetExtendedPrinterPermString(mask, c.flags)), c.codes)
        << std::hex << c.mask << " " << int{c.flags};
  }
}

TEST(Permissions, TellWhereTheyApply) {
  struct Case {
    std::uint8_t flags;
    const char* folder;
    const char* printer;
  };
  const Case cases[] = {
      {0, "This folder only", "This printer only"},
      {0x14, "This folder only", "This printer only"},
      {8, "This folder only", "This printer only"},
      {1, "This folder and files", "This printer only"},
      {2, "This folder and subfolders", "This printer only"},
      {3, "This folder, subfolders and files", "This printer only"},
      {9, "Files only", "Documents only"},
      {10, "Subfolders only", "This printer only"},
      {0x1B, "Subfolders and files only", "This printer and documents"},
      {0xFF, "Subfolders and files only", "This printer and documents"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToUtf8(GetInheritanceString(c.flags)), c.folder) << int{c.flags};
    EXPECT_EQ(ToUtf8(GetPrinterInheritanceString(c.flags)), c.printer) << int{c.flags};
  }
}

}  // namespace
}  // namespace veldmark
