#include "automation/Variant.h"

#include "automation/Conversion.h"

namespace veldmark {

Variant::Variant() noexcept = default;
Variant::Variant(const Variant& other) = default;
Variant::Variant(Variant&& other) noexcept = default;
Variant& Variant::operator=(const Variant& other) = default;
Variant& Variant::operator=(Variant&& other) noexcept = default;
Variant::~Variant() = default;
bool Variant::operator==(const Variant& other) const { return storage_ == other.storage_; }

Variant Variant::Dereferenced() const {
  const Reference* reference = If<Reference>();
  if (!reference) return *this;
  return std::visit([](auto* variable) { return Variant(*variable).Dereferenced(); }, *reference);
}

void Variant::Assign(const Variant& value) {
  Reference* reference = If<Reference>();
  if (!reference) {
    *this = value.Dereferenced();
    return;
  }
  std::visit(
      [&value]<class T>(T* variable) {
        if constexpr (std::is_same_v<T, Variant>) {
          variable->Assign(value);
        } else {
          *variable = *ConvertTo(value, kTypeOf<T>).template If<T>();
        }
      },
      *reference);
}

}  // namespace veldmark
