#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace veldmark::simulated {

// The calls made, in order, for what fixes a pattern of calls. Kept until it is told to stop, which
// whatever lives longer than a test does: it grows with every call.
class Journal {
 public:
  struct Entry {
    std::string operation;
    std::string argument;  // the essential one, as UTF-8

    bool operator==(const Entry&) const = default;
  };

  void StopKeeping();
  bool is_kept() const { return is_kept_; }

  void Record(std::string_view operation, std::string argument);

  const std::vector<Entry>& entries() const { return entries_; }
  std::size_t Count(std::string_view operation) const;
  void Clear() { entries_.clear(); }

 private:
  std::vector<Entry> entries_;
  bool is_kept_ = true;
};

}  // namespace veldmark::simulated
