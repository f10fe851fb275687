#include "platform/simulated/EstateFile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "automation/CaseMapping.h"
#include "platform/simulated/FileNames.h"
#include "platform/simulated/VersionDescription.h"

namespace veldmark::simulated {
namespace {

using Json = nlohmann::json;

constexpr int kDeepestFolder = 200;
constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 62;

// A value together with its place, so that every complaint can name it.
class Node {
 public:
  Node(const Json& json, std::string place) : json_(json), place_(std::move(place)) {}

  [[noreturn]] void Complain(const std::string& problem) const {
    throw EstateFileError(place_, problem);
  }

  const Json& json() const { return json_; }
  const std::string& place() const { return place_; }

  // Checks that this is an object of these fields only, each at most once.
  void OnlyFields(std::initializer_list<std::string_view> fields) const {
    for (const auto& [name, node] : Members()) {
      bool known = false;
      for (const std::string_view field : fields) known = known || field == name;
      if (!known) node.Complain("unknown field");
    }
  }

  std::optional<Node> Field(const char* name) const {
    const auto found = json_.find(name);
    if (found == json_.end()) return std::nullopt;
    return At(*found, name);
  }

  Node Required(const char* name) const {
    const auto field = Field(name);
    if (!field) Complain(std::string("lacks the field \"") + name + "\"");
    return *field;
  }

  std::vector<std::pair<std::string, Node>> Members() const {
    if (!json_.is_object()) ComplainOfType("an object");
    std::vector<std::pair<std::string, Node>> members;
    for (const auto& [name, value] : json_.items()) members.emplace_back(name, At(value, name));
    return members;
  }

  std::vector<Node> Elements() const {
    if (!json_.is_array()) ComplainOfType("an array");
    std::vector<Node> elements;
    for (std::size_t index = 0; index < json_.size(); ++index) {
      elements.push_back(At(json_[index], std::to_string(index)));
    }
    return elements;
  }

  std::string Utf8() const {
    if (!json_.is_string()) ComplainOfType("a text");
    return json_.get<std::string>();
  }

  Text String() const { return FromUtf8(Utf8()); }

  bool Boolean() const {
    if (!json_.is_boolean()) ComplainOfType("true or false");
    return json_.get<bool>();
  }

  std::int64_t Integer(std::int64_t least, std::int64_t most) const {
    if (!json_.is_number_integer()) ComplainOfType("a whole number");
    const bool too_large =
        json_.is_number_unsigned() && json_.get<std::uint64_t>() > static_cast<std::uint64_t>(most);
    if (too_large || json_.get<std::int64_t>() < least || json_.get<std::int64_t>() > most) {
      Complain("must lie between " + std::to_string(least) + " and " + std::to_string(most));
    }
    return json_.get<std::int64_t>();
  }

  // The index of the text among the words.
  std::size_t OneOf(std::initializer_list<std::string_view> words) const {
    const std::string text = Utf8();
    std::string all;
    std::size_t index = 0;
    for (const std::string_view word : words) {
      if (word == text) return index;
      all += (index++ == 0 ? "" : ", ") + std::string(word);
    }
    Complain("must be one of " + all);
  }

  // Runs what throws std::invalid_argument for values that an estate can't have.
  template <typename Action>
  decltype(auto) Try(Action action) const {
    try {
      return action();
    } catch (const std::invalid_argument& problem) {
      Complain(problem.what());
    }
  }

 private:
  Node At(const Json& json, std::string_view name) const {
    std::string place = place_ + "/";
    for (const char unit : name) {
      if (unit == '~') {
        place += "~0";
      } else if (unit == '/') {
        place += "~1";
      } else {
        place += unit;
      }
    }
    return Node(json, std::move(place));
  }

  [[noreturn]] void ComplainOfType(const std::string& expected) const {
    Complain("must be " + expected + ", not " + json_.type_name());
  }

  const Json& json_;
  std::string place_;
};

// "2024-03-05T14:30:00Z", perhaps with a fraction of a second.
Ticks ReadTime(const Node& node) {
  const std::string text = node.Utf8();
  static constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd";
  bool matches = text.size() > kForm.size() && text.back() == 'Z';
  for (std::size_t index = 0; matches && index < kForm.size(); ++index) {
    const bool is_digit = text[index] >= '0' && text[index] <= '9';
    matches = kForm[index] == 'd' ? is_digit : text[index] == kForm[index];
  }
  Ticks fraction = 0;
  const std::size_t digits = matches ? text.size() - kForm.size() - 1 : 0;
  if (digits > 0) {
    matches = text[kForm.size()] == '.' && digits >= 2 && digits <= 8;
    Ticks unit = kTicksPerSecond / 10;
    for (std::size_t index = 1; matches && index < digits; ++index, unit /= 10) {
      const char digit = text[kForm.size() + index];
      matches = digit >= '0' && digit <= '9';
      if (matches) fraction += unit * static_cast<Ticks>(digit - '0');
    }
  }
  if (!matches) node.Complain("must be a UTC time such as 2024-03-05T14:30:00Z");
  const auto number = [&](std::size_t start, std::size_t count) {
    return static_cast<WORD>(std::stoi(text.substr(start, count)));
  };
  const SYSTEMTIME time{.wYear = number(0, 4),
                        .wMonth = number(5, 2),
                        .wDayOfWeek = 0,
                        .wDay = number(8, 2),
                        .wHour = number(11, 2),
                        .wMinute = number(14, 2),
                        .wSecond = number(17, 2),
                        .wMilliseconds = 0};
  const auto ticks = ToTicks(time);
  if (!ticks) node.Complain("there is no such time");
  return *ticks + fraction;
}

std::vector<std::uint8_t> ReadHex(const Node& node) {
  std::vector<std::uint8_t> bytes;
  int high = -1;
  for (const char digit : node.Utf8()) {
    if (digit == ' ') continue;
    int value = -1;
    if (digit >= '0' && digit <= '9') value = digit - '0';
    if (digit >= 'a' && digit <= 'f') value = digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') value = digit - 'A' + 10;
    if (value < 0) node.Complain("must be hexadecimal digits");
    if (high < 0) {
      high = value;
    } else {
      bytes.push_back(static_cast<std::uint8_t>(high * 16 + value));
      high = -1;
    }
  }
  if (high >= 0) node.Complain("must be an even number of hexadecimal digits");
  return bytes;
}

MessageTable ReadMessages(const Node& node) {
  MessageTable messages;
  for (const auto& [name, text] : node.Members()) {
    const bool is_number = !name.empty() && name.size() <= 10 &&
                           name.find_first_not_of("0123456789") == std::string::npos;
    const unsigned long long number = is_number ? std::stoull(name) : 0;
    if (!is_number || number > std::numeric_limits<DWORD>::max()) {
      text.Complain("the field's name must be a message number");
    }
    messages[static_cast<DWORD>(number)] = text.String();
  }
  return messages;
}

char16_t ReadDriveLetter(const Node& node, std::string_view name) {
  const bool is_drive = name.size() == 2 && name[1] == ':' &&
                        ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z'));
  if (!is_drive) node.Complain("the field's name must be a drive such as C:");
  return static_cast<char16_t>(name[0]);
}

void ReadTimeZone(const Node& node, Estate& estate) {
  node.OnlyFields(
      {"bias", "standardName", "standardBias", "daylightName", "daylightBias", "current"});
  const auto bias = [&](const char* name) {
    const auto field = node.Field(name);
    return field ? static_cast<LONG>(field->Integer(-1440, 1440)) : 0;
  };
  TIME_ZONE_INFORMATION zone{};
  const auto name = [&](const char* field_name, WCHAR(&place)[32]) {
    const auto field = node.Field(field_name);
    if (!field) return;
    const Text text = field->String();
    if (text.size() >= std::size(place)) field->Complain("may have 31 characters");
    text.copy(place, text.size());
  };
  zone.Bias = bias("bias");
  zone.StandardBias = bias("standardBias");
  zone.DaylightBias = bias("daylightBias");
  name("standardName", zone.StandardName);
  name("daylightName", zone.DaylightName);
  static constexpr std::array<DWORD, 4> kIds = {kTimeZoneIdUnknown, kTimeZoneIdStandard,
                                                kTimeZoneIdDaylight, kTimeZoneIdInvalid};
  const auto current = node.Field("current");
  const std::size_t index =
      current ? current->OneOf({"unknown", "standard", "daylight", "invalid"}) : 0;
  estate.SetTimeZone(zone, kIds[index]);
}

DWORD ReadAttributes(const Node& node) {
  static constexpr std::array<DWORD, 9> kBits = {
      kFileAttributeReadOnly,  kFileAttributeHidden,    kFileAttributeSystem,
      kFileAttributeArchive,   kFileAttributeTemporary, kFileAttributeCompressed,
      kFileAttributeEncrypted, kFileAttributeOffline,   kFileAttributeReparsePoint};
  DWORD attributes = 0;
  for (const Node& element : node.Elements()) {
    attributes |= kBits[element.OneOf({"readOnly", "hidden", "system", "archive", "temporary",
                                       "compressed", "encrypted", "offline", "alias"})];
  }
  return attributes;
}

// A descriptor as a string, in which account aliases belong to the estate's user's domain.
SecurityDescriptor ReadSecurity(const Node& node, const Estate& estate) {
  const Text text = node.String();
  return node.Try([&] { return DescriptorOf(text, estate.domain()); });
}

Sid ReadSid(const Node& node) {
  const auto sid = Sid::FromText(node.String());
  if (!sid) node.Complain("is no SID");
  return *sid;
}

void ReadUser(const Node& node, Estate& estate) {
  node.OnlyFields({"name", "sid", "groups", "privileges"});
  const Sid sid = ReadSid(node.Required("sid"));
  estate.SetUser(node.Required("name").String(), sid.ToText());
  if (const auto field = node.Field("groups")) {
    std::vector<Sid> groups;
    for (const Node& element : field->Elements()) groups.push_back(ReadSid(element));
    groups.insert(groups.end(), {EveryoneSid(), AuthenticatedUsersSid()});
    Token token(sid, std::move(groups));
    // What others than administrators lack, they can't enable either.
    if (token.Is(AdministratorsSid())) {
      for (const auto& [privilege, attributes] : estate.token().privileges()) {
        token.SetPrivilege(privilege, attributes);
      }
    }
    estate.SetToken(std::move(token));
  }
  if (const auto field = node.Field("privileges")) {
    estate.token().ClearPrivileges();
    for (const auto& [name, enabled] : field->Members()) {
      const auto privilege = FindPrivilege(FromUtf8(name));
      if (!privilege) enabled.Complain("there is no such privilege");
      estate.token().SetPrivilege(*privilege, enabled.Boolean() ? kSePrivilegeEnabled : 0);
    }
  }
}

void ReadDenied(const Node& node, FileNode& file) {
  for (const Node& element : node.Elements()) {
    switch (element.OneOf({"list", "read", "write", "security", "delete"})) {
      case 0:
        file.DenyList();
        break;
      case 1:
        file.DenyRead();
        break;
      case 2:
        file.DenyWrite();
        break;
      case 3:
        file.DenySecurity();
        break;
      default:
        file.DenyDelete();
    }
  }
}

void ReadVersion(const Node& node, FileNode& file) {
  node.OnlyFields({"file", "product", "translations", "strings", "hex"});
  if (const auto hex = node.Field("hex")) {
    if (node.Members().size() > 1) hex->Complain("stands for the whole resource");
    std::vector<std::uint8_t> bytes = ReadHex(*hex);
    if (bytes.empty()) hex->Complain("is no resource");
    file.Version(std::move(bytes));
    return;
  }
  const auto number = [](const Node& field) {
    return field.Try([&] { return VersionDescription::ParseNumber(field.Utf8()); });
  };
  VersionDescription version;
  version.file = number(node.Required("file"));
  const auto product = node.Field("product");
  version.product = product ? number(*product) : version.file;
  if (const auto strings = node.Field("strings")) {
    for (const auto& [translation, table] : strings->Members()) {
      version.translations.push_back(FromUtf8(translation));
      auto& texts =
          version.strings.emplace_back(version.translations.back(), VersionDescription::Strings());
      for (const auto& [name, text] : table.Members()) {
        texts.second.emplace_back(FromUtf8(name), text.String());
      }
    }
  }
  if (const auto translations = node.Field("translations")) {
    version.translations.clear();
    for (const Node& translation : translations->Elements()) {
      version.translations.push_back(translation.String());
    }
  }
  node.Try([&] { file.Version(version.Build()); });
}

void ReadContent(const Node& node, FileNode& file) {
  const auto text = node.Field("text");
  const auto hex = node.Field("hex");
  if (text && hex) hex->Complain("a file has either text or hex");
  if (text) file.Content(text->Utf8());
  if (hex) {
    const std::vector<std::uint8_t> bytes = ReadHex(*hex);
    file.Content({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  }
  if (const auto size = node.Field("size")) {
    const auto declared = static_cast<std::uint64_t>(size->Integer(0, kLargestFile));
    if (declared < file.size()) size->Complain("is less than the content");
    file.Size(declared);
  }
  if (const auto locked = node.Field("locked")) file.Locked(locked->Boolean());
  if (const auto messages = node.Field("messages")) file.Messages(ReadMessages(*messages));
  if (const auto version = node.Field("version")) ReadVersion(*version, file);
}

void ReadChildren(const Node& node, FileNode& folder, const Estate& estate, int depth);

void ReadEntry(const Node& node, FileNode& folder, const Estate& estate, int depth) {
  const Ticks now = estate.now();
  node.OnlyFields({"name", "children", "shortName", "attributes", "created", "accessed", "modified",
                   "denied", "security", "text", "hex", "size", "locked", "messages", "version"});
  const Node name_node = node.Required("name");
  const Text name = name_node.String();
  if (!IsValidName(name)) name_node.Complain("no file or folder can have this name");
  const auto children = node.Field("children");
  const auto entry = folder.AddChild(name, children.has_value(), now);
  if (entry == nullptr) name_node.Complain("the folder has this name already");
  entry->Attributes(children ? 0 : kFileAttributeArchive);
  if (const auto attributes = node.Field("attributes")) {
    entry->Attributes(ReadAttributes(*attributes));
  }
  if (const auto short_name = node.Field("shortName")) {
    const Text text = short_name->String();
    const auto other = folder.Child(text);
    if (!text.empty() && other != nullptr && other != entry) {
      short_name->Complain("the folder has this name already");
    }
    if (!text.empty() && (!IsValidName(text) || text.size() > 12)) {
      short_name->Complain("is no short name");
    }
    entry->ShortName(text);
  }
  if (const auto denied = node.Field("denied")) ReadDenied(*denied, *entry);
  if (const auto security = node.Field("security")) {
    entry->Security(ReadSecurity(*security, estate));
  }
  if (children) {
    for (const char* field : {"text", "hex", "size", "locked", "messages", "version"}) {
      if (const auto found = node.Field(field)) found->Complain("a folder has no such field");
    }
    ReadChildren(*children, *entry, estate, depth + 1);
  } else {
    ReadContent(node, *entry);
  }
  // Times come last, since adding to a folder moves them.
  const auto time = [&](const char* field) {
    const auto found = node.Field(field);
    return found ? ReadTime(*found) : now;
  };
  entry->Times(time("created"), time("accessed"), time("modified"));
}

void ReadChildren(const Node& node, FileNode& folder, const Estate& estate, int depth) {
  if (depth > kDeepestFolder) node.Complain("folders are nested too deeply");
  for (const Node& child : node.Elements()) ReadEntry(child, folder, estate, depth);
}

void ReadVolume(const Node& node, Volume& volume) {
  static constexpr std::size_t kLongestLabel = 32;
  const auto text = [&](const char* name, Text& value) {
    const auto field = node.Field(name);
    if (!field) return;
    value = field->String();
    if (value.size() > kLongestLabel) field->Complain("may have 32 characters");
  };
  const auto number = [&](const char* name, DWORD& value, DWORD most) {
    if (const auto field = node.Field(name)) value = static_cast<DWORD>(field->Integer(0, most));
  };
  const auto bytes = [&](const Node& field, std::uint64_t most) {
    return static_cast<std::uint64_t>(field.Integer(0, static_cast<std::int64_t>(most)));
  };
  text("label", volume.label);
  text("fileSystem", volume.file_system);
  number("serial", volume.serial, std::numeric_limits<DWORD>::max());
  number("flags", volume.flags, std::numeric_limits<DWORD>::max());
  number("maximumComponentLength", volume.maximum_component_length, 32767);
  if (const auto total = node.Field("total")) volume.total = bytes(*total, kLargestFile);
  volume.free = std::min(volume.free, volume.total);
  if (const auto free = node.Field("free")) volume.free = bytes(*free, volume.total);
  if (const auto free = node.Field("freeToCaller")) {
    volume.free_to_caller = bytes(*free, volume.free);
  }
  if (const auto ready = node.Field("ready")) volume.ready = ready->Boolean();
}

void ReadDrives(const Node& node, Computer& computer, const Estate& estate) {
  static constexpr std::array<UINT, 4> kTypes = {kDriveFixed, kDriveRemovable, kDriveCdrom,
                                                 kDriveRamdisk};
  for (const auto& [name, drive] : node.Members()) {
    const char16_t letter = ReadDriveLetter(drive, name);
    drive.OnlyFields({"type", "security", "children", "label", "fileSystem", "serial", "flags",
                      "maximumComponentLength", "total", "free", "freeToCaller", "ready"});
    const auto type_field = drive.Field("type");
    const UINT type =
        kTypes[type_field ? type_field->OneOf({"fixed", "removable", "cdrom", "ramdisk"}) : 0];
    FileNode& root = drive.Try([&]() -> FileNode& { return computer.AddDrive(letter, type); });
    ReadVolume(drive, computer.volume(letter));
    if (const auto security = drive.Field("security")) {
      root.Security(ReadSecurity(*security, estate));
    }
    if (const auto children = drive.Field("children")) ReadChildren(*children, root, estate, 1);
  }
}

void ReadShares(const Node& node, Computer& computer, const Estate& estate) {
  static constexpr std::array<DWORD, 4> kTypes = {kShareTypeDisk, kShareTypePrintQueue,
                                                  kShareTypeDevice, kShareTypeIpc};
  for (const Node& share : node.Elements()) {
    share.OnlyFields(
        {"name", "path", "denied", "type", "security", "user", "password", "providerFails"});
    const Text name = share.Required("name").String();
    const auto type_field = share.Field("type");
    const DWORD type =
        kTypes[type_field ? type_field->OneOf({"disk", "printQueue", "device", "ipc"}) : 0];
    const auto path = type == kShareTypeDisk ? share.Required("path") : share.Field("path");
    const auto denied = share.Field("denied");
    const Text path_text = path ? path->String() : Text();
    Share& added = (path ? *path : share).Try([&]() -> Share& {
      return computer.AddShare(name, path_text, denied && denied->Boolean(), type);
    });
    if (const auto user = share.Field("user")) added.user = user->String();
    if (const auto password = share.Field("password")) added.password = password->String();
    if (const auto fails = share.Field("providerFails")) added.provider_fails = fails->Boolean();
    const auto security = share.Field("security");
    if (security && !security->json().is_null()) {
      added.security = SecurityBlock::Make(ReadSecurity(*security, estate));
    }
  }
}

// Services and printers: objects that have a name and perhaps a descriptor.
template <typename Add>
void ReadNamedObjects(const Node& node, const Estate& estate, Add add) {
  for (const Node& object : node.Elements()) {
    object.OnlyFields({"name", "security"});
    const Node name = object.Required("name");
    const Text text = name.String();
    if (text.empty()) name.Complain("needs a name");
    const auto field = object.Field("security");
    add(name, text, field ? std::optional(ReadSecurity(*field, estate)) : std::nullopt);
  }
}

void ReadTypedValue(const Node& node, TextView name, RegistryNode& key) {
  node.OnlyFields({"type", "text", "number", "hex"});
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
  if (node.json().is_string()) {
    key.String(name, node.String());
  } else if (node.json().is_number()) {
    key.Dword(name, static_cast<std::uint32_t>(
                        node.Integer(0, std::numeric_limits<std::uint32_t>::max())));
  } else if (node.json().is_array()) {
    std::vector<Text> texts;
    for (const Node& element : node.Elements()) texts.push_back(element.String());
    key.Strings(name, texts);
  } else if (node.json().is_object()) {
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

void ReadComputer(const Node& node, Estate& estate) {
  node.OnlyFields({"name", "reachable", "remoteRegistry", "discDevice", "drives", "shares",
                   "registry", "services", "printers"});
  const Node name = node.Required("name");
  Computer& computer = name.Try([&]() -> Computer& { return estate.AddComputer(name.String()); });
  if (const auto reachable = node.Field("reachable")) computer.SetReachable(reachable->Boolean());
  if (const auto remote = node.Field("remoteRegistry")) {
    static constexpr std::array<RemoteRegistry, 3> kStates = {
        RemoteRegistry::Allowed, RemoteRegistry::Denied, RemoteRegistry::Stopped};
    computer.SetRemoteRegistry(kStates[remote->OneOf({"allowed", "denied", "stopped"})]);
  }
  if (const auto device = node.Field("discDevice")) computer.SetDiscDevice(device->Boolean());
  if (const auto drives = node.Field("drives")) ReadDrives(*drives, computer, estate);
  if (const auto shares = node.Field("shares")) ReadShares(*shares, computer, estate);
  if (const auto registry = node.Field("registry")) {
    ReadRegistry(*registry, computer, estate);
  }
  if (const auto services = node.Field("services")) {
    ReadNamedObjects(*services, estate, [&](const Node& place, TextView text, auto security) {
      if (computer.FindService(text) != nullptr) place.Complain("there is a service of this name");
      computer.AddService(text, std::move(security));
    });
  }
  if (const auto printers = node.Field("printers")) {
    ReadNamedObjects(*printers, estate, [&](const Node& place, TextView text, auto security) {
      if (computer.FindPrinter(text) != nullptr) place.Complain("there is a printer of this name");
      computer.AddPrinter(text, std::move(security));
    });
  }
}

}  // namespace

Estate ReadEstate(std::string_view text) {
  Json json;
  try {
    json = Json::parse(text);
  } catch (const Json::parse_error& error) {
    std::size_t line = 1;
    std::size_t column = 1;
    for (const char unit : text.substr(0, error.byte > 0 ? error.byte - 1 : 0)) {
      column = unit == '\n' ? 1 : column + 1;
      if (unit == '\n') ++line;
    }
    throw EstateFileError("line " + std::to_string(line) + ", column " + std::to_string(column),
                          "is no JSON");
  }
  const Node root(json, "");
  root.OnlyFields({"clock", "timeZone", "user", "currentFolder", "moduleFolder", "mappedDrives",
                   "messages", "modules", "computers", "directoryObjects"});
  const auto clock = root.Field("clock");
  Estate estate = Estate::Empty(clock ? ReadTime(*clock) : Estate::kDefaultTime);
  if (const auto zone = root.Field("timeZone")) ReadTimeZone(*zone, estate);
  if (const auto user = root.Field("user")) ReadUser(*user, estate);
  if (const auto folder = root.Field("currentFolder")) {
    const Text path = folder->String();
    const bool is_full = path.size() >= 3 && path[1] == u':' && path[2] == u'\\' &&
                         UpperCase(path[0]) >= u'A' && UpperCase(path[0]) <= u'Z';
    if (!is_full) folder->Complain("must be a full local path");
    estate.SetCurrentFolder(path);
  }
  if (const auto folder = root.Field("moduleFolder")) estate.SetModuleFolder(folder->String());
  if (const auto messages = root.Field("messages")) {
    for (auto& [number, message] : ReadMessages(*messages)) {
      estate.AddSystemMessage(number, message);
    }
  }
  if (const auto modules = root.Field("modules")) {
    for (const auto& [name, module] : modules->Members()) {
      if (module.json().is_null()) {
        estate.RemoveModule(FromUtf8(name));
      } else {
        estate.AddModule(FromUtf8(name), ReadMessages(module));
      }
    }
  }
  const Node computers = root.Required("computers");
  if (computers.Elements().empty()) computers.Complain("needs at least the local computer");
  for (const Node& computer : computers.Elements()) ReadComputer(computer, estate);
  if (const auto objects = root.Field("directoryObjects")) {
    ReadNamedObjects(*objects, estate, [&](const Node& place, TextView text, auto security) {
      if (estate.FindDirectoryObject(text) != nullptr) place.Complain("the name is taken");
      estate.AddDirectoryObject(text, std::move(security));
    });
  }
  if (const auto mapped = root.Field("mappedDrives")) {
    for (const auto& [name, target] : mapped->Members()) {
      const char16_t letter = ReadDriveLetter(target, name);
      const Text share = target.String();
      target.Try([&] { estate.MapDrive(letter, share); });
    }
  }
  return estate;
}

Estate ReadEstateFile(const std::string& file_name) {
  std::ifstream file(file_name, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file) throw EstateFileError(file_name, "cannot be read");
  try {
    return ReadEstate(text);
  } catch (const EstateFileError& error) {
    throw EstateFileError(
        file_name + ": " + (error.place().empty() ? "/" : error.place()),
        std::string(error.what()).substr((error.place().empty() ? 1 : error.place().size()) + 2));
  }
}

}  // namespace veldmark::simulated
