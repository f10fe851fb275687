#include "platform/simulated/families/NetworkCall.h"

#include <utility>

namespace veldmark::simulated {

NetworkCall::NetworkCall(Session& session, std::string_view operation, Text noted,
                         LPCWSTR server_name, bool is_sound, bool has_level)
    : call_(session.Begin(operation, noted)),
      session_(session),
      operation_(operation),
      noted_(std::move(noted)),
      error_(call_.fault()) {
  if (error_ != 0) return;
  computer_ = session_.estate.ReachServer(server_name);
  if (!is_sound) {
    error_ = kErrorInvalidParameter;
  } else if (!has_level) {
    error_ = kErrorInvalidLevel;
  } else if (computer_ == nullptr) {
    error_ = kErrorBadNetPath;
  }
}

BYTE* NetworkCall::Allocate(std::size_t size) const {
  return static_cast<BYTE*>(session_.AllocateNetwork(size, operation_, ToUtf8(noted_)));
}

}  // namespace veldmark::simulated
