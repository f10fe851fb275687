#include "apartment/CSupport.h"
#include "root/SystemRoot.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"

namespace veldmark {
namespace {

class DescriptorStrings : public ApartmentFixture {};

/// "O:S-1-5-18 1004 P (0;3;10000000;;;S-1-5-32-544)": owner, control in hexadecimal, protection and
/// the entries, each with what it has for an account.
std::string Described(CSecurityDescriptor& descriptor) {
  char number[16];
  const auto hex = [&](std::uint32_t value) {
    std::snprintf(number, sizeof number, "%x", value);
    return std::string(number);
  };
  std::string text;
  if (const auto owner = descriptor.GetOwnerSid()) text += "O:" + ToUtf8(owner->SidText()) + " ";
  text += hex(static_cast<std::uint16_t>(descriptor.Control()));
  const Ref<CAcl> list = descriptor.GetDACL();
  if (!list) return text;
  text += list->IsProtected ? " P " : " ";
  const Ref<CAces> aces = list->GetAces();
  for (std::int32_t index = 1; index <= aces->Count(); ++index) {
    Variant position(index);
    const Ref<CAce> ace = aces->Item(position);
    text += "(" + std::to_string(ace->AceType) + ";" + std::to_string(ace->AceFlags) + ";" +
            hex(static_cast<std::uint32_t>(ace->AccessMask)) + ";" + ToUtf8(ace->ObjectTypeGUID) +
            ";" + ToUtf8(ace->InheritedObjectTypeGUID) + ";" + ToUtf8(ace->GetSid()->SidText()) +
            ")";
  }
  return text;
}

TEST_F(DescriptorStrings, AreReadAsNarrowlyAsTheyAlwaysWere) {
  struct Case {
    const char16_t* text;
    const char* described;
  };
  const Case cases[] = {
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
      {u"D:(A;;;;;)Z", "4 (0;0;0;;;)"},
      {u"", "0 "},
  };
  SystemRoot root;
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.text));
    const auto descriptor = root.CreateSDFromStringSD(c.text, Text());
    EXPECT_EQ(Described(*descriptor), c.described);
    EXPECT_EQ(descriptor->Revision(), *c.text ? 1 : 0);
    EXPECT_EQ(descriptor->BinarySD(), Variant());
    EXPECT_EQ(descriptor->ParentObjectType + descriptor->ParentObjectPath, u"");
  }
  EXPECT_EQ(Described(*root.CreateSDFromStringSD_API(u"", Text())), "0 ");
}

TEST_F(DescriptorStrings, ReadEachRightByItsCode) {
  struct Code {
    const char16_t* code;
    std::uint32_t mask;
  };
  const Code codes[] = {
      {u"GA", 0x10000000}, {u"GR", 0x80000000}, {u"GW", 0x40000000}, {u"GX", 0x20000000},
      {u"RC", 0x20000},    {u"SD", 0x10000},    {u"WD", 0x40000},    {u"WO", 0x80000},
      {u"RP", 0x10},       {u"WP", 0x20},       {u"CC", 0x1},        {u"DC", 0x2},
      {u"LC", 0x4},        {u"SW", 0x8},        {u"LO", 0x80},       {u"DT", 0x40},
      {u"CR", 0x100},      {u"FA", 0x1F01FF},   {u"FR", 0x120089},   {u"FW", 0x120116},
      {u"FX", 0x1200A0},   {u"KA", 0xF003F},    {u"KR", 0x20019},    {u"KW", 0x20006},
      {u"KX", 0x20019},
  };
  for (const Code& c : codes) {
    const Text ace = u"(A;;" + Text(c.code) + u"CC;;;)";
    EXPECT_EQ(
        static_cast<std::uint32_t>(Engine().ConvertStringAceToAce(ace, Text(), Text())->AccessMask),
        c.mask | 1)
        << ToUtf8(c.code);
  }
}

TEST_F(DescriptorStrings, RaiseWhatTheyCannotRead) {
  struct Case {
    const char16_t* text;
    std::int32_t error;
  };
  const Case cases[] = {
      {u"D:AX", 87},
      {u"D:A", 87},
      {u"X:BA", 87},
      {u"O:BA D:", 87},
      {u"D:(A;;;;;) (A;;;;;)", 87},
      {u"O:S-1-5-18D:P", 13},
      {u"O:XX", 91},
      {u"O:", 91},
      {u"G:XX", 91},
      {u"G:S-1-5-18", 91},
      {u"G:(S-1-5-18", 5},
      {u"D:(A;;FA;;;WD", 5},
      {u"D:(A;;FA;;WD)", 9},
      {u"D:()", 9},
      {u"D:(A;;;;;XX)", 91},
      {u"D:(A;;;;;S-1)", 6},
      {u"D:(A;IDIDIDIDIDIDIDIDIDIDIDIDIDIDIDID;;;;)", 6},
  };
  SystemRoot root;
  for (const Case& c : cases) {
    EXPECT_EQ(ErrorOf([&] { root.CreateSDFromStringSD(c.text, Text()); }), c.error)
        << ToUtf8(c.text);
  }
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
  EXPECT_EQ(Described(*descriptor),
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
  Variant first(std::int32_t{1});
  EXPECT_EQ(read->GetDACL()->GetAces()->Item(first)->AccessMask, 0x1301bf);
  EXPECT_EQ(ErrorOf([&] { root.CreateSDFromStringSD_API(u"D:(ZZ;;;;;)", Text()); }), 1336);
}

}  // namespace
}  // namespace veldmark
