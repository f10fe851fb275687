// Any bytes as a job file: it is read, or refused, within its bytes. What was read is written and
// read again as it is, and its triggers have times and texts, whatever stands in them.

#include "FuzzTarget.h"
#include "platform/scheduling/TriggerTimes.h"
#include "platform/simulated/estate/JobFile.h"

namespace {

using namespace veldmark;
using simulated::JobFile;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto read = JobFile::Read({data, size});
  const auto* const job = std::get_if<JobFile>(&read);
  if (job == nullptr) return 0;
  const LocalSeconds now = 13'354'122'600;
  for (const TASK_TRIGGER& trigger : job->triggers) {
    const auto run = NextRun(trigger, now);
    Require(!run || run->start > now);
    Require(!TriggerText(trigger).empty());
  }
  WhyNoRun(job->triggers);
  const auto bytes = job->Write();
  if (!bytes) return 0;
  const auto again = JobFile::Read(*bytes);
  Require(std::holds_alternative<JobFile>(again));
  const auto twice = std::get<JobFile>(again).Write();
  Require(twice && *twice == *bytes);
  return 0;
}
