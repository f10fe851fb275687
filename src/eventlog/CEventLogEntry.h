#pragma once

#include <memory>
#include <optional>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Variant.h"
#include "eventlog/EventFields.h"
#include "eventlog/EventLogType.h"

namespace veldmark {

struct MessageSource;

/// One event of an event log. It needs no open log: the texts are looked up when they are first
/// asked for, on the computer whose log it was read from, and then stay as they are.
class CEventLogEntry : public Exported<CEventLogEntry>, Counted<Counter::kEventLogEntry> {
 public:
  static const Interface& Describe();

  /// Makes this the entry of a record, once, before it is handed out.
  void Fill(EventFields fields);

  std::int32_t RecordNumber() const { return fields_.record_number; }
  /// Local time, as is `TimeWritten`.
  Date TimeGenerated() const { return fields_.time_generated; }
  Date TimeWritten() const { return fields_.time_written; }
  /// All 32 bits, severity and facility with them.
  std::int32_t EventID() const { return fields_.event_id; }
  EventLogTypesEnum EventType() const;
  std::int16_t EventCategory() const { return fields_.category; }
  /// Who caused the event; Nothing where the record doesn't tell.
  Ref<CSid> Sid();
  Text SourceName() const { return fields_.source_name; }
  /// The computer that the record names, which need not be the one that the log was read from.
  Text ComputerName() const { return fields_.computer_name; }
  /// Always empty; `StringsArray` has the strings. Raises as that does.
  Text Strings();
  /// A byte array, counted from 0; empty where the record has no data.
  Variant Data() const;
  /// Empty for an entry of a saved log.
  Text LogName() const { return Origin().log_name; }
  /// The lower half of the event's number, signed.
  std::int16_t EventCode() const;
  /// The lower 12 bits of the upper half's absolute value, so not the facility's bits where the
  /// topmost is set.
  std::int16_t FacilityCode() const;
  /// The text with its inserts filled in. Where no message file could be loaded, a text that says
  /// so and lists the inserts. Never raises.
  Text EventMessage();
  /// "None" or the category's number in parentheses where there is no text. Raises the platform's
  /// error on the first read: 2 for a file that can't be loaded, 317 for a number that it lacks.
  Text EventCategoryDescription();
  /// "Error"; empty for a type without a name.
  Text EventTypeDescription() const;
  /// The insert strings, counted from 1, with what "%%n" in them stands for; empty where there are
  /// none. Raises the platform's error for a number that the parameter file lacks.
  Variant StringsArray();
  /// The text with its inserts left in place; empty where no file has the message. Never raises.
  Text EventMessageRaw();

 private:
  /// A SID that was not asked for yet counts as one like those that were.
  class UnreadSid : Counted<Counter::kSid> {};

  /// Replaces the strings by what they refer to. A string that fails is tried again next time.
  void ResolveStrings();
  void ComputeMessage();
  Text FallbackMessage() const;
  /// One line of the debug log.
  void Trace(TextView tag) const;
  const EventOrigin& Origin() const;
  MessageSource Source() const;

  EventFields fields_;
  Ref<CSid> sid_;
  Text message_;
  Text raw_message_;
  std::unique_ptr<Text> category_text_;  ///< few are asked for it
  std::optional<UnreadSid> unread_sid_;
  bool strings_resolved_ = false;
};

}  // namespace veldmark
