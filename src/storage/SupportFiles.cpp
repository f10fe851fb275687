#include <algorithm>

#include "collections/CFiles.h"
#include "frame/CSupport.h"
#include "frame/Errors.h"
#include "frame/Support.h"
#include "platform/automation/CaseMapping.h"
#include "storage/CFile.h"
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

Ref<CFile> CSupport::GetFile(const Text& path) {
  return ReRaising([&] {
    const Text long_path = ApiFilePath(path);
    const FolderListing listing(Apartment::Current().platform.files, long_path);
    return BuildFileFromFindData(long_path, listing.Entry());
  });
}

Ref<CFiles> CSupport::GetFiles(const Text& path) {
  return ReRaising([&] {
    auto files = Make<CFiles>();
    const Text folder = ApiFolderPath(path);
    FolderListing listing(Apartment::Current().platform.files, folder + u"*.*");
    do {
      if (!listing.IsDirectory()) files->Add(BuildFileFromFindData(folder, listing.Entry()).Get());
    } while (listing.Next());
    return files;
  });
}

Ref<CFile> CSupport::BuildFileFromFindData(const Text& path, const WIN32_FIND_DATAW& find_data) {
  return ReRaising([&] {
    auto file = Make<CFile>();
    const TextView name = EntryName(find_data);
    file->FileName = name;
    file->ShortName = EntryShortName(find_data);
    file->SetPlainPath(PlainPath(EndsInName(path, name) ? path : path + file->FileName));
    file->SetAttributesField(static_cast<std::int32_t>(find_data.dwFileAttributes));
    file->DateCreated = FileTimeToDate(find_data.ftCreationTime, true);
    file->DateLastAccessed = FileTimeToDate(find_data.ftLastAccessTime, true);
    file->DateLastModified = FileTimeToDate(find_data.ftLastWriteTime, true);
    file->FileSize = EntrySize(find_data);
    return file;
  });
}

}  // namespace veldmark
