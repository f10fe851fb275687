#include "security/PermissionText.h"

#include <gtest/gtest.h>

#include <functional>

#include "automation/Text.h"
#include "security/AccessRights.h"

namespace veldmark {
namespace {

/// What a routine says of a mask; a verdict stands in brackets.
using Words = std::function<std::string(std::uint32_t)>;

Words Verdict(TextView kind) {
  return [kind](std::uint32_t mask) {
    return "<" + ToUtf8(GetSimplifiedPermString(static_cast<std::int32_t>(mask), kind)) + ">";
  };
}
Words Codes(TextView kind) {
  return [kind](std::uint32_t mask) {
    return ToUtf8(GetExtendedPermString(static_cast<std::int32_t>(mask), kind));
  };
}
Words PrinterVerdict(std::uint8_t flags) {
  return [flags](std::uint32_t mask) {
    const auto rights = static_cast<std::int32_t>(mask);
    return "<" + ToUtf8(GetSimplifiedPrinterPermString(rights, flags)) + ">";
  };
}
Words PrinterCodes(std::uint8_t flags) {
  return [flags](std::uint32_t mask) {
    return ToUtf8(GetExtendedPrinterPermString(static_cast<std::int32_t>(mask), flags));
  };
}

TEST(Permissions, AreToldByAllTheRightsBehindAWordAndByNoFewer) {
  constexpr std::uint32_t kR = 0x120089;  // a letter before the one that is looked at
  const struct {
    Words words;
    std::uint32_t rights;
    const char* part;
    std::uint32_t beside = 0;
  } cases[] = {
      {Verdict(u"CFile"), 0x1F01FF, "<Full Control>"},
      {Verdict(u"CFolder"), 0x1F01FF, "<Full Control>"},
      {Verdict(u"CFolder"), kR, "<R>"},
      {Verdict(u"CFile"), 0x120116, "W", kR},
      {Verdict(u"CFile"), 0x1200A0, "X", kR},
      {Verdict(u"CFile"), 0x10000, "D", kR},
      {Verdict(u"CFile"), 0x60000, "P", kR},
      {Verdict(u"CFile"), 0x80000, "O", kR},
      {Verdict(u"CShare"), 0x1F01FF, "<Full Control>"},
      {Verdict(u"CShare"), 0x1301BF, "<Change>"},
      {Verdict(u"CShare"), 0x1200A9, "<Read>"},
      {Verdict(u"CService"), 0xF01FF, "<Full Control>"},
      {Verdict(u"CRegKey"), 0xF003F, "<Full Control>"},
      {Verdict(u"CRegKey"), 0x20019, "<Read>"},
      {Verdict(u"CPrinter"), 0xF000C, "<Full Control>"},
      {Verdict(u"CPrinter"), 0x20008, "<Print>"},
      {PrinterVerdict(11), 0xF000C, "<Full Control>"},
      {PrinterVerdict(27), 0x20008, "<Print>"},
      {PrinterVerdict(15), 0x20000, "<Read>"},
      {PrinterVerdict(10), 0x20000, "<Read Permissions>"},
      {PrinterVerdict(9), 0xF000C, "<Manage Documents>"},
      {PrinterVerdict(9), 0x10, "<Manage Documents>"},
      {PrinterVerdict(9), 0x20008, "<Print>"},
      {PrinterVerdict(9), 0x20000, "<Read>"},
      {PrinterVerdict(0), 0xF000C, "<Manage Printers>"},
      {PrinterVerdict(2), 0x20008, "<Print>"},
      {PrinterVerdict(3), 0x20000, "<Read>"},
      {Codes(u"CRegKey"), 0x20019, "Rd"},
      {Codes(u"CRegKey"), 0x20006, "Wd"},
      {Codes(u"CRegKey"), 0x20019, "Ex"},
  };
  for (const auto& c : cases) {
    const std::uint32_t whole = c.rights | c.beside;
    const auto told = [&](std::uint32_t mask) {
      return c.words(mask).find(c.part) != std::string::npos;
    };
    EXPECT_TRUE(told(whole)) << c.part << " " << c.words(whole);
    for (std::uint32_t right = 1; right <= c.rights; right <<= 1) {
      if ((c.rights & right) == 0) continue;
      EXPECT_FALSE(told(whole & ~right))
          << std::hex << c.part << " " << right << " " << c.words(whole & ~right);
    }
  }
}

TEST(Permissions, HaveTheirCodesRightByRightAndInTheirOrder) {
  const struct {
    Words words;
    const char *each, *all;
  } cases[] = {
      {Codes(u"CFolder"), "LfCfCsRxWxTfDsRaWaDeRpCpTo", "LfRaRxCsCfWaWxTfDsRpCpDeTo"},
      {Codes(u"CFile"), "RdWdAdRxWxExRaWaDeRpCpTo", "RdRaRxWdAdWaWxExRpCpDeTo"},
      {Codes(u""), "RdWdAdRxWxExRaWaDeRpCpTo", "RdRaRxWdAdWaWxExRpCpDeTo"},
      {Codes(u"CRegKey"), "QvSvCsEsNoClDeRpCpTo", "RdWdExQvSvCsEsNoClRpCpDeTo"},
      {Codes(u"CService"), "QcCcQsEdSaSoPcInUd", "QcCcQsEdSaSoPcInUd"},
      {Codes(u"CPrinter"), "AsEsAdPrAjDeRpCpTo", "AdPrEsAsAjRpCpDeTo"},
      {PrinterCodes(2), "MpPrMdRpCpTo", "PrMpRpCpTo"},
      {PrinterCodes(1), "MdPrMdRpCpTo", "PrMdRpCpTo"},
  };
  for (const auto& c : cases) {
    std::string each;
    for (int bit = 0; bit < 28; ++bit) each += c.words(1u << bit);
    EXPECT_EQ(each, c.each);
    EXPECT_EQ(c.words(0xFFFFFFF), c.all);
    EXPECT_EQ(c.words(0), "");
  }
}

TEST(Permissions, OfFilesAreSpecialForAStrayRightBeforeTheFirstLetter) {
  const auto initials = [](std::uint32_t beside) {
    std::string text;
    for (int bit = 0; bit <= 20; ++bit) text += Verdict(u"CFile")(1u << bit | beside)[1];
    return text;
  };
  EXPECT_EQ(initials(0x10000), "SSSSSSDSSDDDDDDDDSDDS");
  EXPECT_EQ(initials(0x80000), "SSSSSSOSSOOOOOOODSSOS");
  const struct {
    Words words;
    std::uint32_t mask;
    const char* text;
  } cases[] = {
      {Verdict(u"CFolder"), 0x1F01BF, "<RWXDPO>"},
      {Verdict(u"CFile"), 0x40, "<Special>"},
      {Verdict(u"CFile"), kFileAllAccess & 0xAA, "<Special>"},
      {Verdict(u"CShare"), 1, "<>"},
      {Verdict(u"CService"), 1, "<Special>"},
      {Verdict(u"CRegKey"), 2, "<Special>"},
      {Verdict(u"Service"), 0xF01FF, "<>"},
      {Verdict(u""), 0x1F01FF, "<>"},
      {PrinterVerdict(10), 0x10, "<Invalid>"},
      {PrinterVerdict(11), 0x10, "<>"},
      {Verdict(u"CFile"), 0, "<>"},
      {Verdict(u"CService"), 0, "<>"},
      {PrinterVerdict(10), 0, "<>"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.words(c.mask), c.text) << std::hex << c.mask;
}

TEST(Permissions, OfGenericKindMeanWhatTheObjectsKindMakesOfThem) {
  const struct {
    SE_OBJECT_TYPE type;
    std::vector<TextView> kinds;
    std::int32_t rights[4];  // read, write, execute, all
  } cases[] = {
      {SE_FILE_OBJECT, {u"CFile", u"CFolder", u""}, {0x120089, 0x120116, 0x1200A0, 0x1F01FF}},
      {SE_SERVICE, {u"Service", u"CService"}, {0x120089, 0x120116, 0x1200A0, 0xF01FF}},
      {SE_PRINTER, {u"Printer", u"CPrinter"}, {0x20008, 0x20008, 0x20008, 0xF000C}},
      {SE_REGISTRY_KEY, {u"RegKey", u"CRegKey"}, {0x20019, 0x20006, 0x20019, 0xF003F}},
  };
  for (const auto& c : cases) {
    const GENERIC_MAPPING& mapping = MappingOf(c.type);
    for (int index = 0; index < 4; ++index) {
      const std::uint32_t generic = 0x80000000u >> index;
      const auto specific = static_cast<std::uint32_t>(c.rights[index]);
      EXPECT_EQ(MapGenericMask(static_cast<std::int32_t>(generic | 0x200), mapping),
                c.rights[index] | 0x200);
      for (const TextView kind : c.kinds) {
        EXPECT_EQ(&MappingOf(kind), &mapping);
        EXPECT_EQ(Verdict(kind)(generic), Verdict(kind)(specific)) << ToUtf8(kind);
        EXPECT_EQ(Codes(kind)(generic), Codes(kind)(specific)) << ToUtf8(kind);
      }
      if (c.type != SE_PRINTER) continue;
      EXPECT_EQ(PrinterVerdict(0)(generic), PrinterVerdict(0)(specific));
      EXPECT_EQ(PrinterCodes(0)(generic), PrinterCodes(0)(specific));
    }
    EXPECT_EQ(MapGenericMask(0x60000000, mapping), c.rights[1] | c.rights[2]);
  }
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
