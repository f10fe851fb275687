#include "collections/CollectionEnumerator.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace veldmark {

CollectionEnumerator::CollectionEnumerator(Ref<Collection> list, std::size_t next)
    : list_(std::move(list)), next_(next) {
  list_->enumerators_.push_back(this);
}

CollectionEnumerator::~CollectionEnumerator() {
  std::vector<CollectionEnumerator*>& standing = list_->enumerators_;
  // A loop's enumerator is nearly always the latest.
  const auto own = std::find(standing.rbegin(), standing.rend(), this);
  std::swap(*own, standing.back());
  standing.pop_back();
}

bool CollectionEnumerator::Next(Variant& item) {
  if (next_ >= list_->order_.size()) return false;
  // What the assignment lets go of may change the list, so the step comes first.
  Variant next = list_->ItemAt(next_++);
  item = std::move(next);
  return true;
}

bool CollectionEnumerator::Skip(std::uint32_t count) {
  const std::size_t left = list_->order_.size() - next_;
  next_ += std::min<std::size_t>(count, left);
  return count <= left;
}

void CollectionEnumerator::Reset() { next_ = 0; }

Ref<Enumerator> CollectionEnumerator::Clone() const {
  return Make<CollectionEnumerator>(list_, next_);
}

void CollectionEnumerator::OnInserted(std::size_t position) noexcept {
  if (position < next_) ++next_;
}

void CollectionEnumerator::OnRemoved(std::size_t position) noexcept {
  if (position < next_) --next_;
}

}  // namespace veldmark
