#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "security/AccessRights.h"
#include "security/BinaryAcl.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/DescriptorReader.h"
#include "support/ApartmentFixture.h"

namespace veldmark {
namespace {

class RealDescriptors : public ApartmentFixture {};

/// The list that an independent reader found, as what ours makes of it is told below.
std::string Told(const nlohmann::json& list) {
  std::string text = std::to_string(list["size"].get<int>() - list["slack"].get<int>()) + "+" +
                     std::to_string(list["slack"].get<int>());
  for (const auto& ace : list["aces"]) {
    const auto mask = static_cast<std::int32_t>(ace["mask"].get<std::uint32_t>());
    text += " " + std::to_string(ace["type"].get<int>()) + ";" +
            std::to_string(ace["flags"].get<int>()) + ";" +
            std::to_string(MapGenericMask(mask, MappingOf(SE_REGISTRY_KEY))) + ";" +
            ace["sid"].get<std::string>();
  }
  return text;
}

std::string Told(const Ref<CAcl>& list) {
  std::string text = std::to_string(list->BytesInUse()) + "+" + std::to_string(list->BytesFree());
  for (std::int32_t i = 1; i <= list->GetAces()->Count(); ++i) {
    Variant index(i);
    const Ref<CAce> ace = list->GetAces()->Item(index);
    text += " " + std::to_string(ace->AceType) + ";" + std::to_string(ace->AceFlags) + ";" +
            std::to_string(ace->AccessMask) + ";" + ToUtf8(ace->GetSid()->SidText());
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
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
      bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    const auto descriptor = Make<CSecurityDescriptor>();
    const BinaryDescriptor parts = reader.ReadHeader(*descriptor, bytes);
    reader.ReadOwner(*descriptor, parts);
    reader.ReadDacl(*descriptor, parts);
    EXPECT_EQ(descriptor->Revision(), entry["revision"].get<int>());
    EXPECT_EQ(static_cast<std::uint16_t>(descriptor->Control()), entry["control"].get<int>());
    EXPECT_EQ(ToUtf8(descriptor->GetOwnerSid()->SidText()), entry["owner"].get<std::string>());
    const Ref<CAcl> list = descriptor->GetDACL();
    EXPECT_EQ(list->Revision(), entry["dacl"]["revision"].get<int>());
    EXPECT_EQ(Told(list), Told(entry["dacl"])) << hex;

    // Written anew, entry by entry, it is what it was.
    std::vector<std::uint8_t> written(static_cast<std::size_t>(list->BytesInUse()));
    AclBuilder builder(written, list->Revision());
    BinaryAcl read(parts.dacl);
    for (int i = 0; i < read.Count(); ++i) {
      const BinaryAce ace = read.Next();
      const SidWords sid = CopySid(ace.Sid());
      builder.Add(ace.type, ace.flags, ace.AccessMask(), AsBytes(sid));
    }
    const Bytes before = read.bytes().subspan(4, written.size() - 4);
    EXPECT_TRUE(std::equal(before.begin(), before.end(), written.begin() + 4)) << hex;
  }
}

}  // namespace
}  // namespace veldmark
