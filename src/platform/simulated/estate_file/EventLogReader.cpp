#include "platform/simulated/estate_file/EventLogReader.h"

#include <array>
#include <limits>

#include "platform/simulated/estate_file/AccountsReader.h"
#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {
namespace {

constexpr std::int64_t kMostWord = std::numeric_limits<WORD>::max();

WORD ReadWord(const Node& node) { return static_cast<WORD>(node.Integer(0, kMostWord)); }

WORD ReadType(const Node& node) {
  static constexpr std::array<WORD, 6> kTypes = {0, 1, 2, 4, 8, 16};
  if (node.IsNumber()) return ReadWord(node);
  return kTypes[node.OneOf(
      {"success", "error", "warning", "information", "auditSuccess", "auditFailure"})];
}

Event ReadEvent(const Node& node, Computer& computer, Estate& estate) {
  node.OnlyFields({"source", "id", "type", "category", "time", "written", "computer", "user",
                   "strings", "data"});
  Event event{.source = node.Required("source").String()};
  event.id = node.Required("id").Unsigned32();
  if (const auto type = node.Field("type")) event.type = ReadType(*type);
  if (const auto category = node.Field("category")) event.category = ReadWord(*category);
  const auto time = node.Field("time");
  event.generated = time ? ReadSeconds(*time) : estate.unix_time();
  const auto written = node.Field("written");
  event.written = written ? ReadSeconds(*written) : event.generated;
  const auto name = node.Field("computer");
  event.computer = name ? name->String() : computer.name();
  if (const auto user = node.Field("user")) {
    event.user = ReadAccount(*user, estate.AccountsOf(computer), estate);
  }
  if (const auto strings = node.Field("strings")) {
    for (const Node& text : strings->Elements()) event.strings.push_back(text.String());
    if (event.strings.size() > kMostWord) strings->Complain("may have 65535 texts");
  }
  if (const auto data = node.Field("data")) event.data = ReadHex(*data);
  return event;
}

}  // namespace

void ReadEventLogs(const Node& node, Computer& computer, Estate& estate) {
  for (const Node& described : node.Elements()) {
    described.OnlyFields({"name", "oldest", "unreadable", "records"});
    const Node name = described.Required("name");
    RecordedLog& log =
        name.Try([&]() -> RecordedLog& { return computer.AddEventLog(name.String()); });
    if (!log.is_new()) name.Complain("the computer has this log already");
    if (const auto oldest = described.Field("oldest")) {
      log.StartAt(static_cast<DWORD>(oldest->Integer(1, std::numeric_limits<LONG>::max())));
    }
    if (const auto code = described.Field("unreadable")) log.SetUnreadable(code->Unsigned32());
    if (const auto records = described.Field("records")) {
      for (const Node& record : records->Elements()) {
        Event event = ReadEvent(record, computer, estate);
        const Ticks when = kUnixStart + event.written * kTicksPerSecond;
        if (when > estate.now()) {
          log.Schedule(when, std::move(event));
        } else {
          log.Add(event);
        }
      }
    }
  }
}

}  // namespace veldmark::simulated
