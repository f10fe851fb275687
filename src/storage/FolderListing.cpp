#include "storage/FolderListing.h"

#include "apartment/Conversions.h"

namespace veldmark {
namespace {

template <std::size_t kLength>
TextView CutAtNul(const char16_t (&field)[kLength]) {
  const TextView text(field, kLength);
  return text.substr(0, text.find(u'\0'));
}

}  // namespace

FolderListing::FolderListing(FileSystem& files, const Text& pattern)
    : files_(files), find_(files), entry_{} {
  find_.Reset(files_.FindFirstFileW(pattern.c_str(), &entry_));
  if (!find_) RaisePlatformError(LastPlatformError());
}

TextView FolderListing::Name() const { return EntryName(entry_); }

bool FolderListing::IsDots() const {
  const TextView name = Name();
  return name == u"." || name == u"..";
}

bool FolderListing::Next() { return files_.FindNextFileW(find_.Get(), &entry_) != 0; }

TextView EntryName(const WIN32_FIND_DATAW& entry) { return CutAtNul(entry.cFileName); }

TextView EntryShortName(const WIN32_FIND_DATAW& entry) {
  return CutAtNul(entry.cAlternateFileName);
}

}  // namespace veldmark
