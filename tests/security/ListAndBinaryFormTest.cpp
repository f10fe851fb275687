#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "security/AccessRights.h"
#include "security/BinaryDescriptor.h"
#include "security/Guid.h"
#include "security/SecurityFixture.h"

namespace veldmark {
namespace {

constexpr GUID kGuid = {0x4FC59CAB, 0x7EDE, 0xF8D8, {0xB1, 0xB0, 0, 1, 2, 3, 0xA, 0xFF}};
constexpr TextView kGuidText = u"{4FC59CAB-7EDE-F8D8-B1B0-000102030AFF}";

class Lists : public ApartmentFixture {
 protected:
  Lists() { list_->SetAces(aces_); }

  Ref<CAce> Grant(const Text& sid, std::int32_t type, std::int32_t mask, std::int32_t flags,
                  const Text& object_type = {}, const Text& inherited_type = {}) {
    return list_->Grant(sid, static_cast<AceTypeEnum>(type), mask, static_cast<AceFlagsEnum>(flags),
                        object_type, inherited_type);
  }

  Ref<CAces> aces_ = Make<CAces>();
  Ref<CAcl> list_ = Make<CAcl>();
};

TEST_F(Lists, GrantMergesWhatIsTheSameAndAppendsTheRest) {
  const auto first = Grant(u"S-1-5-32-545", 0, 1, 3);
  EXPECT_EQ(AceOf(list_, 1), first);
  const auto merged = Grant(u"s-1-5-32-545", 0, 2, 3);
  EXPECT_EQ(aces_->Count(), 1);
  EXPECT_EQ(first->AccessMask, 3);
  EXPECT_EQ(merged->AccessMask, 2);
  merged->Delete();
  EXPECT_EQ(first->AccessMask, 3);

  // Each of these differs from all before it in one thing.
  Grant(u"S-1-5-32-546", 0, 4, 3);
  Grant(u"S-1-5-32-545", 1, 4, 3);
  Grant(u"S-1-5-32-545", 0, 4, 2);
  Grant(u"S-1-5-32-545", 0, 4, 3, Text(kGuidText));
  Grant(u"S-1-5-32-545", 0, 4, 3, {}, Text(kGuidText));
  EXPECT_EQ(aces_->Count(), 6);
  Grant(u"S-1-5-32-545", 0, 8, 3, u"{4fc59cab-7ede-f8d8-b1b0-000102030aff}");
  EXPECT_EQ(aces_->Count(), 6);
  EXPECT_EQ(AceOf(list_, 5)->AccessMask, 12);
  EXPECT_EQ(first->PermissionsString(), u"");
  EXPECT_EQ(ErrorOf([&] { Grant(u"S-1-5", 0, 1, 0); }), 87);
  EXPECT_EQ(ErrorOf([&] { Grant(u"S-1-5-18", 0, 1, 256); }), 6);
  EXPECT_EQ(aces_->Count(), 6);
  EXPECT_EQ(ErrorOf([] {
              Make<CAcl>()->Grant(u"S-1-5-18", ACCESS_ALLOWED_ACE_TYPE, 1, AceFlagsEnum{}, {}, {});
            }),
            91);
}

TEST_F(Lists, EntriesChangeInPlace) {
  const auto ace = Make<CAce>();
  EXPECT_EQ(ace->GetSid(), ace->GetSid());
  for (const std::uint8_t before : {std::uint8_t{2}, std::uint8_t{18}}) {
    for (const bool inherited : {false, true}) {
      ace->AceFlags = before;
      ace->PutIsInherited(inherited);
      EXPECT_EQ(ace->AceFlags, inherited ? 18 : 2);
      EXPECT_EQ(ace->IsInherited(), inherited);
    }
  }
  ace->AceFlags = 3;
  const std::pair<const char16_t*, const char16_t*> scopes[] = {
      {u"CFolder", u"This folder, subfolders and files"},
      {u"CRegKey", u"This folder, subfolders and files"},
      {u"CFile", u"This file only"},
      {u"CPrinter", u"This printer only"},
      {u"CShare", u""}};
  ace->AccessMask = 0x20008;
  for (const auto& [class_name, scope] : scopes) {
    ace->SetObjectTypeName(class_name);
    EXPECT_EQ(ace->InheritanceScope(), scope);
  }
  ace->SetObjectTypeName(u"CPrinter");
  EXPECT_EQ(ace->PermissionsString() + ace->ExtendedPermissionsString(), u"PrintPrRp");
}

using Guids = ApartmentFixture;

TEST_F(Guids, ReadFromTextsWithAndWithoutBraces) {
  EXPECT_EQ(ConvertGUIDToString(kGuid), kGuidText);
  EXPECT_EQ(ConvertStringToGUID2(u"{4fc59cab-7EDE-f8d8-b1b0-000102030aff}"), kGuid);
  for (const TextView text :
       {kGuidText, kGuidText.substr(1, 36), TextView(u"{4fc59cab-7ede-f8d8-b1b0-000102030aff?")}) {
    EXPECT_EQ(ConvertStringToGUID(text), kGuid);
  }
  const std::pair<const char16_t*, std::int32_t> cases[] = {
      {u"", 9},
      {u"{", 5},
      {u"{}", 9},
      {u"4FC59CAB", 9},
      {u"4FC59CAB-7EDE-48D8-B1B0", 9},
      {u"x-7EDE-48D8-B1B0-B3B8D3B3B3F1", 13},
      {u"-7EDE-48D8-B1B0-B3B8D3B3B3F1", 13},
      {u"4FC59CAB-7EDE-48D8-B1B0-B3B8D3B3B3", 13},
      {u"14FC59CAB-7EDE-48D8-B1B0-B3B8D3B3B3F1", 6},
      {u"4FC59CAB-17EDE-48D8-B1B0-B3B8D3B3B3F1", 6}};
  for (const auto& [given, error] : cases) {
    const TextView text = given;
    EXPECT_EQ(ErrorOf([&] { ConvertStringToGUID(text); }), error) << ToUtf8(text);
    EXPECT_EQ(ErrorOf([&] { ConvertStringToGUID2(text); }), static_cast<std::int32_t>(0x800401F3u));
  }
  // The platform's own form is held to unit by unit.
  for (std::size_t i = 0; i <= kGuidText.size(); ++i) {
    Text text(kGuidText.substr(0, i));
    if (i < kGuidText.size()) text.append(1, u'g').append(kGuidText.substr(i + 1));
    if (i == kGuidText.size()) text += u'}';
    EXPECT_NE(ErrorOf([&] { ConvertStringToGUID2(text); }), 0) << ToUtf8(text);
  }
  EXPECT_NE(ErrorOf([&] { ConvertStringToGUID2(kGuidText.substr(1, 36)); }), 0);
}

/// What is read of a descriptor with some of its bytes replaced: whether it has an owner, and the
/// types of its entries; or the error.
std::string ReadWith(const std::map<std::size_t, std::uint8_t>& replaced, bool plain_entries_only) {
  const std::vector<std::uint8_t> parts[] = {
      {1, 0, 4, 0x80, 20, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 32, 0, 0, 0},
      {1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0},                                       // at 20: owner
      {2, 0, 52, 0, 2, 0, 0, 0},                                                   // at 32: list
      {0, 0, 20, 0, 7, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0},              // at 40
      {5, 0, 24, 0, 7, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 5, 18, 0, 0, 0},  // at 60
  };
  std::vector<std::uint8_t> bytes;
  for (const auto& part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
  for (const auto& [place, byte] : replaced) bytes[place] = byte;
  std::string told;
  const std::int32_t error = ErrorOf([&] {
    const auto descriptor = Read({.object_type = SE_DS_OBJECT,
                                  .object_class = u"",
                                  .resides_on_server = u"",
                                  .plain_entries_only = plain_entries_only},
                                 bytes);
    if (descriptor->GetOwnerSid()) told = "owned";
    const Ref<CAcl> list = descriptor->GetDACL();
    for (int i = 1; i <= list->GetAces()->Count(); ++i) {
      told += " " + std::to_string(AceOf(list, i)->AceType);
    }
  });
  return error == 0 ? told : std::to_string(error);
}

TEST_F(Lists, AreReadByTheirTypesAndLengthsAndRefusedWhereThoseLie) {
  const struct {
    std::map<std::size_t, std::uint8_t> replaced;
    const char *read, *plainly;
  } cases[] = {
      {{}, "owned 0 5", "owned 0 5"},
      {{{40, 1}, {60, 6}}, "owned 1 6", "owned 1 6"},
      {{{40, 2}}, "owned 5", "owned 2 5"},
      {{{40, 4}}, "owned 5", "owned 4 5"},
      {{{40, 7}, {60, 9}}, "owned", "owned 7 9"},
      // The owner: its revision and its number of sub-authorities.
      {{{20, 2}}, " 0 5", " 0 5"},
      {{{21, 16}}, " 0 5", " 0 5"},
      {{{4, 0}}, " 0 5", " 0 5"},
      {{{4, 19}}, "1338", "1338"},
      {{{4, 84}}, "1338", "1338"},
      // Of the descriptor: what there is of it, and that it is in one piece.
      {{{2, 0}, {16, 255}}, "owned", "owned"},
      {{{3, 0}}, "1338", "1338"},
      {{{16, 0}}, "owned", "owned"},
      {{{16, 84}}, "1338", "1338"},
      {{{16, 83}}, "1336", "1336"},
      // The list's size and count, its entries' sizes, and the object entry's flags.
      {{{34, 8}, {36, 0}}, "owned", "owned"},
      {{{34, 7}, {36, 0}}, "1336", "1336"},
      {{{34, 53}}, "1336", "1336"},
      {{{36, 3}}, "1336", "1336"},
      {{{42, 0}}, "1336", "1336"},
      {{{62, 3}}, "1336", "1336"},
      {{{62, 4}}, "1336", "1337"},
      {{{62, 23}}, "1337", "owned 0 5"},
      {{{62, 25}}, "1336", "1336"},
      {{{68, 1}}, "1336", "owned 0 5"},
      {{{68, 4}}, "1336", "owned 0 5"},
  };
  for (const auto& [replaced, read, plainly] : cases) {
    SCOPED_TRACE(testing::PrintToString(replaced));
    EXPECT_EQ(ReadWith(replaced, false), read);
    EXPECT_EQ(ReadWith(replaced, true), plainly);
  }
  EXPECT_EQ(ErrorOf([] { BinaryDescriptor(std::vector<std::uint8_t>(19)); }), 1338);
}

TEST_F(Lists, AreBuiltOnlyOfSoundEntriesThatFit) {
  const SidWords sid = GetSidBufferFromText(u"S-1-5-18");
  std::vector<std::uint8_t> block(8 + 20 + 44);
  AclBuilder builder(block, kAclRevisionDs);
  EXPECT_EQ(ErrorOf([&] { builder.Add(0, 32, 1, AsBytes(sid)); }), 87);
  EXPECT_EQ(ErrorOf([&] { builder.Add(0, 0, 1, {}); }), 1337);
  builder.Add(0, 3, 0x1F01FF, AsBytes(sid));
  EXPECT_EQ(ErrorOf([&] { builder.AddObject(5, 0, 1, kGuid, kGuid, AsBytes(sid)); }), 1344);
  builder.AddObject(5, 0, 1, std::nullopt, kGuid, AsBytes(sid));
  BinaryAcl list(block);
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(list.SizeInformation().bytes_free, 4);
  list.Next();
  EXPECT_EQ(list.Next().ObjectEntry().inherited_object_type, kGuid);
  std::vector<std::uint8_t> too_large(65536);
  EXPECT_EQ(ErrorOf([&] { AclBuilder(too_large, 2); }), 87);
}

using RealDescriptors = ApartmentFixture;

/// The entries that an independent reader found, as ours are told.
std::string ToldOf(const nlohmann::json& aces) {
  std::string text;
  for (const auto& ace : aces) {
    const auto mask = static_cast<std::int32_t>(ace["mask"].get<std::uint32_t>());
    const std::int32_t mapped = MapGenericMask(mask, MappingOf(SE_REGISTRY_KEY));
    text += "(" + std::to_string(ace["type"].get<int>()) + ";" +
            std::to_string(ace["flags"].get<int>()) + ";" +
            Hex(static_cast<std::uint32_t>(mapped)) + ";;;" + ace["sid"].get<std::string>() + ")";
  }
  return text;
}

TEST_F(RealDescriptors, ReadAsAnIndependentReaderReadsThem) {
  const char* const path = VELDMARK_SOURCE_DIR "/../shared/real/descriptors.json";
  std::ifstream file(path);
  if (!file) GTEST_SKIP() << path << " is not there";
  const DescriptorReader reader{
      .object_type = SE_REGISTRY_KEY, .object_class = u"CRegKey", .resides_on_server = u""};
  const nlohmann::json entries = nlohmann::json::parse(file);
  EXPECT_GT(entries.size(), 200u);
  for (const auto& entry : entries) {
    const auto hex = entry["hex"].get<std::string>();
    SCOPED_TRACE(hex);
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
      bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    const Ref<CSecurityDescriptor> descriptor = Read(reader, bytes);
    EXPECT_EQ(descriptor->Revision(), entry["revision"].get<int>());
    EXPECT_EQ(static_cast<std::uint16_t>(descriptor->Control()), entry["control"].get<int>());
    EXPECT_EQ(ToUtf8(descriptor->GetOwnerSid()->SidText()), entry["owner"].get<std::string>());
    const Ref<CAcl> list = descriptor->GetDACL();
    const auto& expected = entry["dacl"];
    EXPECT_EQ(list->Revision(), expected["revision"].get<int>());
    EXPECT_EQ(list->BytesFree(), expected["slack"].get<int>());
    EXPECT_EQ(list->BytesInUse() + list->BytesFree(), expected["size"].get<int>());
    EXPECT_EQ(Told(list), ToldOf(expected["aces"]));
  }
}

}  // namespace
}  // namespace veldmark
