#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "storage/CFile.h"
#include "storage/VersionResource.h"

namespace veldmark {
namespace {

using Details = CFile::Details;

/// A number with at least so many digits, its sign before them.
Text Padded(std::int32_t value, std::size_t digits) {
  const std::int64_t whole = value;
  const Text magnitude = ToText(whole < 0 ? -whole : whole);
  Text text(whole < 0 ? u"-" : u"");
  if (magnitude.size() < digits) text.append(digits - magnitude.size(), u'0');
  return text + magnitude;
}

Text Words(std::int32_t value) {
  return Padded(HiWordOfLong(value), 2) + u"." + Padded(LoWordOfLong(value), 2);
}

/// A version as its readers know it, "05.01.2600.00". A lower half below 1 stands as one number.
Text VersionText(DWORD most_significant, DWORD least_significant) {
  const auto low = static_cast<std::int32_t>(least_significant);
  return Words(static_cast<std::int32_t>(most_significant)) + u"." +
         (low < 1 ? Padded(low, 4) : Words(low));
}

/// The version resource of a file, as the platform hands it out.
std::vector<std::uint8_t> ReadResource(const Text& path) {
  VersionInformation& versions = Apartment::Current().platform.version_information;
  DWORD handle = 0;
  const DWORD size = versions.GetFileVersionInfoSizeW(path.c_str(), &handle);
  if (size == 0) {
    const std::int32_t error = Err().LastDllError();
    const Text text = GetAPIErrorText(ToLong(Variant(Err().Description())));
    Raise(error, SourceOf(u"CSupport"), text);
  }
  std::vector<std::uint8_t> bytes(size);
  if (!versions.GetFileVersionInfoW(path.c_str(), 0, size, bytes.data())) {
    RaisePlatformError(Err().LastDllError());
  }
  return bytes;
}

}  // namespace

void CSupport::LoadFileVersionInfo(CFile& file) {
  ReRaising([&] {
    if (file.Path().empty()) return;
    const std::vector<std::uint8_t> bytes = ReadResource(ApiFilePath(file.Path()));
    const VersionResource resource(bytes);
    if (const auto info = resource.FixedInfo()) {
      file.PutDetail<&Details::Version>(VersionText(info->dwFileVersionMS, info->dwFileVersionLS));
      file.PutDetail<&Details::ProductVersion>(
          VersionText(info->dwProductVersionMS, info->dwProductVersionLS));
    }
    const auto translation = resource.FirstTranslation();
    if (!translation) return;
    const auto load = [&]<Text Details::*kField>(TextView name) {
      if (const auto text = resource.StringOf(*translation, name)) file.PutDetail<kField>(*text);
    };
    load.operator()<&Details::Description>(u"FileDescription");
    load.operator()<&Details::CompanyName>(u"CompanyName");
    load.operator()<&Details::ProductName>(u"ProductName");
    load.operator()<&Details::InternalName>(u"InternalName");
    load.operator()<&Details::LegalCopyright>(u"LegalCopyright");
    load.operator()<&Details::LegalTrademarks>(u"LegalTrademarks");
    load.operator()<&Details::OriginalFilename>(u"OriginalFilename");
    load.operator()<&Details::Comments>(u"Comments");
  });
}

}  // namespace veldmark
