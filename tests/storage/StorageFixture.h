#pragma once

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "automation/Conversion.h"
#include "automation/Events.h"
#include "automation/Interface.h"
#include "security/CSecurityDescriptor.h"
#include "storage/CFile.h"
#include "storage/CFiles.h"
#include "storage/CFolder.h"
#include "storage/CFolders.h"
#include "storage/CPathName.h"
#include "storage/CPathNames.h"
#include "support/ErrorOf.h"
#include "support/FaultSweep.h"
#include "support/Listener.h"

namespace veldmark {

inline Text PathOf(Object& object) { return ToText(Call(object, u"Path", MemberKind::kGet)); }

/// The paths in a list, a blank before each; "Nothing" without a list.
template <class List>
std::string PathsIn(const Ref<List>& list) {
  if (!list) return "Nothing";
  std::string paths;
  for (std::int32_t i = 1; i <= list->Count(); ++i) {
    paths += " " + ToUtf8(PathOf(*list->ItemByIndex(i)));
  }
  return paths;
}

/// A few folders on this computer and on another.
class StorageWorld : public SimulatedApartment {
 public:
  StorageWorld() {
    local().AddFile(u"C:\\D\\a", "alpha");
    local().AddFile(u"C:\\D\\b");
    local().AddFile(u"C:\\D\\o\\inner");
    local().AddFolder(u"C:\\D\\x");
    local().AddFolder(u"C:\\Empty");
    local().AddFile(u"C:\\Secret\\s");
    local().Find(u"C:\\Secret")->DenyList();
    local().AddDrive(u'E');
    local().AddFile(u"E:\\one");
    simulated::Computer& server = estate().AddComputer(u"SRV");
    server.AddDrive(u'C');
    server.AddFile(u"C:\\Shared\\Deep\\f");
    server.AddShare(u"Share", u"C:\\Shared");
  }
};

using StorageTest = TestIn<StorageWorld>;

}  // namespace veldmark
