#include "tasks/CTasks.h"

#include "collections/CollectionTable.h"
#include "tasks/CTask.h"

namespace veldmark {

const Interface& CTasks::Describe() {
  static const Interface table =
      CollectionTable<CTasks>(u"CTasks", u"Scheduled tasks, found by name.").Keyed(u"oTask");
  return table;
}

CollectionKey CTasks::KeyOf(CTask& task) { return CollectionKey::Encoded(task.Name.Get()); }

}  // namespace veldmark
