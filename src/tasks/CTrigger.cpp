#include "tasks/CTrigger.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CTrigger::Describe() {
  static const Interface table =
      Declare<CTrigger>(u"CTrigger", u"A trigger of a scheduled task.")
          .Get<&CTrigger::Text>(u"Text", u"When the task runs, as the scheduler puts it in words.");
  return table;
}

}  // namespace veldmark
