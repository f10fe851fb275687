#include "apartment/CSupport.h"

#include <algorithm>
#include <vector>

#include "apartment/Conversions.h"
#include "apartment/Errors.h"

namespace veldmark {
namespace {

constexpr DWORD kNameLength = 256;
constexpr std::size_t kNameBytes = 513;

/// Asks the platform for a name through one of its operations that fill a buffer of `kNameLength`
/// units.
template <class Ask>
Text NameOrUnknown(Ask&& ask) {
  Text name = u"(unknown)";
  Swallow([&] {
    std::vector<char16_t> buffer((kNameBytes + 1) / sizeof(char16_t));
    DWORD length = kNameLength;
    if (ask(buffer.data(), &length)) name = TrimAtNul(Text(buffer.begin(), buffer.end()));
  });
  return name;
}

}  // namespace

void CSupport::Subscribe(ObjectFoundListener& listener) {
  if (std::ranges::find(listeners_, &listener) == listeners_.end()) listeners_.push_back(&listener);
}

void CSupport::Unsubscribe(ObjectFoundListener& listener) noexcept {
  std::erase(listeners_, &listener);
}

void CSupport::RaiseObjectFound(Object& object, bool& cancel) {
  const Ref<CSupport> keep_alive(this);
  const auto turn = listeners_;
  for (ObjectFoundListener* listener : turn) {
    // One that left in the middle of the event is gone, perhaps with its object.
    if (std::ranges::find(listeners_, listener) == listeners_.end()) continue;
    const Ref<Object> listening(&listener->Listener());
    listener->OnObjectFound(object, cancel);
  }
}

Text CSupport::UserName() {
  System& system = Apartment::Current().platform.system;
  return NameOrUnknown(
      [&](char16_t* buffer, DWORD* length) { return system.GetUserNameW(buffer, length); });
}

Text CSupport::ComputerName() {
  System& system = Apartment::Current().platform.system;
  return NameOrUnknown(
      [&](char16_t* buffer, DWORD* length) { return system.GetComputerNameW(buffer, length); });
}

}  // namespace veldmark
