#include "eventlog/CEventLogEntry.h"

#include <cstdlib>
#include <utility>

#include "apartment/BitsHelper.h"
#include "apartment/DebugLog.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "automation/Declare.h"
#include "eventlog/EventMessages.h"

namespace veldmark {
namespace {

// A list of thousands is no rarity.
static_assert(sizeof(CEventLogEntry) <= 300);

}  // namespace

const Interface& CEventLogEntry::Describe() {
  static const Interface table =
      Declare<CEventLogEntry>(u"CEventLogEntry", u"One event of an event log.")
          .Get<&CEventLogEntry::RecordNumber>(u"RecordNumber", u"Its number in the log.")
          .Get<&CEventLogEntry::TimeGenerated>(u"TimeGenerated", u"When it arose, in local time.")
          .Get<&CEventLogEntry::TimeWritten>(u"TimeWritten", u"When it was logged, in local time.")
          .Get<&CEventLogEntry::EventID>(u"EventID", u"What it is, by number: all 32 bits.")
          .Get<&CEventLogEntry::EventType>(u"EventType", u"What kind of event it is.")
          .Get<&CEventLogEntry::EventCategory>(u"EventCategory", u"Its category, by number.")
          .Get<&CEventLogEntry::Sid>(u"Sid", u"Who caused it; may be Nothing.")
          .Get<&CEventLogEntry::SourceName>(u"SourceName", u"The program that logged it.")
          .Get<&CEventLogEntry::ComputerName>(u"ComputerName", u"The computer that it arose on.")
          .Get<&CEventLogEntry::Strings>(u"Strings", u"Always empty; see StringsArray.")
          .Get<&CEventLogEntry::Data>(u"Data", u"Its data as an array of bytes.")
          .Get<&CEventLogEntry::LogName>(u"LogName", u"The log; empty for a saved one.")
          .Get<&CEventLogEntry::EventCode>(u"EventCode", u"The lower half of EventID.")
          .Get<&CEventLogEntry::FacilityCode>(u"FacilityCode", u"The facility within EventID.")
          .Remark(
              u"Of the absolute value of EventID's upper half: with the topmost bit set these "
              u"are not the facility's own bits.")
          .Get<&CEventLogEntry::EventMessage>(u"EventMessage", u"Its text, inserts filled in.")
          .Remark(
              u"Never raises, and keeps what the first read found. The first message of a source "
              u"whose file another source has loaded before comes without its inserts: read the "
              u"entry once more from the log.")
          .Get<&CEventLogEntry::EventCategoryDescription>(u"EventCategoryDescription",
                                                          u"Its category in words.")
          .Remark(
              u"Raises 2 where the category file can't be loaded and 317 where it lacks the "
              u"number; read again after the former, it is the number in parentheses.")
          .Get<&CEventLogEntry::EventTypeDescription>(u"EventTypeDescription",
                                                      u"Its type in words.")
          .Get<&CEventLogEntry::StringsArray>(u"StringsArray",
                                              u"Its insert strings as an array, counted from 1.")
          .Remark(
              u"A string with a percent sign becomes empty where the source has no parameter "
              u"file, and raises 317 where that lacks a number, 1812 when read again.")
          .Get<&CEventLogEntry::EventMessageRaw>(u"EventMessageRaw",
                                                 u"Its text, inserts left in place.");
  return table;
}

void CEventLogEntry::Fill(EventFields fields) {
  fields_ = std::move(fields);
  if (fields_.has_sid) unread_sid_.emplace();
}

Ref<CSid> CEventLogEntry::Sid() {
  if (unread_sid_) {
    const auto sid = Make<CSid>();
    sid->SetResidesOnServer(Origin().account_server);
    sid->PutSidBuffer(std::move(fields_.sid));
    sid_ = sid;
    unread_sid_.reset();
  }
  return sid_;
}

EventLogTypesEnum CEventLogEntry::EventType() const {
  return static_cast<EventLogTypesEnum>(fields_.event_type);
}

Text CEventLogEntry::Strings() {
  const Ref<CEventLogEntry> keep_alive(this);
  if (!strings_resolved_) ResolveStrings();
  return {};
}

Variant CEventLogEntry::Data() const {
  return fields_.data.empty() ? Variant() : Variant(ByteArray(fields_.data));
}

std::int16_t CEventLogEntry::EventCode() const { return GetLoWord(fields_.event_id); }

std::int16_t CEventLogEntry::FacilityCode() const {
  std::int32_t code = std::abs(std::int32_t{GetHiWord(fields_.event_id)});
  for (const std::int16_t bit : {15, 14, 13, 12}) ClearBit(code, bit);
  return static_cast<std::int16_t>(code);
}

Text CEventLogEntry::EventMessage() {
  // The look-up lets the caller's messages in, and one of them may let go of the entry.
  const Ref<CEventLogEntry> keep_alive(this);
  if (message_.empty()) ComputeMessage();
  Err().Clear();
  return message_;
}

Text CEventLogEntry::EventMessageRaw() {
  const Ref<CEventLogEntry> keep_alive(this);
  if (message_.empty()) EventMessage();
  return raw_message_;
}

void CEventLogEntry::ComputeMessage() {
  Swallow([&] { Trace(u"EM:1"); });
  if (!strings_resolved_) Swallow([&] { ResolveStrings(); });
  Swallow([&] { Trace(u"EM:2"); });
  Swallow([&] {
    message_ = GetEventMessage(Source(), fields_.event_id, {}, fields_.strings, raw_message_);
  });
  Swallow([&] { Trace(u"EM:3"); });
  if (message_.empty()) Swallow([&] { message_ = FallbackMessage(); });
}

Text CEventLogEntry::FallbackMessage() const {
  Text text = u"The description for Event ID (" + ToText(std::int64_t{fields_.event_id}) +
              u") in Source (" + fields_.source_name +
              u" ) could not be found. It contains the following insert strings: \r\n";
  for (const Text& element : fields_.strings) text += element + u"\r\n";
  return text;
}

Text CEventLogEntry::EventCategoryDescription() {
  return ReRaisingAs(u"CEventLogEntry", [&] {
    const Ref<CEventLogEntry> keep_alive(this);
    if (!category_text_) category_text_ = std::make_unique<Text>();
    Text& text = *category_text_;
    if (text.empty()) {
      Trace(u"ECD:1");
      text = GetCategoryMessage(Source(), fields_.category);
      Trace(u"ECD:2");
    }
    if (text.empty()) {
      text = fields_.category != 0 ? u"(" + ToText(std::int64_t{fields_.category}) + u")"
                                   : Text(u"None");
    }
    return text;
  });
}

Text CEventLogEntry::EventTypeDescription() const {
  switch (fields_.event_type) {
    case EVENTLOG_SUCCESS:
      return u"Success";
    case EVENTLOG_ERROR_TYPE:
      return u"Error";
    case EVENTLOG_WARNING_TYPE:
      return u"Warning";
    case EVENTLOG_INFORMATION_TYPE:
      return u"Information";
    case EVENTLOG_AUDIT_SUCCESS:
      return u"Success Audit";
    case EVENTLOG_AUDIT_FAILURE:
      return u"Failure Audit";
    default:
      return {};
  }
}

Variant CEventLogEntry::StringsArray() {
  const Ref<CEventLogEntry> keep_alive(this);
  if (!strings_resolved_) ResolveStrings();
  return fields_.strings.empty() ? Variant() : Variant(TextArray(fields_.strings, 1));
}

void CEventLogEntry::ResolveStrings() {
  for (Text& element : fields_.strings) {
    if (element.find(u'%') == Text::npos) continue;
    if (Apartment::Current().debug) {
      DebugLog(u"ResolveStrings - GetParameterMessage(" + Origin().lookup_server + u", " +
               Origin().log_name + u", " + fields_.source_name + u", " +
               ToText(std::int64_t{fields_.event_id}) + u", " + element);
    }
    // The look-up lets the caller's messages in, which may ask for the strings in the meantime.
    const Text unresolved = element;
    element = GetParameterMessage(Source(), unresolved);
  }
  strings_resolved_ = !fields_.strings.empty();
}

void CEventLogEntry::Trace(TextView tag) const {
  if (!Apartment::Current().debug) return;
  DebugLog(ToText(std::int64_t{fields_.record_number}) + u":" +
           ToText(Variant(fields_.time_generated)) + u":" +
           ToText(std::int64_t{fields_.event_id}).append(tag));
}

const EventOrigin& CEventLogEntry::Origin() const {
  static const EventOrigin nowhere;
  return fields_.origin ? *fields_.origin : nowhere;
}

MessageSource CEventLogEntry::Source() const {
  return {Origin().lookup_server, Origin().log_name, fields_.source_name};
}

}  // namespace veldmark
