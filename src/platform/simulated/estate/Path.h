#pragma once

#include <memory>
#include <vector>

#include "automation/Text.h"
#include "platform/simulated/estate/Estate.h"

namespace veldmark::simulated {

// A path as the platform takes it apart, before anything is looked up.
struct Path {
  DWORD error = 0;  // the code that the form itself is refused with
  bool is_long = false;
  char16_t drive = 0;  // upper case; 0 for a network path
  Text server;
  Text share;
  std::vector<Text> names;          // below the drive's or the share's root
  bool trailing_backslash = false;  // behind the last name, or behind the root
  bool ends_in_dot = false;         // of the last name as it was given
  std::size_t length = 0;           // of the full path

  // Resolves what plain paths leave open against the estate's current folder.
  static Path Parse(TextView text, const Estate& estate);

  bool is_plain_too_long() const { return !is_long && length >= kMaxPath; }
};

// Where a path leads.
struct Place {
  DWORD error = 0;                 // why `node` is null
  std::shared_ptr<FileNode> node;  // null if there is none
  std::shared_ptr<FileNode>
      folder;  // the folder that has, or could have, the last name; null for a root
  Text name;   // the last name; empty for a root
  const Share* share = nullptr;  // what the path leads through
  const Drive* drive = nullptr;  // the drive that it lies on, where the root was found
};

// Looks a parsed path up on the estate's computers. If only the last name is missing, the error is
// 2 and the place still has its folder.
Place Find(const Path& path, Estate& estate);
// The same by its text.
inline Place Find(TextView path, Estate& estate) { return Find(Path::Parse(path, estate), estate); }

// The folder that a network or mapped path begins in, without its names.
Place FindRoot(const Path& path, Estate& estate);

}  // namespace veldmark::simulated
