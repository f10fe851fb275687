#pragma once

#include <cstddef>
#include <cstdint>

#include "automation/Enumerator.h"
#include "collections/Collection.h"

namespace veldmark {

/// The position of a For Each in a `Collection`, which it keeps alive and which tells it of every
/// insertion and removal.
class CollectionEnumerator : public Enumerator {
 public:
  explicit CollectionEnumerator(Ref<Collection> list, std::size_t next = 0);
  ~CollectionEnumerator() override;

  bool Next(Variant& item) override;
  bool Skip(std::uint32_t count) override;
  void Reset() override;
  Ref<Enumerator> Clone() const override;

  void OnInserted(std::size_t position) noexcept;
  void OnRemoved(std::size_t position) noexcept;

 private:
  const Ref<Collection> list_;
  std::size_t next_;
};

}  // namespace veldmark
