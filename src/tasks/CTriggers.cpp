#include "tasks/CTriggers.h"

#include "collections/CollectionTable.h"
#include "tasks/CTrigger.h"

namespace veldmark {

const Interface& CTriggers::Describe() {
  static const Interface table =
      CollectionTable<CTriggers>(u"CTriggers",
                                 u"The triggers of a task, found by their description.")
          .Keyed(u"oTrigger");
  return table;
}

CollectionKey CTriggers::KeyOf(CTrigger& trigger) { return CollectionKey::Encoded(trigger.Text()); }

}  // namespace veldmark
