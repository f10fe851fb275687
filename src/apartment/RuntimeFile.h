#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "automation/Text.h"
#include "platform/operations/Handles.h"

namespace veldmark {

/// A file as the runtime's statements have it: made where it is missing and never truncated, with
/// others free to use it too. It is closed with the object.
///
/// Failures raise the runtime's own numbers: 7 out of memory, 52 bad name, 53 not found, 55 in use,
/// 57 device error, 58 exists, 61 disk full, 62 past the end, 67 too many files, 70 locked or
/// protected, 71 no medium, 75 no access, 76 no such path.
class RuntimeFile {
 public:
  enum class Mode {
    kBinary,  ///< for reading and writing, from its start
    kAppend,  ///< for writing behind its end
  };

  /// Opens a path as it is given, without a long form.
  RuntimeFile(FileSystem& files, const Text& path, Mode mode = Mode::kBinary);

  /// All that a file just opened holds.
  std::vector<std::uint8_t> ReadAll();
  void Write(std::span<const std::uint8_t> bytes);

 private:
  FileSystem& files_;
  FileHandle file_;
};

}  // namespace veldmark
