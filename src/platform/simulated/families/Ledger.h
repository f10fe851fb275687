#pragma once

#include <cstdint>
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
  struct Entry {
    Resource resource;
    std::uintptr_t value;
    std::string operation;  // the one that handed it out
    std::string detail;     // what it was asked for
  };

  void Opened(Resource resource, std::uintptr_t value, std::string_view operation,
              std::string detail);

  // Takes an entry out. False, and a fault, if it isn't open.
  bool Closed(Resource resource, std::uintptr_t value, std::string_view operation);

  // Notes the use of a handle that isn't open.
  void Misused(Resource resource, std::uintptr_t value, std::string_view operation);

  const std::vector<Entry>& still_open() const { return open_; }
  const std::vector<std::string>& faults() const { return faults_; }
  bool IsClean() const { return open_.empty() && faults_.empty(); }

  // What is still open and what went wrong, a line each; empty if the ledger is clean.
  std::string Report() const;

 private:
  std::vector<Entry> open_;
  std::vector<std::string> faults_;
};

}  // namespace veldmark::simulated
