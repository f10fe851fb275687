#pragma once

#include <array>

#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Values.h"
#include "platform/operations/FileSystem.h"

namespace veldmark {

class CFile;
class CFolder;

/// Makes the objects of directory entries, those of one walk with one builder.
class EntryBuilder {
 public:
  /// The folder of an entry; `path` is the folder's own, in any form.
  Ref<CFolder> Folder(const Text& path, const WIN32_FIND_DATAW& entry);
  /// The file of an entry; `path` is the file's own or its folder's with a "\" at the end, in any
  /// form. Raises 6 for a size that no currency value holds.
  Ref<CFile> File(const Text& path, const WIN32_FIND_DATAW& entry);

 private:
  struct KnownSecond {
    std::uint64_t second = 0;
    Date date;
  };

  /// The local date of a time stamp. Zones are whole minutes apart, so the stamps of one second
  /// have one date, and files of one folder tend to share seconds.
  Date LocalDate(const FILETIME& stamp);
  /// What files and folders have in common.
  template <class Item>
  void Fill(Item& item, const WIN32_FIND_DATAW& entry);

  std::array<KnownSecond, 64> known_{};
};

}  // namespace veldmark
