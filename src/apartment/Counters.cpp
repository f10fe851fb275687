#include "apartment/Counters.h"

#include <limits>

#include "apartment/Errors.h"
#include "collections/Collection.h"

namespace veldmark {
namespace {

constexpr TextView kLabels[] = {
    u"SystemRoot = ",    u"MyComputer = ", u"NetHood = ",  u"Networks = ",
    u"Network = ",       u"Domains = ",    u"Domain = ",   u"Servers = ",
    u"Server = ",        u"Groups = ",     u"Group = ",    u"Users = ",
    u"User = ",          u"Drives = ",     u"Drive = ",    u"Shares = ",
    u"Share = ",         u"Services = ",   u"Service = ",  u"Printers = ",
    u"Printer = ",       u"Volumes = ",    u"Volume = ",   u"SecurityDescriptor = ",
    u"Acl = ",           u"Aces = ",       u"Ace = ",      u"Sids = ",
    u"Sid = ",           u"Files = ",      u"File = ",     u"Folders = ",
    u"Folder = ",        u"PathNames = ",  u"PathName = ", u"EventLogEntries = ",
    u"EventLogEntry = ",
};
static_assert(std::size(kLabels) == static_cast<std::size_t>(Counter::kReported));

void AppendLine(Text& report, TextView label, std::int32_t count) {
  if (count <= 0) return;
  report.append(u"\r\n").append(label).append(ToText(std::int64_t{count}));
}

}  // namespace

void Counters::Increment(Counter counter) {
  std::int32_t& count = counts_[static_cast<std::size_t>(counter)];
  if (count == std::numeric_limits<std::int32_t>::max()) Raise(runtime_error::kOverflow);
  ++count;
}

Text GetObjectCountsReport() {
  const Apartment& apartment = Apartment::Current();
  const std::pair<TextView, const Ref<Collection>&> caches[] = {
      {u"Account Collection = ", apartment.account_cache},
      {u"PDC's Collection = ", apartment.pdc_cache},
      {u"Domain's Collection = ", apartment.domain_cache},
      {u"Server's Collection = ", apartment.server_cache},
      {u"SID's Collection = ", apartment.sid_cache},
  };
  Text report;
  const auto append = [&report](TextView label, std::int32_t count) {
    Swallow([&] { AppendLine(report, label, count); });
  };
  Swallow([&] { report = u"Current Object Counts\r\n====================="; });
  for (std::size_t i = 0; i < std::size(kLabels); ++i) {
    append(kLabels[i], apartment.counters[static_cast<Counter>(i)]);
  }
  for (const auto& [label, cache] : caches) {
    if (cache) append(label, cache->Count());
  }
  return report;
}

}  // namespace veldmark
