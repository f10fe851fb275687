#include "storage/CFile.h"

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "apartment/NotBuilt.h"
#include "automation/Declare.h"
#include "security/CSecurityDescriptor.h"
#include "storage/PathForms.h"
#include "storage/PlatformFiles.h"

namespace veldmark {

const Interface& CFile::Describe() {
  static const Interface table =
      Declare<CFile>(u"CFile", u"One file.")
          .Method<&CFile::Delete>(u"Delete",
                                  u"Deletes the file, also a read-only one where that is asked.",
                                  {{u"DeleteReadOnly", false}})
          .Method<&CFile::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                 u"The file's security descriptor.")
          .Stored<&CFile::FileName>(u"FileName", u"Name without the folder.")
          .Property<&CFile::VersionField<&Details::Description>,
                    &CFile::PutDetail<&Details::Description>>(
              u"Description", u"Version resource: what the file is.")
          .Property<&CFile::VersionField<&Details::Version>, &CFile::PutDetail<&Details::Version>>(
              u"Version", u"Version resource: the file's version, as 05.01.2600.00.")
          .Stored<&CFile::FileSize>(u"FileSize", u"Size in bytes.")
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
          .Property<&CFile::VersionField<&Details::ProductVersion>,
                    &CFile::PutDetail<&Details::ProductVersion>>(
              u"ProductVersion", u"Version resource: the product's version.")
          .Property<&CFile::VersionField<&Details::CompanyName>,
                    &CFile::PutDetail<&Details::CompanyName>>(u"CompanyName",
                                                              u"Version resource: the maker.")
          .Property<&CFile::VersionField<&Details::InternalName>,
                    &CFile::PutDetail<&Details::InternalName>>(
              u"InternalName", u"Version resource: the name within the product.")
          .Property<&CFile::VersionField<&Details::LegalCopyright>,
                    &CFile::PutDetail<&Details::LegalCopyright>>(
              u"LegalCopyright", u"Version resource: the copyright notice.")
          .Property<&CFile::VersionField<&Details::LegalTrademarks>,
                    &CFile::PutDetail<&Details::LegalTrademarks>>(u"LegalTrademarks",
                                                                  u"Version resource: trademarks.")
          .Property<&CFile::VersionField<&Details::OriginalFilename>,
                    &CFile::PutDetail<&Details::OriginalFilename>>(
              u"OriginalFilename", u"Version resource: the name that the file was made with.")
          .Property<&CFile::VersionField<&Details::Comments>,
                    &CFile::PutDetail<&Details::Comments>>(u"Comments",
                                                           u"Version resource: comments.");
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
