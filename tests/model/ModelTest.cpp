#include <gtest/gtest.h>

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

}  // namespace
}  // namespace veldmark
