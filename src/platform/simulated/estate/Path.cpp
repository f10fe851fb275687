#include "platform/simulated/estate/Path.h"

#include <algorithm>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/FileNames.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kMaxLongPath = 32767;

std::vector<Text> Split(TextView text) {
  std::vector<Text> pieces;
  std::size_t start = 0;
  for (std::size_t end = text.find(u'\\'); end != TextView::npos; end = text.find(u'\\', start)) {
    pieces.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  pieces.emplace_back(text.substr(start));
  return pieces;
}

bool HasDrive(TextView text) {
  return text.size() >= 2 && text[1] == u':' && UpperCase(text[0]) >= u'A' &&
         UpperCase(text[0]) <= u'Z';
}

Path Refused(DWORD error) {
  Path path;
  path.error = error;
  return path;
}

Path ParseLong(TextView rest) {
  Path path;
  path.is_long = true;
  path.length = rest.size() + 4;
  if (path.length > kMaxLongPath) return Refused(kErrorFilenameExcedRange);
  std::vector<Text> pieces = Split(rest);
  std::size_t root = 1;
  if (pieces.size() >= 2 && EqualNoCase(pieces[0], u"UNC")) {
    path.server = pieces[1];
    path.share = pieces.size() > 2 ? pieces[2] : Text();
    root = std::min<std::size_t>(3, pieces.size());
  } else if (pieces[0].size() == 2 && HasDrive(pieces[0]) && pieces.size() > 1) {
    path.drive = UpperCase(pieces[0][0]);
  } else {
    return Refused(kErrorInvalidName);
  }
  path.names.assign(pieces.begin() + static_cast<std::ptrdiff_t>(root), pieces.end());
  if (!path.names.empty() && path.names.back().empty()) {
    path.trailing_backslash = true;
    path.names.pop_back();
  }
  return path;
}

// Adds plain names, resolving "." and "..".
void Append(Path& path, const std::vector<Text>& pieces) {
  for (std::size_t index = 0; index < pieces.size(); ++index) {
    Text name = pieces[index];
    const bool is_last = index + 1 == pieces.size();
    if (is_last) path.trailing_backslash = name.empty();
    if (name.empty() || name == u".") continue;
    if (name == u"..") {
      if (!path.names.empty()) path.names.pop_back();
      continue;
    }
    if (is_last) {
      path.ends_in_dot = name.ends_with(u'.');
      name.resize(name.find_last_not_of(u". ") + 1);
      if (name.empty()) continue;
    } else if (name.ends_with(u'.')) {
      name.pop_back();
    }
    path.names.push_back(std::move(name));
  }
}

Path ParsePlain(Text text, const Estate& estate) {
  std::replace(text.begin(), text.end(), u'/', u'\\');
  if (text.starts_with(u"\\\\.\\")) text.erase(0, 4);
  Path path;
  if (text.starts_with(u"\\\\")) {
    std::vector<Text> pieces = Split(TextView(text).substr(2));
    path.server = pieces[0];
    path.share = pieces.size() > 1 ? pieces[1] : Text();
    if (path.server.empty()) return Refused(kErrorInvalidName);
    pieces.erase(pieces.begin(), pieces.begin() + static_cast<std::ptrdiff_t>(
                                                      std::min<std::size_t>(2, pieces.size())));
    Append(path, pieces);
    path.length = 2 + path.server.size() + 1 + path.share.size();
  } else {
    const bool has_drive = HasDrive(text);
    const TextView rest = has_drive ? TextView(text).substr(2) : TextView(text);
    const bool is_absolute = rest.starts_with(u'\\');
    const Path current = has_drive && is_absolute
                             ? Path()
                             : (EqualNoCase(estate.current_folder(), text)
                                    ? ParsePlain(u"C:\\", estate)
                                    : ParsePlain(estate.current_folder(), estate));
    const bool same_drive = !has_drive || UpperCase(text[0]) == current.drive;
    if (has_drive) {
      path.drive = UpperCase(text[0]);
    } else {
      path.drive = current.drive;
      path.server = current.server;
      path.share = current.share;
    }
    if (!is_absolute && same_drive) path.names = current.names;
    Append(path, Split(is_absolute ? rest.substr(1) : rest));
    path.length = path.drive != 0 ? 2 : 3 + path.server.size() + path.share.size();
    if (!is_absolute && rest.empty()) path.trailing_backslash = false;
  }
  for (const Text& name : path.names) path.length += 1 + name.size();
  if (path.names.empty() || path.trailing_backslash) ++path.length;
  return path;
}

Place Nowhere(DWORD error) {
  Place place;
  place.error = error;
  return place;
}

}  // namespace

Path Path::Parse(TextView text, const Estate& estate) {
  if (text.empty()) return Refused(kErrorPathNotFound);
  if (text.starts_with(u"\\\\?\\")) return ParseLong(text.substr(4));
  return ParsePlain(Text(text), estate);
}

Place FindRoot(const Path& path, Estate& estate) {
  Place place;
  const auto refuse = [&place](DWORD error) {
    place.error = error;
    return place;
  };
  Text server = path.server;
  Text share_name = path.share;
  Text below;
  if (path.drive != 0) {
    const auto drive = estate.local().drives().find(path.drive);
    if (drive != estate.local().drives().end()) {
      place.drive = &drive->second;
      if (place.drive->volume.ready) {
        place.node = place.drive->root;
      } else {
        place.error = kErrorNotReady;
      }
      return place;
    }
    const auto mapped = estate.mapped_drives().find(path.drive);
    if (mapped == estate.mapped_drives().end()) return refuse(kErrorPathNotFound);
    const auto target = NetworkName::Parse(mapped->second);
    server = target->server;
    share_name = target->share;
    below = target->below;
  }
  const Computer* const computer = estate.ReachComputer(server);
  if (computer == nullptr) return refuse(kErrorBadNetPath);
  if (share_name.empty()) return refuse(kErrorBadPathname);
  const Share* const share = computer->FindShare(share_name);
  if (share == nullptr) return refuse(kErrorBadNetName);
  place.drive = share->drive;
  if (share->denied || (share->asks_who() && !estate.IsConnected(*computer, *share))) {
    return refuse(kErrorAccessDenied);
  }
  if (share->folder == nullptr) return refuse(kErrorBadDevType);
  if (!place.drive->volume.ready) return refuse(kErrorNotReady);
  place.share = share;
  place.node = share->folder;
  for (const Text& name : below.empty() ? std::vector<Text>() : Split(below)) {
    if (place.node != nullptr) place.node = place.node->Child(name);
  }
  if (place.node == nullptr) place.error = kErrorPathNotFound;
  return place;
}

Place Find(const Path& path, Estate& estate) {
  if (path.error != 0) return Nowhere(path.error);
  if (path.is_plain_too_long()) return Nowhere(kErrorPathNotFound);
  for (const Text& name : path.names) {
    if (!IsValidName(name)) return Nowhere(kErrorInvalidName);
  }
  Place place = FindRoot(path, estate);
  for (const Text& name : path.names) {
    if (place.node == nullptr) {
      // An earlier name is missing, and with it the folder of all that follow.
      if (place.folder != nullptr) place.error = kErrorPathNotFound;
      place.folder = nullptr;
      place.name.clear();
      return place;
    }
    if (!place.node->is_folder()) return Nowhere(kErrorPathNotFound);
    place.folder = place.node;
    place.name = name;
    place.node = place.folder->Child(name);
    if (place.node == nullptr) place.error = kErrorFileNotFound;
  }
  if (place.node != nullptr && path.trailing_backslash && !place.node->is_folder()) {
    return Nowhere(kErrorInvalidName);
  }
  return place;
}

}  // namespace veldmark::simulated
