// Any bytes as what a log reads, and as a saved log's file: both are read or are refused as
// corrupt, and what is read lies within the bytes.

#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzTarget.h"
#include "apartment/CSupport.h"
#include "eventlog/CEventLogEntries.h"
#include "eventlog/CEventLogEntry.h"
#include "eventlog/EventRecord.h"
#include "platform/operations/ErrorCodes.h"

using namespace veldmark;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  world.simulated.journal().Clear();
  Try({kErrorEventlogFileCorrupt}, [&] {
    RecordOrigin origin(u"System", u"\\\\HARBOUR");
    std::span<const std::uint8_t> rest(data, size);
    while (!rest.empty()) {
      const EventRecord record(rest);
      Require(record.length() >= sizeof(EVENTLOGRECORD) && record.length() <= rest.size());
      const EventFields fields = record.Fields(origin);
      const std::size_t units = fields.source_name.size() + fields.computer_name.size();
      Require(2 * units <= record.length());
      Require(fields.data.size() <= record.length());
      Require(2 * fields.strings.size() <= record.length());
      rest = rest.subspan(record.length());
    }
  });
  simulated::Estate& estate = world.simulated.estate();
  if (const auto old = estate.local().Find(u"C:\\a.evt")) old->Remove(estate.now());
  estate.local().AddFile(u"C:\\a.evt", {reinterpret_cast<const char*>(data), size});
  Try({kErrorEventlogFileCorrupt}, [&] {
    const auto entries = Engine().LoadEventLogEntries(u"\\\\HARBOUR", {}, u"C:\\a.evt", 0, false);
    Require(static_cast<std::size_t>(entries->Count()) <= size / sizeof(EVENTLOGRECORD));
  });
  Require(world.simulated.ledger().IsClean());
  return 0;
}
