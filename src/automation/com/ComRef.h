#pragma once

#include <utility>

#include "automation/com/Sdk.h"

namespace veldmark::com {

/// A counted reference to an interface.
template <class Face>
class ComRef {
 public:
  ComRef() = default;
  explicit ComRef(Face* face) : face_(face) {
    if (face_) face_->AddRef();
  }
  ComRef(const ComRef& other) : ComRef(other.face_) {}
  ComRef(ComRef&& other) noexcept : face_(std::exchange(other.face_, nullptr)) {}
  ComRef& operator=(ComRef other) noexcept {
    std::swap(face_, other.face_);
    return *this;
  }
  ~ComRef() {
    if (face_) face_->Release();
  }

  Face* Get() const { return face_; }
  Face* operator->() const { return face_; }
  explicit operator bool() const { return face_ != nullptr; }
  /// Where a call puts a reference that is then ours.
  Face** Receive() { return &(*this = ComRef()).face_; }
  Face* Detach() { return std::exchange(face_, nullptr); }

 private:
  Face* face_ = nullptr;
};

}  // namespace veldmark::com
