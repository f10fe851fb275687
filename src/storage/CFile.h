#pragma once

#include <memory>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"
#include "storage/FileAttribute.h"

namespace veldmark {

class CSecurityDescriptor;

/// One file: what its directory entry said when it was listed, and what its version resource says.
class CFile : public Exported<CFile>, Counted<Counter::kFile> {
 public:
  static const Interface& Describe();

  /// Deletes the file, first taking all its attributes off where `delete_read_only` is set; those
  /// stay off if the deletion then fails. False for an object without a path, with `Err` untouched;
  /// else `Err` is cleared first, and a failure raises the platform's error.
  bool Delete(bool delete_read_only);
  /// Owner and list as they are now, by `GetFileSecurityW`; see `CSupport::GetFileSD`. Raises the
  /// platform's error.
  Ref<CSecurityDescriptor> GetSecurityDescriptor();

  /// Full plain path; the put takes the long form too.
  const Text& Path() const { return path_; }
  void PutPath(const Text& path);

  /// A put that changes the value writes it to disk and raises the platform's error. What the disk
  /// made of it isn't read back.
  FileAttribute Attributes() const { return attributes_; }
  void PutAttributes(FileAttribute value);

  Text FileName;
  Text ShortName;    ///< the 8.3 name; empty where the name is one itself
  Variant FileSize;  ///< bytes as a double; from 4 GiB on, 2^28 for each full 4 GiB, and the rest
  Date DateCreated;  ///< local time
  Date DateLastAccessed;
  Date DateLastModified;

  /// Fields that most files never get a value for.
  struct Details {
    Text Description;
    Text Version;
    Text ShortPath;
    Text FileType;
    Text ProductName;
    Text ProductVersion;
    Text CompanyName;
    Text InternalName;
    Text LegalCopyright;
    Text LegalTrademarks;
    Text OriginalFilename;
    Text Comments;
  };
  /// A plain stored field.
  template <Text Details::*kField>
  Text Detail() const {
    return details_ ? (*details_).*kField : Text();
  }
  template <Text Details::*kField>
  void PutDetail(const Text& value) {
    if (!details_) {
      if (value.empty()) return;
      details_ = std::make_unique<Details>();
    }
    (*details_).*kField = value;
  }
  /// A field of the version resource, which the first read of one of them loads. A load that raises
  /// is tried again at the next read.
  template <Text Details::*kField>
  Text VersionField() {
    LoadVersionInfo();
    return Detail<kField>();
  }

  /// Stores the attributes without touching the disk.
  void SetAttributesField(std::int32_t value) { attributes_ = static_cast<FileAttribute>(value); }
  /// Stores a path that is in its plain form already.
  void SetPlainPath(Text path) { path_ = std::move(path); }

 private:
  void LoadVersionInfo();

  Text path_;
  std::unique_ptr<Details> details_;
  FileAttribute attributes_ = FA_Normal;
  bool version_info_loaded_ = false;
};

}  // namespace veldmark
