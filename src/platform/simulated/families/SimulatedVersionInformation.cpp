#include "platform/simulated/families/SimulatedVersionInformation.h"

#include <algorithm>
#include <cstring>

#include "platform/operations/ErrorCodes.h"
#include "platform/simulated/estate/Path.h"

namespace veldmark::simulated {
DWORD SimulatedVersionInformation::GetFileVersionInfoSizeW(LPCWSTR file_name, DWORD* handle) {
  const Call call = session_.Begin("GetFileVersionInfoSizeW", ViewOf(file_name));
  DWORD error = call.fault();
  if (handle != nullptr) *handle = 0;
  std::shared_ptr<FileNode> file;
  if (error == 0) error = Open(file_name, file);
  if (error == 0) return static_cast<DWORD>(file->version()->size());
  return Fail(error, DWORD{0});
}

BOOL SimulatedVersionInformation::GetFileVersionInfoW(LPCWSTR file_name, DWORD, DWORD length,
                                                      void* data) {
  const Call call = session_.Begin("GetFileVersionInfoW", ViewOf(file_name));
  DWORD error = call.fault();
  std::shared_ptr<FileNode> file;
  if (error == 0) error = Open(file_name, file);
  if (error == 0 && data == nullptr) error = kErrorInvalidParameter;
  if (error != 0) return Fail(error);
  std::memcpy(data, file->version()->data(),
              std::min<std::size_t>(length, file->version()->size()));
  return 1;
}

DWORD SimulatedVersionInformation::Open(LPCWSTR file_name, std::shared_ptr<FileNode>& file) {
  const Place place = Find(ViewOf(file_name), session_.estate);
  if (place.node == nullptr) return place.error;
  if (place.node->is_folder() || place.node->is_delete_pending() || place.node->read_denied()) {
    return kErrorAccessDenied;
  }
  if (!place.node->CanOpen({.reads = true, .lets_read = true})) return kErrorSharingViolation;
  file = place.node;
  if (file->version() != nullptr) return 0;
  return file->messages() != nullptr ? kErrorResourceTypeNotFound : kErrorResourceDataNotFound;
}

}  // namespace veldmark::simulated
