#include "platform/simulated/estate_file/RegistryReader.h"

#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {

namespace {

void ReadTypedValue(const Node& node, TextView name, RegistryNode& key) {
  node.OnlyFields({"type", "text", "number", "hex"});
  if (const Node type = node.Required("type"); type.IsNumber()) {
    key.Data(name, type.Unsigned32(), ReadHex(node.Required("hex")));
    return;
  }
  switch (node.Required("type").OneOf({"expand", "qword", "binary", "none", "string", "dword"})) {
    case 0:
      key.String(name, node.Required("text").String(), kRegExpandSz);
      break;
    case 1:
      key.Qword(name, static_cast<std::uint64_t>(node.Required("number").Integer(
                          0, std::numeric_limits<std::int64_t>::max())));
      break;
    case 2:
      key.Data(name, kRegBinary, ReadHex(node.Required("hex")));
      break;
    case 3:
      key.Data(name, kRegNone, ReadHex(node.Required("hex")));
      break;
    // Bytes that don't make a text or number are what some programs leave behind.
    case 4:
      key.Data(name, kRegSz, ReadHex(node.Required("hex")));
      break;
    default:
      key.Data(name, kRegDword, ReadHex(node.Required("hex")));
  }
}

void ReadValue(const Node& node, TextView name, RegistryNode& key) {
  if (key.FindValue(name) != nullptr) node.Complain("the key has this value already");
  if (node.IsText()) {
    key.String(name, node.String());
  } else if (node.IsNumber()) {
    key.Dword(name, static_cast<std::uint32_t>(
                        node.Integer(0, std::numeric_limits<std::uint32_t>::max())));
  } else if (node.IsArray()) {
    std::vector<Text> texts;
    for (const Node& element : node.Elements()) texts.push_back(element.String());
    key.Strings(name, texts);
  } else if (node.IsObject()) {
    ReadTypedValue(node, name, key);
  } else {
    node.Complain("must be a text, a number, an array of texts or an object with a type");
  }
}

void ReadKey(const Node& node, RegistryNode& key, const Estate& estate, int depth) {
  if (depth > kDeepestFolder) node.Complain("keys are nested too deeply");
  node.OnlyFields({"class", "denied", "security", "values", "keys"});
  if (const auto security = node.Field("security")) key.Security(ReadSecurity(*security, estate));
  if (const auto key_class = node.Field("class")) key.Class(key_class->String());
  if (const auto denied = node.Field("denied")) {
    for (const Node& element : denied->Elements()) {
      if (element.OneOf({"read", "write"}) == 0) {
        key.DenyRead();
      } else {
        key.DenyWrite();
      }
    }
  }
  if (const auto values = node.Field("values")) {
    for (const auto& [name, value] : values->Members()) ReadValue(value, FromUtf8(name), key);
  }
  const auto keys = node.Field("keys");
  if (!keys) return;
  for (const auto& [name, child] : keys->Members()) {
    // A name may be a path, which saves a level of nesting for each of its steps.
    const Text path = FromUtf8(name);
    if (path.find_first_not_of(u'\\') == Text::npos || path.starts_with(u'\\')) {
      child.Complain("no key can have this name");
    }
    ReadKey(child, key.Key(path), estate, depth + 1);
  }
}

}  // namespace

void ReadRegistry(const Node& node, Computer& computer, Estate& estate) {
  node.OnlyFields({"HKLM", "HKU", "HKCU"});
  // The user's own key is there before anything is said about it.
  if (&computer == &estate.local()) estate.current_user();
  if (const auto root = node.Field("HKLM")) ReadKey(*root, computer.local_machine(), estate, 1);
  if (const auto root = node.Field("HKU")) ReadKey(*root, computer.users(), estate, 1);
  if (const auto root = node.Field("HKCU")) {
    if (&computer != &estate.local()) root->Complain("only the local computer has a current user");
    ReadKey(*root, estate.current_user(), estate, 1);
  }
}

}  // namespace veldmark::simulated
