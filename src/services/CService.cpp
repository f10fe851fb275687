#include "services/CService.h"

#include "automation/Declare.h"

namespace veldmark {

const Interface& CService::Describe() {
  static const Interface table =
      Declare<CService>(u"CService", u"A service of a computer.")
          .Stored<&CService::ServiceName>(
              u"ServiceName", u"The short name, by which the service manager knows it.");
  return table;
}

}  // namespace veldmark
