#include "tasks/CTask.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CTask::Describe() {
  static const Interface table =
      Declare<CTask>(u"CTask", u"A scheduled task.")
          .Stored<&CTask::Name>(u"Name", u"Its name, without folder and extension.");
  return table;
}

}  // namespace veldmark
