#include "platform/simulated/families/Ledger.h"

#include <array>

namespace veldmark::simulated {
namespace {

std::string Name(Resource resource) {
  static constexpr std::array<const char*, 16> kNames = {
      "find handle", "file handle",        "registry key",
      "module",      "local memory",       "task memory",
      "token",       "network buffer",     "network enumeration",
      "policy",      "authority's memory", "start of the socket library",
      "service",     "service lock",       "task interface",
      "event log"};
  return kNames[static_cast<std::size_t>(resource)];
}

}  // namespace

void Ledger::Opened(Resource resource, std::uintptr_t value, std::string_view operation,
                    std::string detail) {
  open_.emplace(Item{resource, value}, Origin{std::string(operation), std::move(detail)});
}

bool Ledger::Closed(Resource resource, std::uintptr_t value, std::string_view operation) {
  const auto found = open_.find({resource, value});
  if (found == open_.end()) {
    Misused(resource, value, operation);
    return false;
  }
  open_.erase(found);
  return true;
}

void Ledger::Misused(Resource resource, std::uintptr_t value, std::string_view operation) {
  faults_.push_back(std::string(operation) + ": " + std::to_string(value) + " is no open " +
                    Name(resource));
}

std::string Ledger::Report() const {
  std::string report;
  for (const auto& [item, origin] : open_) {
    report +=
        "open " + Name(item.resource) + " of " + origin.operation + "(" + origin.detail + ")\n";
  }
  for (const std::string& fault : faults_) report += "fault: " + fault + "\n";
  return report;
}

}  // namespace veldmark::simulated
