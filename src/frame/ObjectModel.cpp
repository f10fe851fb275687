#include "frame/ObjectModel.h"

#include <algorithm>
#include <map>
#include <vector>

#include "storage/CPathName.h"

namespace veldmark {
namespace {

using InterfaceTable = const Interface& (*)();
using EnumerationTable = const Enumeration& (*)();

constexpr InterfaceTable kClasses[] = {
    &CPathName::Describe,
};

/// Enumerations that no member has for its type.
constexpr std::span<const EnumerationTable> kUnmentionedEnumerations;

template <class T>
void AddOnce(std::vector<const T*>& list, const T* item) {
  if (item && std::ranges::find(list, item) == list.end()) list.push_back(item);
}

std::vector<const Enumeration*> GatherEnumerations() {
  std::vector<const Enumeration*> found;
  const auto visit = [&found](const TypeReference& type) {
    if (type.enumeration_table) AddOnce(found, &type.enumeration_table());
  };
  const auto visit_all = [&visit](const std::vector<Parameter>& parameters) {
    for (const Parameter& parameter : parameters) visit(parameter.type);
  };
  for (const Interface* table : ObjectModel()) {
    for (const Member& member : table->members) {
      visit(member.result);
      visit_all(member.parameters);
    }
  }
  for (const EventInterface* events : EventInterfaces()) {
    for (const Event& event : events->events) visit_all(event.parameters);
  }
  for (const EnumerationTable table : kUnmentionedEnumerations) AddOnce(found, &table());
  return found;
}

}  // namespace

const Identity& LibraryIdentity() {
  static const Identity identity = IdentityOf("library Veldmark2");
  return identity;
}

std::span<const Interface* const> ObjectModel() {
  static const std::vector<const Interface*> classes = [] {
    std::vector<const Interface*> tables;
    for (const InterfaceTable table : kClasses) tables.push_back(&table());
    return tables;
  }();
  return classes;
}

std::span<const Enumeration* const> Enumerations() {
  static const std::vector<const Enumeration*> enumerations = GatherEnumerations();
  return enumerations;
}

std::span<const EventInterface* const> EventInterfaces() {
  static const std::vector<const EventInterface*> interfaces = [] {
    std::vector<const EventInterface*> found;
    for (const Interface* table : ObjectModel()) AddOnce(found, table->events);
    return found;
  }();
  return interfaces;
}

const Interface* FindClass(const Identity& class_identity) {
  static const std::map<Identity, const Interface*> classes = [] {
    std::map<Identity, const Interface*> by_identity;
    for (const Interface* table : ObjectModel()) by_identity[table->ClassIdentity()] = table;
    return by_identity;
  }();
  const auto found = classes.find(class_identity);
  return found == classes.end() ? nullptr : found->second;
}

}  // namespace veldmark
