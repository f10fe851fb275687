#include <cstring>

#include "apartment/CSupport.h"
#include "security/BinaryAcl.h"
#include "security/BinaryDescriptor.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/DescriptorReader.h"
#include "security/Guid.h"
#include "support/ApartmentFixture.h"
#include "support/ErrorOf.h"

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
  Ref<CAce> Ace(std::int32_t position) {
    Variant index(position);
    return aces_->Item(index);
  }

  Ref<CAces> aces_ = Make<CAces>();
  Ref<CAcl> list_ = Make<CAcl>();
};

TEST_F(Lists, GrantMergesWhatIsTheSameAndAppendsTheRest) {
  const auto first = Grant(u"S-1-5-32-545", 0, 1, 3);
  EXPECT_EQ(Ace(1), first);
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
  EXPECT_EQ(Ace(5)->AccessMask, 12);
  EXPECT_EQ(first->PermissionsString(), u"");
}

TEST_F(Lists, GrantAddsNothingWhereItRaises) {
  EXPECT_EQ(ErrorOf([&] { Grant(u"S-1-5", 0, 1, 0); }), 87);
  EXPECT_EQ(ErrorOf([&] { Grant(u"S-1-5-18", 0, 1, 256); }), 6);
  EXPECT_EQ(aces_->Count(), 0);
  EXPECT_EQ(ErrorOf([] {
              Make<CAcl>()->Grant(u"S-1-5-18", ACCESS_ALLOWED_ACE_TYPE, 1, AceFlagsEnum{}, {}, {});
            }),
            91);
}

TEST_F(Lists, EntriesChangeInPlace) {
  const auto ace = Make<CAce>();
  EXPECT_EQ(ace->GetSid(), ace->GetSid());
  struct Case {
    std::uint8_t before;
    bool inherited;
    std::uint8_t after;
  };
  for (const Case& c : {Case{18, false, 2}, {2, true, 18}, {2, false, 2}, {18, true, 18}}) {
    ace->AceFlags = c.before;
    ace->PutIsInherited(c.inherited);
    EXPECT_EQ(ace->AceFlags, c.after);
    EXPECT_EQ(ace->IsInherited(), c.inherited);
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

TEST_F(Lists, GuidsReadFromTextsWithAndWithoutBraces) {
  EXPECT_EQ(ConvertGUIDToString(kGuid), kGuidText);
  EXPECT_EQ(ConvertStringToGUID2(u"{4fc59cab-7EDE-f8d8-b1b0-000102030aff}"), kGuid);
  for (const TextView text :
       {kGuidText, kGuidText.substr(1, 36), TextView(u"{4fc59cab-7ede-f8d8-b1b0-000102030aff?")}) {
    EXPECT_EQ(ConvertStringToGUID(text), kGuid);
  }
  struct Case {
    const char16_t* text;
    std::int32_t error;
  };
  const Case cases[] = {{u"", 9},
                        {u"{", 5},
                        {u"{}", 9},
                        {u"4FC59CAB", 9},
                        {u"4FC59CAB-7EDE-48D8-B1B0", 9},
                        {u"x-7EDE-48D8-B1B0-B3B8D3B3B3F1", 13},
                        {u"-7EDE-48D8-B1B0-B3B8D3B3B3F1", 13},
                        {u"4FC59CAB-7EDE-48D8-B1B0-B3B8D3B3B3", 13},
                        {u"14FC59CAB-7EDE-48D8-B1B0-B3B8D3B3B3F1", 6},
                        {u"4FC59CAB-17EDE-48D8-B1B0-B3B8D3B3B3F1", 6}};
  for (const Case& c : cases) {
    EXPECT_EQ(ErrorOf([&] { ConvertStringToGUID(c.text); }), c.error) << ToUtf8(c.text);
    EXPECT_EQ(ErrorOf([&] { ConvertStringToGUID2(c.text); }),
              static_cast<std::int32_t>(0x800401F3u));
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

/// Bytes of little-endian numbers of one width each.
struct Layout {
  Layout& U8(unsigned value) { return Add(value, 1); }
  Layout& U16(unsigned value) { return Add(value, 2); }
  Layout& U32(std::uint32_t value) { return Add(value, 4); }
  Layout& Sid(std::uint32_t value) { return U8(1).U8(1).U32(0).U8(0).U8(5).U32(value); }
  Layout& Add(std::uint32_t value, int width) {
    for (int i = 0; i < width; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    return *this;
  }
  std::vector<std::uint8_t> bytes;
};

std::int32_t WalkError(const std::vector<std::uint8_t>& bytes) {
  return ErrorOf([&] {
    BinaryAcl list(bytes);
    list.SizeInformation();
    for (int i = 0; i < list.Count(); ++i) {
      const BinaryAce ace = list.Next();
      if (ace.type == ACCESS_ALLOWED_OBJECT_ACE_TYPE) {
        ace.ObjectEntry();
      } else {
        ace.Sid();
      }
      ace.AccessMask();
    }
  });
}

TEST_F(Lists, ThatLieAboutTheirLengthsAreRefused) {
  const auto header = [](unsigned size, unsigned count) {
    return Layout().U8(2).U8(0).U16(size).U16(count).U16(0);
  };
  const auto with_ace = [&](unsigned size) {
    return header(28, 1).U8(0).U8(0).U16(size).U32(7).Sid(18).bytes;
  };
  EXPECT_EQ(WalkError(with_ace(20)), 0);
  EXPECT_EQ(WalkError(with_ace(24)), 1336);
  EXPECT_EQ(WalkError(with_ace(16)), 1337);
  EXPECT_EQ(WalkError(with_ace(4)), 1337);
  EXPECT_EQ(WalkError(with_ace(3)), 1336);
  EXPECT_EQ(WalkError(with_ace(0)), 1336);
  EXPECT_EQ(WalkError({}), 1336);
  EXPECT_EQ(WalkError(header(8, 0).bytes), 0);
  EXPECT_EQ(WalkError(header(7, 0).bytes), 1336);
  EXPECT_EQ(WalkError(header(9, 0).bytes), 1336);
  EXPECT_EQ(WalkError(header(8, 1).bytes), 1336);
  EXPECT_EQ(WalkError(header(8, 65535).bytes), 1336);
  const auto object_ace = [&](std::uint32_t object_flags) {
    return header(32, 1).U8(5).U8(0).U16(24).U32(7).U32(object_flags).Sid(18).bytes;
  };
  EXPECT_EQ(WalkError(object_ace(0)), 0);
  EXPECT_EQ(WalkError(object_ace(1)), 1336);
  EXPECT_EQ(WalkError(object_ace(4)), 1336);
}

TEST_F(Lists, OfDescriptorsThatLieAreRefused) {
  const auto descriptor = [](unsigned control, std::uint32_t owner, std::uint32_t list) {
    return Layout().U8(1).U8(0).U16(control).U32(owner).U32(0).U32(0).U32(list).Sid(18).bytes;
  };
  const auto error = [](const std::vector<std::uint8_t>& bytes) {
    return ErrorOf([&] { BinaryDescriptor parts(bytes); });
  };
  EXPECT_EQ(error(descriptor(0x8004, 20, 20)), 0);
  EXPECT_EQ(error(descriptor(0x8004, 0, 0)), 0);
  EXPECT_EQ(error(descriptor(0x0004, 20, 20)), 1338);
  EXPECT_EQ(error(descriptor(0x8004, 19, 20)), 1338);
  EXPECT_EQ(error(descriptor(0x8004, 32, 20)), 1338);
  EXPECT_EQ(error(descriptor(0x8004, 20, 0xFFFFFFFF)), 1338);
  EXPECT_EQ(error(descriptor(0x8000, 20, 0xFFFFFFFF)), 0);
  std::vector<std::uint8_t> cut = descriptor(0x8004, 0, 0);
  cut.resize(19);
  EXPECT_EQ(error(cut), 1338);
}

TEST_F(Lists, AreReadByTheTypesOfTheirEntriesAndOwnersWhereTheyAreSound) {
  const auto read = [](unsigned sid_revision, unsigned sub_authorities, bool plain_only) {
    Layout layout;
    layout.U8(1).U8(0).U16(0x8004).U32(20).U32(0).U32(0).U32(32);
    layout.U8(sid_revision).U8(sub_authorities).U32(0).U16(0x500).U32(18);
    layout.U8(4).U8(0).U16(8 + 10 * 24).U16(10).U16(0);
    for (unsigned type = 0; type < 10; ++type) {
      layout.U8(type).U8(0).U16(24).U32(7);
      const bool is_object = type == 5 || type == 6;
      // What lies before the SID of an object entry would be one without sub-authorities.
      if (is_object) layout.U32(0);
      layout.Sid(18);
      if (!is_object) layout.U32(0);
    }
    const auto descriptor = Make<CSecurityDescriptor>();
    const DescriptorReader reader{.object_type = SE_DS_OBJECT,
                                  .object_class = u"",
                                  .resides_on_server = u"",
                                  .plain_entries_only = plain_only};
    const BinaryDescriptor parts = reader.ReadHeader(*descriptor, layout.bytes);
    reader.ReadOwner(*descriptor, parts);
    reader.ReadDacl(*descriptor, parts);
    EXPECT_EQ(Err().Number(), 0);
    std::string told = descriptor->GetOwnerSid() ? "owned" : "";
    const Ref<CAces> aces = descriptor->GetDACL()->GetAces();
    for (std::int32_t i = 1; i <= aces->Count(); ++i) {
      Variant index(i);
      told += " " + std::to_string(aces->Item(index)->AceType);
    }
    return told;
  };
  EXPECT_EQ(read(1, 1, false), "owned 0 1 5 6");
  EXPECT_EQ(read(1, 1, true), "owned 0 1 2 3 4 5 6 7 8 9");
  EXPECT_EQ(read(2, 1, false), " 0 1 5 6");
  EXPECT_EQ(read(1, 16, false), " 0 1 5 6");
  EXPECT_EQ(read(1, 15, false), "owned 0 1 5 6");
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

}  // namespace
}  // namespace veldmark
