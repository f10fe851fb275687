#include "platform/simulated/estate_file/DriveReader.h"

#include <algorithm>
#include <array>

#include "platform/simulated/estate/FileNames.h"
#include "platform/simulated/estate/VersionDescription.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {

namespace {

constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 62;

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
  const auto from = node.Field("from");
  if (text && hex) hex->Complain("a file has either text or hex");
  if (from && (text || hex)) from->Complain("a file with text or hex has its content");
  if (text) file.Content(text->Utf8());
  if (hex) {
    const std::vector<std::uint8_t> bytes = ReadHex(*hex);
    file.Content({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  }
  if (from) file.Content(from->FileContent());
  if (const auto size = node.Field("size")) {
    const auto declared = static_cast<std::uint64_t>(size->Integer(0, kLargestFile));
    if (declared < file.size()) size->Complain("is less than the content");
    file.Size(declared);
  }
  if (const auto locked = node.Field("locked")) file.Locked(locked->Boolean());
  if (const auto messages = node.Field("messages")) file.Messages(ReadMessages(*messages));
  if (const auto languages = node.Field("messagesIn")) {
    for (const auto& [name, messages] : languages->Members()) {
      file.Messages(ReadMessages(messages), ReadLanguage(messages, name));
    }
  }
  if (const auto version = node.Field("version")) ReadVersion(*version, file);
}

void ReadChildren(const Node& node, FileNode& folder, const Estate& estate, int depth);

void ReadEntry(const Node& node, FileNode& folder, const Estate& estate, int depth) {
  const Ticks now = estate.now();
  node.OnlyFields({"name", "children", "shortName", "attributes", "created", "accessed", "modified",
                   "denied", "security", "text", "hex", "from", "size", "locked", "messages",
                   "messagesIn", "version"});
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
    for (const char* field : {"text", "hex", "from", "size", "locked", "messages", "version"}) {
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

}  // namespace

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

}  // namespace veldmark::simulated
