#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "automation/Text.h"

namespace veldmark {

/// The counted classes, those that the report shows first and in its order.
enum class Counter : std::uint8_t {
  kSystemRoot,
  kMyComputer,
  kNetHood,
  kNetworks,
  kNetwork,
  kDomains,
  kDomain,
  kServers,
  kServer,
  kGroups,
  kGroup,
  kUsers,
  kUser,
  kDrives,
  kDrive,
  kShares,
  kShare,
  kServices,
  kService,
  kPrinters,
  kPrinter,
  kVolumes,
  kVolume,
  kSecurityDescriptor,
  kAcl,
  kAces,
  kAce,
  kSids,
  kSid,
  kFiles,
  kFile,
  kFolders,
  kFolder,
  kPathNames,
  kPathName,
  kEventLogEntries,
  kEventLogEntry,
  kReported,
  kEventLogs = kReported,
  kEventLog,
  kCount,
};

/// How many objects of each counted class are alive in an apartment.
class Counters {
 public:
  std::int32_t operator[](Counter counter) const {
    return counts_[static_cast<std::size_t>(counter)];
  }
  /// Raises 6 when the count would exceed 2147483647.
  void Increment(Counter counter);
  void Decrement(Counter counter) noexcept { --counts_[static_cast<std::size_t>(counter)]; }

 private:
  std::array<std::int32_t, static_cast<std::size_t>(Counter::kCount)> counts_{};
};

/// The text of the object counts report: two title lines, a line for every counter above 0, then a
/// line for every cache that holds something.
Text GetObjectCountsReport();

}  // namespace veldmark
