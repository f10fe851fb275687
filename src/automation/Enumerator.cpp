#include "automation/Enumerator.h"

#include "automation/Boundary.h"
#include "automation/Interface.h"

namespace veldmark {

const Interface& Enumerator::GetInterface() const {
  static const Interface table = [] {
    Interface unnamed;
    unnamed.name = u"Enumerator";
    unnamed.help = u"The position of a For Each.";
    return unnamed;
  }();
  return table;
}

Ref<Enumerator> Boundary<Ref<Enumerator>>::FromVariant(const Variant& value) {
  const Ref<Object> object = ToObject(value);
  auto* enumerator = dynamic_cast<Enumerator*>(object.Get());
  if (!enumerator) Raise(runtime_error::kTypeMismatch);
  return enumerator;
}

Variant Boundary<Ref<Enumerator>>::ToVariant(Ref<Enumerator> value) {
  return Variant(std::move(value));
}

}  // namespace veldmark
