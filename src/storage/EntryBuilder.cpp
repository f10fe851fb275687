#include "storage/EntryBuilder.h"

#include <algorithm>

#include "apartment/Conversions.h"
#include "automation/CaseMapping.h"
#include "automation/Error.h"
#include "storage/CFile.h"
#include "storage/CFolder.h"
#include "storage/FolderListing.h"
#include "storage/PathForms.h"

namespace veldmark {
namespace {

/// Whether a path ends in a name, compared in upper case.
bool EndsInName(TextView path, TextView name) {
  return path.size() >= name.size() &&
         std::ranges::equal(path.substr(path.size() - name.size()), name, {}, UpperCase, UpperCase);
}

/// The size as its callers know it: the high half weighs 2^28 instead of 2^32. Raises 6 where a
/// currency value can't hold it.
double EntrySize(const WIN32_FIND_DATAW& entry) {
  constexpr std::int64_t kHighWeight = 1 << 28;
  constexpr std::int64_t kLimit = INT64_MAX / Currency::kScale;
  const std::int64_t high = entry.nFileSizeHigh;
  const std::int64_t size = high * kHighWeight + entry.nFileSizeLow;
  if (size > kLimit) Raise(runtime_error::kOverflow);
  return static_cast<double>(size);
}

}  // namespace

Ref<CFolder> EntryBuilder::Folder(const Text& path, const WIN32_FIND_DATAW& entry) {
  auto folder = Make<CFolder>();
  const TextView name = EntryName(entry);
  folder->SetPlainPath(PlainPath(path));
  if (name == u"." && path.size() > 1) {
    // The platform names the folder itself: its name stands in the path, before the last character.
    const std::size_t before_name = path.rfind(u'\\', path.size() - 2);
    folder->FolderName = path.substr(before_name == Text::npos ? 0 : before_name + 1);
    folder->FolderName.pop_back();
  } else {
    folder->FolderName = name;
  }
  Fill(*folder, entry);
  return folder;
}

Ref<CFile> EntryBuilder::File(const Text& path, const WIN32_FIND_DATAW& entry) {
  auto file = Make<CFile>();
  const TextView name = EntryName(entry);
  file->FileName = name;
  file->SetPlainPath(PlainPath(EndsInName(path, name) ? path : path + file->FileName));
  Fill(*file, entry);
  file->FileSize = EntrySize(entry);
  return file;
}

template <class Item>
void EntryBuilder::Fill(Item& item, const WIN32_FIND_DATAW& entry) {
  item.ShortName = EntryShortName(entry);
  item.SetAttributesField(static_cast<std::int32_t>(entry.dwFileAttributes));
  item.DateCreated = LocalDate(entry.ftCreationTime);
  item.DateLastAccessed = LocalDate(entry.ftLastAccessTime);
  item.DateLastModified = LocalDate(entry.ftLastWriteTime);
}

Date EntryBuilder::LocalDate(const FILETIME& stamp) {
  constexpr std::uint64_t kStampsPerSecond = 10'000'000;
  const std::uint64_t second =
      (std::uint64_t{stamp.dwHighDateTime} << 32 | stamp.dwLowDateTime) / kStampsPerSecond;
  KnownSecond& known = known_[second % known_.size()];
  // Date 0 may be a failure, which the next stamp need not share.
  if (known.second != second || known.date == Date{}) {
    known = {second, FileTimeToDate(stamp, true)};
  }
  return known.date;
}

}  // namespace veldmark
