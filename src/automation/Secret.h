#pragma once

#include <vector>

#include "automation/Boundary.h"
#include "automation/Text.h"
#ifdef _WIN32
#include "automation/Thunk.h"
#endif

namespace veldmark {

/// A text that leaves nothing behind: its memory is wiped when it goes. It can be moved and not
/// copied. As a parameter of a member it is a text to the caller.
class Secret {
 public:
  explicit Secret(TextView text);
  /// Takes the content over and wipes it in `text`.
  static Secret TakenFrom(Text& text);
  Secret(Secret&&) noexcept = default;
  Secret& operator=(Secret&&) = delete;
  ~Secret();

  /// NUL-terminated; not of a secret that was moved from.
  const char16_t* c_str() const { return units_.data(); }

 private:
  // Never a text, which keeps short contents within itself and leaves them behind in a move.
  std::vector<char16_t> units_;
};

/// Overwrites a text's memory and empties it.
void Wipe(Text& text) noexcept;

template <>
struct Boundary<Secret> {
  static constexpr TypeReference Type() { return {.type = BoundaryType::kText, .secret = true}; }
  static Secret FromVariant(const Variant& value) {
    Text text = ToText(value);
    return Secret::TakenFrom(text);
  }
};

#ifdef _WIN32
template <>
struct RawForm<Secret> {
  using Raw = abi::RawText;
  static Secret Read(Raw raw) { return Secret(abi::View(raw)); }
};
#endif

}  // namespace veldmark
