#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "security/CSid.h"

namespace veldmark {

/// Where entries were read, which all of one reading share. `account_server` is asked for the
/// accounts behind SIDs, as it stands.
struct EventOrigin : ReferenceCounted {
  EventOrigin() = default;
  EventOrigin(Text log, Text server)
      : log_name(std::move(log)),
        account_server(std::move(server)),
        lookup_server(account_server.substr(account_server.starts_with(u"\\\\") ? 2 : 0)) {}

  Text log_name;  // empty for a backup file
  Text account_server;
  Text lookup_server;  // whose registry and files hold the texts, without a leading "\\"
};

/// What a raw record tells of an event, and where it was read: all that an entry begins with.
struct EventFields {
  // By size, without gaps: a log has many.
  Date time_generated;  // local time, as is `time_written`
  Date time_written;
  std::int32_t record_number = 0;
  std::int32_t event_id = 0;    // all 32 bits
  std::int32_t event_type = 0;  // an `EventLogTypesEnum`, or what else the record holds
  std::int16_t category = 0;
  bool has_sid = false;
  SidWords sid;
  Text source_name;
  Text computer_name;  // as the record names it
  Ref<EventOrigin> origin;
  std::vector<Text> strings;
  std::vector<std::uint8_t> data;
};

}  // namespace veldmark
