#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "storage/CFile.h"
#include "storage/CFiles.h"
#include "storage/EntryBuilder.h"
#include "storage/FolderListing.h"
#include "storage/PlatformFiles.h"

namespace veldmark {

Ref<CFile> CSupport::GetFile(const Text& path) {
  return ReRaising([&] {
    const Text long_path = ApiFilePath(path);
    const FolderListing listing(Files(), long_path);
    return BuildFileFromFindData(long_path, listing.Entry());
  });
}

Ref<CFiles> CSupport::GetFiles(const Text& path) {
  return ReRaising([&] {
    auto files = Make<CFiles>();
    const Text folder = ApiFolderPath(path);
    EntryBuilder builder;
    FolderListing listing(Files(), folder + u"*.*");
    do {
      if (!listing.IsDirectory()) files->Add(builder.File(folder, listing.Entry()).Get());
    } while (listing.Next());
    return files;
  });
}

Ref<CFile> CSupport::BuildFileFromFindData(const Text& path, const WIN32_FIND_DATAW& find_data) {
  return ReRaising([&] { return EntryBuilder().File(path, find_data); });
}

}  // namespace veldmark
