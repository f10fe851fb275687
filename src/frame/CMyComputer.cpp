#include "frame/CMyComputer.h"

#include "collections/CDrives.h"
#include "frame/CSupport.h"
#include "frame/Errors.h"
#include "platform/automation/Declare.h"

namespace veldmark {

const Interface& CMyComputer::Describe() {
  static const Interface table = Declare<CMyComputer>(u"CMyComputer", u"The local computer.")
                                     .Method<&CMyComputer::GetDrives>(u"GetDrives", u"Its drives.");
  return table;
}

Ref<CDrives> CMyComputer::GetDrives() {
  return ReRaisingAs(u"CMyComputer", [] { return Engine().GetDrives(); });
}

}  // namespace veldmark
