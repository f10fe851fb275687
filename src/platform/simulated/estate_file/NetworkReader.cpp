#include "platform/simulated/estate_file/NetworkReader.h"

#include <algorithm>

#include "platform/simulated/estate_file/AccountsReader.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

void ReadText(const Node& node, const char* name, Text& place) {
  if (const auto field = node.Field(name)) place = field->String();
}

// What domains and workgroups have in common.
void ReadGroup(const Node& node, Domain& domain, Estate& estate) {
  ReadText(node, "comment", domain.comment);
  if (const auto network = node.Field("network")) {
    domain.network = network->String();
    const bool is_there = std::ranges::any_of(
        estate.networks(), [&](const Network& known) { return known.name == domain.network; });
    if (!is_there) network->Complain("there is no such network");
  }
  if (const auto list = node.Field("browseList")) domain.has_browse_list = list->Boolean();
}

Address ReadAddress(const Node& node) {
  const std::string text = node.Utf8();
  Address address{};
  std::size_t start = 0;
  for (std::size_t index = 0; index < address.size(); ++index) {
    const std::size_t end = index + 1 < address.size() ? text.find('.', start) : text.size();
    const std::string part = end == std::string::npos ? "" : text.substr(start, end - start);
    const bool is_number =
        !part.empty() && part.size() <= 3 && part.find_first_not_of("0123456789") == part.npos;
    if (!is_number || std::stoi(part) > 255) node.Complain("must be an address such as 10.0.0.7");
    address[index] = static_cast<std::uint8_t>(std::stoi(part));
    start = end + 1;
  }
  return address;
}

}  // namespace

void ReadNetworks(const Node& node, Estate& estate) {
  estate.networks().clear();
  for (const Node& element : node.Elements()) {
    element.OnlyFields({"name", "comment", "provider", "type", "page", "others"});
    Network network{.name = element.Required("name").String()};
    ReadText(element, "comment", network.comment);
    ReadText(element, "provider", network.provider);
    if (const auto type = element.Field("type")) {
      network.type.reset();
      if (!type->IsNull()) network.type = static_cast<WORD>(type->Integer(0, 0xFFFF));
    }
    if (const auto page = element.Field("page")) {
      network.page = static_cast<std::size_t>(page->Integer(0, 100000));
    }
    if (const auto others = element.Field("others")) {
      for (const Node& other : others->Elements()) {
        other.OnlyFields({"name", "comment", "displayType"});
        Network::Entry entry{.name = other.Required("name").String()};
        ReadText(other, "comment", entry.comment);
        if (const auto type = other.Field("displayType")) entry.display_type = type->Unsigned32();
        network.others.push_back(std::move(entry));
      }
    }
    estate.networks().push_back(std::move(network));
  }
}

void ReadDomains(const Node& node, Estate& estate) {
  for (const Node& element : node.Elements()) {
    element.OnlyFields({"name", "sid", "comment", "network", "browseList", "trusts", "machines",
                        "users", "policy", "groups", "localGroups"});
    const Node name = element.Required("name");
    const auto sid_field = element.Field("sid");
    const auto sid = sid_field ? std::optional(ReadSid(*sid_field)) : std::nullopt;
    Domain& domain = name.Try([&]() -> Domain& { return estate.AddDomain(name.String(), sid); });
    ReadGroup(element, domain, estate);
    if (const auto machines = element.Field("machines")) {
      for (const Node& machine : machines->Elements()) {
        machine.Try([&] { domain.accounts->AddMachine(machine.String()); });
      }
    }
    ReadUsers(element, *domain.accounts);
  }
  for (const Node& element : node.Elements()) {
    const auto trusts = element.Field("trusts");
    if (!trusts) continue;
    Domain& domain = *estate.FindDomain(element.Required("name").String());
    for (const Node& trusted : trusts->Elements()) {
      const Domain* const other = estate.FindDomain(trusted.String());
      if (other == nullptr || other == &domain) trusted.Complain("is no other domain");
      domain.trusts.push_back(other->name);
    }
  }
}

void ReadWorkgroups(const Node& node, Estate& estate) {
  for (const Node& element : node.Elements()) {
    element.OnlyFields({"name", "comment", "network", "browseList"});
    const Node name = element.Required("name");
    ReadGroup(element, name.Try([&]() -> Domain& { return estate.AddWorkgroup(name.String()); }),
              estate);
  }
}

void ReadDomainGroups(const Node& node, Estate& estate) {
  for (const Node& element : node.Elements()) {
    Domain& domain = *estate.FindDomain(element.Required("name").String());
    ReadGroups(element, *domain.accounts, estate);
  }
}

std::vector<Address> ReadAddresses(const Node& node) {
  std::vector<Address> addresses;
  for (const Node& address : node.Elements()) addresses.push_back(ReadAddress(address));
  return addresses;
}

void ReadHosts(const Node& node, Estate& estate) {
  for (const auto& [name, addresses] : node.Members()) {
    estate.AddHost(FromUtf8(name), ReadAddresses(addresses));
  }
}

}  // namespace veldmark::simulated
