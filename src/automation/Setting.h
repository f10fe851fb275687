#pragma once

#include <utility>

namespace veldmark {

/// A value that remembers whether a caller has put it, so that it is to be written.
template <class Value>
class Setting {
 public:
  const Value& Get() const { return value_; }
  bool is_changed() const { return changed_; }
  void Put(Value value) {
    Load(std::move(value));
    changed_ = true;
  }
  /// The same value again is no change.
  void PutIfDifferent(const Value& value) {
    if (!(value == value_)) Put(value);
  }
  /// Stores what was read, which is no change.
  void Load(Value value) { value_ = std::move(value); }
  /// Takes the mark back.
  void ClearChanged() { changed_ = false; }

 private:
  Value value_{};
  bool changed_ = false;
};

}  // namespace veldmark
