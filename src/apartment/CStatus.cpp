#include "apartment/CStatus.h"

#include "apartment/Counters.h"
#include "automation/Declare.h"

namespace veldmark {
namespace {

constexpr std::int32_t kStatusEvent = 1;
constexpr std::int32_t kCancelLoadingEvent = 2;

const EventInterface& DescribeStatusEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CStatus", u"Progress of walks, and the question whether to stop them.")
          .Event<const Text&>(u"Status", u"A progress text.", {u"StatusMessage"})
          .Event<std::int32_t, bool&>(u"CancelLoading",
                                      u"Asks whether to stop; Cancel set to True ends the walk.",
                                      {u"ObjectCount", u"Cancel"});
  return table;
}

}  // namespace

const Interface& CStatus::Describe() {
  static const Interface table =
      Declare<CStatus>(u"CStatus", u"Progress and cancellation of the library's walks.")
          .Get<&CStatus::GetDebugInfo>(
              u"GetDebugInfo", u"The object counts report, for \"ObjectCounts\".", {u"DebugType"})
          .Events(DescribeStatusEvents());
  return table;
}

Text CStatus::GetDebugInfo(const Text& debug_type) {
  if (debug_type == u"ObjectCounts") return GetObjectCountsReport();
  return u"Debug Type '" + debug_type + u"' not recognized.";
}

void CStatus::RaiseStatusText(const Text& text) {
  events_.Raise(*this, kStatusEvent, {Variant(text)});
}

void CStatus::RaiseCancelLoading(std::int32_t object_count, bool& cancel) {
  bool answer = false;
  events_.Raise(*this, kCancelLoadingEvent, {Variant(object_count), Variant::ByReference(answer)});
  cancel = answer;
}

}  // namespace veldmark
