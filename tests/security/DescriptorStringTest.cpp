#include "security/SecurityFixture.h"

namespace veldmark {
namespace {

using DescriptorStrings = ApartmentFixture;

TEST_F(DescriptorStrings, AreReadAsNarrowlyAsTheyAlwaysWere) {
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"O:BAD:(A;;FA;;;SY)", "O:S-1-5-32-544 4 (0;0;1f01ff;;;S-1-5-18)"},
      {u"D:P(A;OICI;GA;;;BA)", "1004 P (0;3;10000000;;;S-1-5-32-544)"},
      {u"d:ai(A;;FA;;;WD)(D;;FW;;;AN)", "404 (0;0;1f01ff;;;S-1-1-0)(1;0;120116;;;S-1-5-7)"},
      {u"D:ARPAI", "1504 P "},
      {u"G:BA", "0"},
      {u"G:(S-1-5-18)D:P", "1004 P "},
      {u"G:BAO:SY", "O:S-1-5-18 0"},
      {u"O:S-1-5-18", "O:S-1-5-18 0"},
      {u"O:syO:BA", "O:S-1-5-32-544 0"},
      {u"D:(A;;;;;)", "4 (0;0;0;;;)"},
      {u"D:(a;;ga;;;)", "4 (0;0;0;;;)"},
      {u"D:(ZZ;XXCI;0x1F01FF;;;ba)", "4 (0;2;0;;;S-1-5-32-544)"},
      {u"D:(D;CICI;GRG;;;S-1-5-21-1-2-3-9)", "4 (1;4;80000000;;;S-1-5-21-1-2-3-9)"},
      {u"D:(A;SAFANPIOIDO;;;;)", "4 (0;28;0;;;)"},
      {u"D:(OA;;CR;0299;bf96;PS)", "4 (5;0;100;{0299};{bf96};S-1-5-10)"},
      {u"D:(AU;;;;;)(AL;;;;;)(OD;;;;;)(OU;;;;;)(OL;;;;;)",
       "4 (2;0;0;;;)(3;0;0;;;)(6;0;0;;;)(7;0;0;;;)(8;0;0;;;)"},
      // Behind "S:" nothing is read.
      {u"O:SYS:(AU;SAFA;FA;;;WD)D:P", "O:S-1-5-18 0"},
      {u"D:S:", "4 "},
      // The last character alone is no section.
      {u"D", "0"},
      {u"O:SYZ", "O:S-1-5-18 0"},
      {u"D:(A;;;;;)(", "4 (0;0;0;;;)"},
      {u"", "0 "},
  };
  SystemRoot root;
  for (const auto& [text, told] : cases) {
    const auto descriptor = root.CreateSDFromStringSD(text, Text());
    EXPECT_EQ(Told(descriptor), told) << ToUtf8(text);
    EXPECT_EQ(descriptor->Revision(), *text ? 1 : 0);
    EXPECT_EQ(descriptor->BinarySD(), Variant());
    EXPECT_EQ(descriptor->ParentObjectType + descriptor->ParentObjectPath, u"");
  }
  EXPECT_EQ(Told(root.CreateSDFromStringSD_API(u"", Text())), "0 ");
}

TEST_F(DescriptorStrings, ReadEachRightByItsCode) {
  std::string masks;
  const Text codes = u"GAGRGWGXRCSDWDWORPWPCCDCLCSWLODTCRFAFRFWFXKAKRKWKX";
  for (std::size_t at = 0; at < codes.size(); at += 2) {
    const Text ace = u"(A;;CC" + codes.substr(at, 2) + u";;;)";
    const auto mask = Engine().ConvertStringAceToAce(ace, Text(), Text())->AccessMask;
    masks += ToUtf8(codes.substr(at, 2)) + Hex(static_cast<std::uint32_t>(mask)) + " ";
  }
  EXPECT_EQ(masks,
            "GA10000001 GR80000001 GW40000001 GX20000001 RC20001 SD10001 WD40001 WO80001 RP11 WP21 "
            "CC1 DC3 LC5 SW9 LO81 DT41 CR101 FA1f01ff FR120089 FW120117 FX1200a1 KAf003f KR20019 "
            "KW20007 KX20019 ");
}

TEST_F(DescriptorStrings, RaiseWhatTheyCannotRead) {
  SystemRoot root;
  const auto error = [&](const Text& text) {
    return ErrorOf([&] { root.CreateSDFromStringSD(text, Text()); });
  };
  EXPECT_EQ(error(u"D:AX"), 87);
  EXPECT_EQ(error(u"D:A"), 87);
  EXPECT_EQ(error(u"O:BA D:"), 87);
  EXPECT_EQ(error(u"D:(A;;;;;) (A;;;;;)"), 87);
  EXPECT_EQ(error(u"O:S-1-5-18D:P"), 13);
  EXPECT_EQ(error(u"O:S-1-5-185:"), 87);
  EXPECT_EQ(error(u"O:XX"), 91);
  EXPECT_EQ(error(u"G:XX"), 91);
  EXPECT_EQ(error(u"G:(S-1-5-18"), 5);
  EXPECT_EQ(error(u"D:(A;;FA;;;WD"), 5);
  EXPECT_EQ(error(u"D:(A;;FA;;WD)"), 9);
  EXPECT_EQ(error(u"D:()"), 9);
  EXPECT_EQ(error(u"D:(A;;;;;XX)"), 91);
  EXPECT_EQ(error(u"D:(A;;;;;S-1)"), 6);
  EXPECT_EQ(error(u"D:(A;IDIDIDIDIDIDIDIDIDIDIDIDIDIDIDID;;;;)"), 6);
  EXPECT_EQ(FailureOf([&] { root.CreateSDFromStringSD2(u"D:AX", Text(), Text()); }),
            u"87|Veldmark2.CSupport|The parameter is incorrect.");
}

TEST_F(DescriptorStrings, ResolveTheirAliasesOnTheServerThatIsNamed) {
  auto& domain = estate().AddDomain(u"CORP", *simulated::Sid::FromText(u"S-1-5-21-1-2-3"));
  auto& root_domain = estate().AddDomain(u"ROOT", *simulated::Sid::FromText(u"S-1-5-21-7-8-9"));
  estate().AddMember(domain.name, u"DC1", simulated::Role::PrimaryController);
  estate().AddMember(root_domain.name, u"RDC", simulated::Role::PrimaryController);
  SystemRoot root;
  const auto descriptor =
      root.CreateSDFromStringSD2(u"O:DAD:(A;;FA;;;EA)(A;;FA;;;BA)", u"DC1", u"RDC");
  EXPECT_EQ(Told(descriptor),
            "O:S-1-5-21-1-2-3-512 4 (0;0;1f01ff;;;S-1-5-21-7-8-9-519)"
            "(0;0;1f01ff;;;S-1-5-32-544)");
  EXPECT_EQ(descriptor->GetOwnerSid()->ResidesOnServer(), u"DC1");
  // An owner that is the enterprise's is asked of the server itself.
  EXPECT_EQ(root.CreateSDFromStringSD2(u"O:EA", u"DC1", u"RDC")->GetOwnerSid()->SidText(),
            u"S-1-5-21-1-2-3-519");
  // The platform's own reading takes what the library's doesn't.
  const auto read = root.CreateSDFromStringSD_API(u"O:S-1-5-18D:P(A;;0x1301bf;;;WD)", u"DC1");
  EXPECT_EQ(read->GetOwnerSid()->SidText(), u"S-1-5-18");
  EXPECT_EQ(read->GetOwnerSid()->ResidesOnServer(), u"DC1");
  EXPECT_NE(read->BinarySD(), Variant());
  EXPECT_EQ(AceOf(read->GetDACL(), 1)->AccessMask, 0x1301bf);
  EXPECT_EQ(ErrorOf([&] { root.CreateSDFromStringSD_API(u"D:(ZZ;;;;;)", Text()); }), 1336);
}

}  // namespace
}  // namespace veldmark
