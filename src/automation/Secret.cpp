#include "automation/Secret.h"

#include <algorithm>

namespace veldmark {
namespace {

void Wipe(char16_t* units, std::size_t count) {
  // Stores that nobody reads are dropped unless they are volatile.
  std::fill_n(static_cast<volatile char16_t*>(units), count, u'\0');
}

}  // namespace

Secret::Secret(TextView text) : units_(text.size() + 1) { text.copy(units_.data(), text.size()); }

Secret Secret::TakenFrom(Text& text) {
  Secret secret(text);
  Wipe(text);
  return secret;
}

void Wipe(Text& text) noexcept {
  Wipe(text.data(), text.size());
  text.clear();
}

Secret::~Secret() { Wipe(units_.data(), units_.size()); }

}  // namespace veldmark
