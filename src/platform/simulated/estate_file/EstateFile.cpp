#include "platform/simulated/estate_file/EstateFile.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "automation/CaseMapping.h"
#include "platform/simulated/estate_file/AccountsReader.h"
#include "platform/simulated/estate_file/ComputerReader.h"
#include "platform/simulated/estate_file/NetworkReader.h"
#include "platform/simulated/estate_file/UserReader.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

using Json = nlohmann::json;

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

void ReadDirectoryObject(const Node& node, Estate& estate) {
  node.OnlyFields({"name", "security"});
  const Node name = node.Required("name");
  const Text text = name.String();
  if (text.empty()) name.Complain("needs a name");
  const auto field = node.Field("security");
  auto security = field ? std::optional(ReadSecurity(*field, estate)) : std::nullopt;
  if (estate.FindDirectoryObject(text) != nullptr) name.Complain("the name is taken");
  estate.AddDirectoryObject(text, std::move(security));
}

std::string PlaceOf(std::string_view text, std::size_t position) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (const char unit : text.substr(0, position)) {
    column = unit == '\n' ? 1 : column + 1;
    if (unit == '\n') ++line;
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

}  // namespace

Estate ReadEstate(std::string_view text, Estate::Clock real_time,
                  const std::filesystem::path* folder) {
  Json json;
  try {
    json = Json::parse(text);
  } catch (const Json::parse_error& error) {
    throw EstateFileError(PlaceOf(text, error.byte > 0 ? error.byte - 1 : 0), "is no JSON");
  } catch (const Json::out_of_range& error) {
    // The number stands between quotes in the message.
    std::string_view number = error.what();
    number.remove_prefix(std::min(number.find('\''), number.size() - 1) + 1);
    throw EstateFileError(PlaceOf(text, text.find(number.substr(0, number.find('\'')))),
                          "is too large a number");
  }
  const Node root(json, "", folder);
  root.OnlyFields({"$schema", "clock", "clockRuns", "timeZone", "user", "currentFolder",
                   "moduleFolder", "environment", "mappedDrives", "messages", "modules",
                   "computers", "directoryObjects", "networks", "domains", "workgroups", "hosts",
                   "knownAccounts"});
  // For editors; what it says is nothing to this reader.
  if (const auto schema = root.Field("$schema")) schema->Utf8();
  const auto clock = root.Field("clock");
  Estate estate = Estate::Empty(clock ? ReadTime(*clock) : Estate::kDefaultTime);
  if (const auto zone = root.Field("timeZone")) ReadTimeZone(*zone, estate);
  if (const auto user = root.Field("user")) ReadUser(*user, estate);
  if (const auto current = root.Field("currentFolder")) {
    const Text path = current->String();
    const bool is_full = path.size() >= 3 && path[1] == u':' && path[2] == u'\\' &&
                         UpperCase(path[0]) >= u'A' && UpperCase(path[0]) <= u'Z';
    if (!is_full) current->Complain("must be a full local path");
    estate.SetCurrentFolder(path);
  }
  if (const auto module = root.Field("moduleFolder")) estate.SetModuleFolder(module->String());
  if (const auto environment = root.Field("environment")) {
    for (const auto& [name, value] : environment->Members()) {
      if (name.empty() || name.find('%') != name.npos) value.Complain("no variable has this name");
      estate.SetVariable(FromUtf8(name),
                         value.IsNull() ? std::nullopt : std::optional(value.String()));
    }
  }
  if (const auto messages = root.Field("messages")) {
    for (auto& [number, message] : ReadMessages(*messages)) {
      estate.AddSystemMessage(number, message);
    }
  }
  if (const auto modules = root.Field("modules")) {
    for (const auto& [name, module] : modules->Members()) {
      if (module.IsNull()) {
        estate.RemoveModule(FromUtf8(name));
      } else {
        estate.AddModule(FromUtf8(name), ReadMessages(module));
      }
    }
  }
  if (const auto networks = root.Field("networks")) ReadNetworks(*networks, estate);
  if (const auto accounts = root.Field("knownAccounts")) ReadKnownAccounts(*accounts, estate);
  if (const auto hosts = root.Field("hosts")) ReadHosts(*hosts, estate);
  const auto domains = root.Field("domains");
  if (domains) ReadDomains(*domains, estate);
  if (const auto workgroups = root.Field("workgroups")) ReadWorkgroups(*workgroups, estate);
  const Node computers = root.Required("computers");
  if (computers.Elements().empty()) computers.Complain("needs at least the local computer");
  for (const Node& computer : computers.Elements()) ReadComputer(computer, estate);
  if (domains) ReadDomainGroups(*domains, estate);
  for (const Node& computer : computers.Elements()) ReadComputerGroups(computer, estate);
  if (const auto objects = root.Field("directoryObjects")) {
    for (const Node& object : objects->Elements()) ReadDirectoryObject(object, estate);
  }
  if (const auto mapped = root.Field("mappedDrives")) {
    for (const auto& [name, target] : mapped->Members()) {
      const char16_t letter = ReadDriveLetter(target, name);
      const Text share = target.String();
      target.Try([&] { estate.MapDrive(letter, share); });
    }
  }
  if (const auto runs = root.Field("clockRuns"); runs && runs->Boolean()) {
    estate.Follow(std::move(real_time));
  }
  return estate;
}

Estate ReadEstateFile(const std::filesystem::path& file, Estate::Clock real_time) {
  const std::string name = ToUtf8(file.u16string());
  std::ifstream stream(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  if (!stream) throw EstateFileError(name, "cannot be read");
  const std::filesystem::path folder = file.parent_path();
  try {
    return ReadEstate(text, std::move(real_time), &folder);
  } catch (const EstateFileError& error) {
    throw EstateFileError(name + ": " + error.place(), error.problem());
  }
}

}  // namespace veldmark::simulated
