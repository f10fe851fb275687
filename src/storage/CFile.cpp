#include "storage/CFile.h"

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "security/CSecurityDescriptor.h"
#include "storage/PathForms.h"
#include "storage/PlatformFiles.h"

namespace veldmark {
namespace {

constexpr TextView kVersionRemark =
    u"The first of the version fields to be read loads them all. Raises 13 for a file that has no "
    u"version resource, each time anew.";
constexpr TextView kVersionNumberRemark =
    u"Raises 13 for a file that has no version resource, each time anew. Where the two lower "
    u"numbers are both 0 they are one, \"0000\"; a number of 32768 or more comes out negative, "
    u"with the last two in one if it is the third.";

}  // namespace

const Interface& CFile::Describe() {
  static const Interface table =
      Declare<CFile>(u"CFile", u"One file.")
          .Method<&CFile::Delete>(u"Delete",
                                  u"Deletes the file, also a read-only one where that is asked.",
                                  {{u"DeleteReadOnly", false}})
          .Remark(
              u"Raises the platform's error, 5 for a read-only file unless that is asked; then "
              u"the attributes are cleared first, also where the file can't be deleted.")
          .Method<&CFile::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                 u"The file's security descriptor.")
          .Stored<&CFile::FileName>(u"FileName", u"Name without the folder.")
          .Property<&CFile::VersionField<&Details::Description>,
                    &CFile::PutDetail<&Details::Description>>(
              u"Description", u"Version resource: what the file is.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::Version>, &CFile::PutDetail<&Details::Version>>(
              u"Version", u"Version resource: the file's version, as 05.01.2600.00.")
          .Remark(kVersionNumberRemark)
          .Stored<&CFile::FileSize>(u"FileSize", u"Size in bytes.")
          .Remark(u"Right below 4 GiB only: each 4 GiB count for 268435456 bytes.")
          .Property<&CFile::Path, &CFile::PutPath>(u"Path", u"Full plain path.")
          .Property<&CFile::Attributes, &CFile::PutAttributes>(
              u"Attributes", u"Attributes; a change is written to disk.")
          .Stored<&CFile::DateCreated>(u"DateCreated", u"Time of creation, local.")
          .Stored<&CFile::DateLastAccessed>(u"DateLastAccessed", u"Time of last access, local.")
          .Stored<&CFile::DateLastModified>(u"DateLastModified", u"Time of last change, local.")
          .Stored<&CFile::ShortName>(u"ShortName", u"Name in 8.3 form.")
          .Property<&CFile::Detail<&Details::ShortPath>, &CFile::PutDetail<&Details::ShortPath>>(
              u"ShortPath", u"Path in 8.3 form.")
          .Property<&CFile::Detail<&Details::FileType>, &CFile::PutDetail<&Details::FileType>>(
              u"FileType", u"Kind of file.")
          .Property<&CFile::VersionField<&Details::ProductName>,
                    &CFile::PutDetail<&Details::ProductName>>(
              u"ProductName", u"Version resource: the product that the file belongs to.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::ProductVersion>,
                    &CFile::PutDetail<&Details::ProductVersion>>(
              u"ProductVersion", u"Version resource: the product's version.")
          .Remark(kVersionNumberRemark)
          .Property<&CFile::VersionField<&Details::CompanyName>,
                    &CFile::PutDetail<&Details::CompanyName>>(u"CompanyName",
                                                              u"Version resource: the maker.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::InternalName>,
                    &CFile::PutDetail<&Details::InternalName>>(
              u"InternalName", u"Version resource: the name within the product.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::LegalCopyright>,
                    &CFile::PutDetail<&Details::LegalCopyright>>(
              u"LegalCopyright", u"Version resource: the copyright notice.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::LegalTrademarks>,
                    &CFile::PutDetail<&Details::LegalTrademarks>>(u"LegalTrademarks",
                                                                  u"Version resource: trademarks.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::OriginalFilename>,
                    &CFile::PutDetail<&Details::OriginalFilename>>(
              u"OriginalFilename", u"Version resource: the name that the file was made with.")
          .Remark(kVersionRemark)
          .Property<&CFile::VersionField<&Details::Comments>,
                    &CFile::PutDetail<&Details::Comments>>(u"Comments",
                                                           u"Version resource: comments.")
          .Remark(kVersionRemark);
  return table;
}

bool CFile::Delete(bool delete_read_only) {
  if (path_.empty()) return false;
  Err().Clear();
  if (delete_read_only) Swallow([&] { PutAttributes(FA_Normal); });
  if (!Files().DeleteFileW(ApiFilePath(path_).c_str())) {
    ReRaising([] { RaisePlatformError(Err().LastDllError(), SourceOf(u"CFile")); });
  }
  return true;
}

Ref<CSecurityDescriptor> CFile::GetSecurityDescriptor() {
  return ReRaisingAs(u"CFile", [&] { return Engine().GetFileSD(path_, *this); });
}

void CFile::PutPath(const Text& path) { path_ = PlainPath(path); }

void CFile::PutAttributes(FileAttribute value) {
  ReRaising([&] {
    if (value == attributes_) return;
    if (!Files().SetFileAttributesW(ApiFilePath(path_).c_str(), static_cast<DWORD>(value))) {
      RaisePlatformError(Err().LastDllError(), Err().Source());
    }
    attributes_ = value;
  });
}

void CFile::LoadVersionInfo() {
  if (version_info_loaded_) return;
  Engine().LoadFileVersionInfo(*this);
  version_info_loaded_ = true;
}

}  // namespace veldmark
