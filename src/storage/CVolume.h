#pragma once

#include <cstdint>
#include <utility>

#include "apartment/Counted.h"
#include "automation/Object.h"
#include "automation/Text.h"
#include "automation/Variant.h"

namespace veldmark {

class CFolder;

/// A disk of a computer, seen through its administrative share. Space and file system are fetched
/// once, by the first get that needs them; what can't be told stays empty or 0. Sizes are currency
/// values in bytes; one over 922337203685477 raises 6.
class CVolume : public Exported<CVolume>, Counted<Counter::kVolume> {
 public:
  static const Interface& Describe();

  /// A folder with this volume's path and nothing else; the platform isn't asked.
  Ref<CFolder> GetRootFolder();
  /// "\\srv\C$".
  const Text& VolumePath() const { return volume_path_; }
  Variant TotalSize() { return Loaded(total_size_); }
  void PutTotalSize(const Variant& value) { total_size_ = value; }
  /// What is free in all, whatever the caller's quota.
  Variant AvailableSpace() { return Loaded(available_space_); }
  void PutAvailableSpace(const Variant& value) { available_space_ = value; }
  /// "1A2B-3C4D".
  Text SerialNumber();
  Text FileSystem() { return Loaded(file_system_); }
  void PutFileSystem(const Text& value) { file_system_ = value; }
  /// Whether the volume could be read when the other values were fetched; False before that.
  bool IsReady() const { return is_ready_; }
  std::int32_t MaxFilenameComponentLength() { return Loaded(maximum_component_length_); }
  /// The flags of the file system.
  std::int32_t Flags() { return Loaded(flags_); }

  Text VolumeName;  ///< "C:" till the values are fetched, the label afterwards where there is one
  Text ServerName;

  void SetVolumePath(Text path) { volume_path_ = std::move(path); }
  void SetSerialNumber(std::int32_t value) { serial_number_ = value; }
  void SetMaxFilenameComponentLength(std::int32_t value) { maximum_component_length_ = value; }
  void SetFlags(std::int32_t value) { flags_ = value; }
  void SetIsReady(bool ready) { is_ready_ = ready; }

 private:
  void Load();
  template <class Value>
  const Value& Loaded(const Value& value) {
    Load();
    return value;
  }

  Text volume_path_;
  Variant total_size_;
  Variant available_space_;
  Text file_system_;
  std::int32_t serial_number_ = 0;
  std::int32_t maximum_component_length_ = 0;
  std::int32_t flags_ = 0;
  bool is_ready_ = false;
  bool loaded_ = false;
};

}  // namespace veldmark
