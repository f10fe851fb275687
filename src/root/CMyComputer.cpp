#include "root/CMyComputer.h"

#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "storage/CDrives.h"

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
