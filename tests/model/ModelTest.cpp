#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "model/IdlWriter.h"
#include "model/ManifestWriter.h"
#include "model/ReferenceWriter.h"
#include "root/ObjectModel.h"

namespace veldmark {
namespace {

TEST(Model, TheFilesInTheCheckoutSayWhatTheTablesSay) {
  const std::pair<const char*, std::string> files[] = {
      {"model/Veldmark2.idl", IdlText()},
      {"docs/reference.md", ReferenceText()},
      {"examples/unregistered/Veldmark2.manifest", ManifestText()},
  };
  for (const auto& [name, text] : files) {
    std::ifstream file(VELDMARK_SOURCE_DIR + std::string("/") + name, std::ios::binary);
    const std::string found{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(found == text) << name << " is out of date; renew it by: ninja -C "
                               << VELDMARK_BINARY_DIR << " renew_model";
  }
}

TEST(Model, NoTwoTypesShareAnIdentifierOrAName) {
  std::set<Identity> identities{LibraryIdentity()};
  std::set<Text> names;
  const auto add = [&](const Identity& identity, const Text& name) {
    EXPECT_TRUE(identities.insert(identity).second) << ToUtf8(name);
    EXPECT_TRUE(names.insert(LowerAscii(name)).second) << ToUtf8(name);
  };
  for (const Interface* table : ObjectModel()) {
    add(table->ClassIdentity(), table->name);
    add(table->InterfaceIdentity(), table->InterfaceName());
    EXPECT_EQ(FindClass(table->ClassIdentity()), table);
  }
  for (const EventInterface* table : EventInterfaces())
    add(table->InterfaceIdentity(), table->name);
  for (const Enumeration* table : Enumerations()) {
    add(table->EnumerationIdentity(), table->name);
    for (const Enumeration::Value& value : table->values) {
      EXPECT_TRUE(names.insert(LowerAscii(value.name)).second) << ToUtf8(value.name);
    }
  }
  EXPECT_EQ(FindClass(LibraryIdentity()), nullptr);
}

/// What the interface compiler and early-bound clients could not take.
TEST(Model, EveryMemberCanBeStatedInATypeLibrary) {
  const auto is_name = [](const Text& name) {
    return !name.empty() && std::ranges::all_of(name, [](char16_t c) {
      return c == u'_' || (c < 0x80 && std::isalnum(static_cast<int>(c)));
    });
  };
  const auto is_plain = [](const Text& help) {
    return !help.empty() &&
           std::ranges::all_of(help, [](char16_t c) { return c >= 32 && c < 127; });
  };
  for (const Interface* table : ObjectModel()) {
    SCOPED_TRACE(ToUtf8(table->name));
    EXPECT_TRUE(is_plain(table->help));
    std::set<std::pair<std::int32_t, MemberKind>> slots;
    for (const Member& member : table->members) {
      SCOPED_TRACE(ToUtf8(member.name));
      EXPECT_TRUE(is_name(member.name));
      EXPECT_TRUE(is_plain(member.help));
      EXPECT_TRUE(slots.insert({member.id, member.kind}).second) << "identifier taken";
      EXPECT_EQ(table->IdOf(member.name), member.id);
      bool optional = false;
      std::set<Text> names{u"result"};
      for (const Parameter& parameter : member.parameters) {
        EXPECT_TRUE(is_name(parameter.name));
        EXPECT_TRUE(names.insert(LowerAscii(parameter.name)).second) << ToUtf8(parameter.name);
        EXPECT_TRUE(parameter.default_value || !optional) << "required after optional";
        optional = optional || parameter.default_value.has_value();
      }
    }
  }
}

}  // namespace
}  // namespace veldmark
