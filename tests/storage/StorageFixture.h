#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "apartment/CStatus.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "automation/Conversion.h"
#include "automation/Interface.h"
#include "platform/operations/Handles.h"
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
#include "support/ValuesOf.h"

namespace veldmark {

/// A file or folder object with a path, and nothing that the platform said of it.
template <class Item>
Ref<Item> At(const Text& path) {
  auto item = Make<Item>();
  item->PutPath(path);
  return item;
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
    server.AddDrive(u'C');
    server.AddFile(u"C:\\Shared\\Deep\\f");
    server.AddShare(u"Share", u"C:\\Shared");
  }
  /// Opens a file as somebody else.
  FileHandle Open(const Text& path, DWORD access, DWORD share) {
    return FileHandle(platform.files,
                      platform.files.CreateFileW(path.c_str(), access, share, nullptr,
                                                 kOpenExisting, 0, nullptr));
  }

  simulated::Computer& server = estate().AddComputer(u"SRV");
};

using StorageTest = TestIn<StorageWorld>;

}  // namespace veldmark
