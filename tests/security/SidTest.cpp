#include "security/SecurityFixture.h"

namespace veldmark {
namespace {

using Sids = ApartmentFixture;

/// A binary SID of these bytes of authority.
ByteArray SidBytes(std::vector<std::uint8_t> authority, std::vector<std::uint32_t> values) {
  std::vector<std::uint8_t> bytes = {1, static_cast<std::uint8_t>(values.size())};
  bytes.insert(bytes.end(), authority.begin(), authority.end());
  for (const std::uint32_t value : values) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes.push_back(static_cast<std::uint8_t>(value >> shift));
    }
  }
  return ByteArray(std::move(bytes));
}

TEST_F(Sids, ReadBackFromTextAsTheirBinaryFormHasThemOrAreRefused) {
  struct Case {
    Text text;
    const char16_t* read_back;  // null: none
    std::int32_t error = 0;
  };
  Text many = u"S-1-5";
  for (int i = 0; i < 256; ++i) many += u"-1";
  const Case cases[] = {
      {u"S-1-5-32-544", u"S-1-5-32-544"},
      {u"s-1-5-18", u"S-1-5-18"},
      {u"X-9-5-18", u"S-1-5-18"},
      {u"-- 3 -&H10", u"S-1-3-16"},
      {u"S-1-5.0-18", u"S-1-5-18"},
      {u"S-1-4-18", u"S-1-0-18"},
      {u"S-1-16-4096", u"S-1-0-4096"},
      {u"S-1-1-4294967295", u"S-1-1-4294967295"},
      {u"S-1-2-2147483648", u"S-1-2-2147483648"},
      {u"S-1-5-1-2-3-4-5-6-7-8", u"S-1-5-1-2-3-4-5-6-7-8"},
      {u"S-1-5-2.5-3.5", u"S-1-5-2-4"},
      {u"", nullptr, 6},
      {u"S-1", nullptr, 6},
      {u"S-1-5", nullptr, 87},
      {u"S-1-x-1", nullptr, 13},
      {u"S-1--1-7", nullptr, 13},
      {u"S-1-5-", nullptr, 13},
      {u"S-1-5-4294967296", nullptr, 6},
      {u"S-1-5-1e99", nullptr, 6},
      {u"S-1-5-1-2-3-4-5-6-7-8-9", nullptr, 9},
      {many, nullptr, 6},
  };
  SystemRoot root;
  for (const Case& c : cases) {
    SCOPED_TRACE(ToUtf8(c.text));
    Ref<CSid> sid;
    EXPECT_EQ(ErrorOf([&] { sid = root.GetSidFromText(c.text); }), c.error);
    if (!c.read_back) continue;
    EXPECT_EQ(sid->SidText(), c.read_back);
    EXPECT_TRUE(sid->IsValid());
    auto same = root.GetSidFromText2(c.read_back, u"SRV");
    EXPECT_TRUE(sid->IsEqual(same));
    EXPECT_EQ(sid->SidLength(), same->SidLength());
    EXPECT_EQ(same->ResidesOnServer(), u"SRV");
  }
  const auto system = root.GetSidFromText(u"S-1-5-18");
  for (const char16_t* text : {u"S-1-5-19", u"S-1-5-18-544", u"S-1-3-18"}) {
    auto other = root.GetSidFromText(text);
    EXPECT_FALSE(system->IsEqual(other)) << ToUtf8(text);
  }
  EXPECT_EQ(system->SIDType(), 0);
  Err().Set(AutomationError(1, u"Before", u""));
  EXPECT_EQ(FailureOf([&] { root.GetSidFromText(u"S-1-5"); }), u"87|Before|" + GetAPIErrorText(87));
}

TEST_F(Sids, PrintEveryAuthorityInItsOwnWay) {
  const std::pair<std::vector<std::uint8_t>, const char16_t*> cases[] = {
      {{0, 0, 0, 0, 0, 5}, u"S-1-5-21-7"},
      {{0, 0, 0, 0, 1, 0}, u"S-1-256-21-7"},
      {{0, 0, 0x7F, 0xFF, 0xFF, 0xFF}, u"S-1-2147483647-21-7"},
      {{0, 0, 0x80, 0, 0, 0}, u"S-1-"},
      {{1, 2, 3, 4, 5, 200}, u"S-1-0x0102030405200-21-7"},
      {{0, 10, 0, 0, 0, 99}, u"S-1-0x001000000099-21-7"},
      {{0, 1, 0x80, 0, 0, 0}, u"S-1-0x0001128000000"},
  };
  for (const auto& [authority, text] : cases) {
    const Variant bytes(SidBytes(authority, {21, 7}));
    EXPECT_EQ(SystemRoot().GetSidObjectFromSid(bytes, u"")->SidText(), text);
  }
}

TEST_F(Sids, TakeOnlyBytesThatHoldOne) {
  SystemRoot root;
  const auto with = [&](Variant bytes) {
    return ErrorOf([&] { root.GetSidObjectFromSid(bytes, u"SRV"); });
  };
  EXPECT_EQ(with(Variant()), 13);
  EXPECT_EQ(with(Variant(u"S-1-5-18")), 13);
  EXPECT_EQ(with(Variant(ByteArray())), 1337);
  ByteArray sid = SidBytes({0, 0, 0, 0, 0, 5}, {18});
  EXPECT_EQ(with(Variant(sid)), 0);
  EXPECT_EQ(root.GetSidObjectFromSid(Variant(sid), u"SRV")->ResidesOnServer(), u"SRV");
  sid.elements[1] = 2;
  EXPECT_EQ(with(Variant(sid)), 1337);
  sid.elements.resize(7);
  EXPECT_EQ(with(Variant(sid)), 1337);
  // More bytes than the SID has are left alone; more sub-authorities than one can have make it
  // unsound, and it has no text.
  sid = SidBytes({0, 0, 0, 0, 0, 5}, std::vector<std::uint32_t>(16, 1));
  const auto unsound = root.GetSidObjectFromSid(Variant(sid), u"");
  EXPECT_FALSE(unsound->IsValid());
  EXPECT_EQ(unsound->SidText(), u"");
  EXPECT_EQ(unsound->SidLength(), 72);
  sid.elements[1] = 15;
  EXPECT_EQ(root.GetSidObjectFromSid(Variant(sid), u"")->SidLength(), 68);
  EXPECT_TRUE(root.GetSidObjectFromSid(Variant(sid), u"")->IsValid());
  sid.elements[0] = 2;
  EXPECT_FALSE(root.GetSidObjectFromSid(Variant(sid), u"")->IsValid());
}

TEST_F(Sids, WithoutBinaryFormMakeItFromTheirText) {
  const auto empty = Make<CSid>();
  Ref<CSid> other;
  EXPECT_FALSE(empty->IsValid());
  EXPECT_FALSE(empty->IsEqual(other));
  other = empty;
  EXPECT_FALSE(empty->IsEqual(other));
  EXPECT_EQ(empty->SidText(), u"");
  EXPECT_EQ(ErrorOf([&] { empty->SidLength(); }), 6);
  EXPECT_EQ(ErrorOf([&] { empty->pSid(); }), 6);
  EXPECT_EQ(empty->AccountName(), u"");

  const auto named = Make<CSid>();
  named->SetSidText(u"S-1-5-32-545");
  EXPECT_EQ(named->SidLength(), 16);
  EXPECT_TRUE(named->IsValid());
  other = Engine().GetSidFromText(u"S-1-5-32-545", u"");
  EXPECT_TRUE(named->IsEqual(other));
  if constexpr (sizeof(void*) > 4) {
    EXPECT_EQ(ErrorOf([&] { named->pSid(); }), 6);
  }
}

}  // namespace
}  // namespace veldmark
