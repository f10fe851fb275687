#pragma once

#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::simulated {

enum class Resource {
  FindHandle,
  FileHandle,
  RegistryKey,
  Module,
  LocalMemory,
  TaskMemory,
  TokenHandle,
  NetworkBuffer,
  NetworkEnumeration,
  Policy,
  AuthorityMemory,
  SocketLibrary,
  ServiceHandle,
  ServiceLock,
  TaskInterface,
  EventLog
};

// Everything that the platform handed out and expects back. What is open at the end of a test is a
// leak; what came back twice, or was never handed out, is a fault of the caller.
class Ledger {
 public:
  struct Item {
    Resource resource;
    std::uintptr_t value;

    auto operator<=>(const Item&) const = default;
  };
  struct Origin {
    std::string operation;  // the one that handed it out
    std::string detail;     // what it was asked for
  };

  void Opened(Resource resource, std::uintptr_t value, std::string_view operation,
              std::string detail);

  // Takes an item out. False, and a fault, if it isn't open.
  bool Closed(Resource resource, std::uintptr_t value, std::string_view operation);

  // Notes the use of a handle that isn't open.
  void Misused(Resource resource, std::uintptr_t value, std::string_view operation);

  // One that was opened several times stands there as often.
  const std::multimap<Item, Origin>& still_open() const { return open_; }
  const std::vector<std::string>& faults() const { return faults_; }
  bool IsClean() const { return open_.empty() && faults_.empty(); }

  // What is still open and what went wrong, a line each; empty if the ledger is clean.
  std::string Report() const;

 private:
  std::multimap<Item, Origin> open_;
  std::vector<std::string> faults_;
};

}  // namespace veldmark::simulated
