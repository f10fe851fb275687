#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

namespace veldmark {

class EventSource;
class Variant;
struct Interface;

/// Anything with a reference count. Counts are plain integers: an object belongs to one apartment,
/// and only that apartment's thread touches it.
class ReferenceCounted {
 public:
  ReferenceCounted(const ReferenceCounted&) = delete;
  ReferenceCounted& operator=(const ReferenceCounted&) = delete;

  void AddReference() const noexcept { ++references_; }
  void ReleaseReference() const noexcept {
    // One store on each way: where a call unwinds, GCC 12 drops the first of two.
    if (references_ > 1) {
      --references_;
    } else {
      references_ = kDying;  // what the destructor hands out and takes back must not end it twice
      delete this;
    }
  }

 protected:
  ReferenceCounted() = default;
  virtual ~ReferenceCounted() = default;

 private:
  static constexpr std::uint32_t kDying = 1u << 30;
  mutable std::uint32_t references_ = 0;
};

/// A counted reference; empty is the automation model's Nothing.
template <class T>
class Ref {
 public:
  Ref() = default;
  Ref(std::nullptr_t) {}
  Ref(T* object) : object_(object) {
    if (object_) object_->AddReference();
  }
  Ref(const Ref& other) : Ref(other.object_) {}
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <class U>
  requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other) : Ref(other.Get()) {}
  ~Ref() { Drop(); }

  Ref& operator=(Ref other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  T* Get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  bool operator==(const Ref& other) const = default;
  bool operator==(std::nullptr_t) const { return object_ == nullptr; }

 private:
  void Drop() {
    if (object_) object_->ReleaseReference();
  }

  T* object_ = nullptr;
};

template <class T, class... Arguments>
Ref<T> Make(Arguments&&... arguments) {
  return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

/// What a client outside the library holds of an object: the address of this pointer is the
/// object's one COM identity. Null until the object first leaves the library.
struct BinaryFace {
  const void* const* function_table = nullptr;
};

/// An automation object: it can be told by its class, called late-bound, and handed to a client.
class Object : public ReferenceCounted, public BinaryFace {
 public:
  /// The table that describes this object's class.
  virtual const Interface& GetInterface() const = 0;

  /// The sinks of this object's events; null for a class without events.
  virtual EventSource* Events() { return nullptr; }

  /// Reads the value that stands for this object in a conversion; false when there is none.
  virtual bool DefaultValue(Variant&) { return false; }

  /// References held by clients outside the library, kept by the binary face. The library's own
  /// references, of its caches for one, are not among them.
  std::uint32_t external_references = 0;
};

/// Base of an exported class: `class CFolder : public Exported<CFolder>` with a static
/// `Describe()`.
template <class Class>
class Exported : public Object {
 public:
  const Interface& GetInterface() const override { return Class::Describe(); }
};

}  // namespace veldmark
