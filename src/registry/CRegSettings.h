#pragma once

#include <cstdint>

#include "automation/Text.h"
#include "automation/Variant.h"
#include "platform/operations/Registry.h"

namespace veldmark {

/// Named settings below one registry path. A section is a sub-key of the path (an empty one the
/// path itself), a key is a value's name in it; an empty key or "*" is the section's default value.
/// It needs the platform and `Err`, not the engine.
///
/// The string and number operations work on another computer when `MachineName` is set and
/// `HKeyRoot` is HKEY_LOCAL_MACHINE or HKEY_USERS; deletion and listing are always local. Errors
/// carry the platform's number, and its text or "Error connecting to remote registry".
class CRegSettings {
 public:
  /// Works on the platform of the calling thread's apartment.
  CRegSettings();

  std::int32_t HKeyRoot = static_cast<std::int32_t>(0x80000001u);
  Text Path = u"Software";
  Text MachineName;

  /// Removes a value, or with an empty key the whole section, which must have no sub-keys. False if
  /// the section (the path) can't be opened; raises any other failure.
  bool DeleteSetting(const Text& section, const Text& key);
  /// The section's texts as a two-dimensional array of texts: names in column 0, values in column
  /// 1. A value is as many units long as its data has bytes, less one, so NULs follow the text.
  /// Empty if there are none or the section can't be read.
  Variant GetAllSettings(const Text& section);
  /// A value's data as text, whatever its type, without the last unit. `default_value` where the
  /// value is missing or has no data; a missing section too, but raised on another computer.
  Text GetString(const Text& section, const Text& key, const Text& default_value);
  /// Stores a text, creating the section if need be; an empty text removes the value.
  bool SaveString(const Text& section, const Text& key, const Text& value);
  /// The first four bytes of a value's data. `default_value` where the section or the value is
  /// missing, has no data or more than four bytes.
  std::int32_t GetDWord(const Text& section, const Text& key, std::int32_t default_value);
  /// Stores a number, creating the section if need be.
  bool SaveDWord(const Text& section, const Text& key, std::int32_t value);

 private:
  struct Root;

  /// The root to work on, connected where the settings are another computer's.
  Root ConnectRoot() const;
  HKEY LocalRoot() const;
  Text GetSettingKeyPath(const Text& section) const;
  Text GetSettingErrorText(std::int32_t number) const;
  [[noreturn]] void RaiseStatus(LSTATUS status) const;

  /// Reads a value by `read(key, name, size)`, `size` being above 0. Nothing where a missing
  /// section or value leaves the default; `raises_connecting` tells which failures on a connected
  /// root are failures of the connection.
  template <class Read>
  void ReadValue(const Text& section, const Text& key, bool (*raises_connecting)(LSTATUS),
                 Read&& read) const;
  /// Opens a section for writing and stores a value in it by `write(key, name)`.
  template <class Write>
  bool WriteValue(const Text& section, const Text& key, bool (*raises_connecting)(LSTATUS),
                  Write&& write) const;

  Registry& registry_;
};

}  // namespace veldmark
