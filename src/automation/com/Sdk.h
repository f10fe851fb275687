#pragma once

// The platform's automation headers, for the sources of the binary face only.
#include <windows.h>

#include <oleauto.h>

#include <ocidl.h>
#include <olectl.h>

#include "automation/Abi.h"
#include "automation/Identity.h"

namespace veldmark::com {

static_assert(sizeof(wchar_t) == sizeof(char16_t));
static_assert(sizeof(VARIANT) == sizeof(abi::RawVariant));
static_assert(sizeof(IID) == sizeof(Identity));

inline VARIANT& AsVariant(abi::RawVariant& raw) { return reinterpret_cast<VARIANT&>(raw); }
inline const VARIANT& AsVariant(const abi::RawVariant& raw) {
  return reinterpret_cast<const VARIANT&>(raw);
}
inline abi::RawVariant& AsRaw(VARIANT& variant) {
  return reinterpret_cast<abi::RawVariant&>(variant);
}
inline const abi::RawVariant& AsRaw(const VARIANT& variant) {
  return reinterpret_cast<const abi::RawVariant&>(variant);
}
inline const IID& AsIid(const Identity& identity) { return reinterpret_cast<const IID&>(identity); }
inline BSTR AsBstr(abi::RawText text) { return reinterpret_cast<BSTR>(text); }

/// A variant that frees what it holds.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&held_); }
  explicit OwnedVariant(const Variant& value) : raw_(abi::HandOutVariant(value)) {}
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(&held_); }

  VARIANT& Get() { return held_; }
  VARIANT Detach() {
    const VARIANT detached = held_;
    VariantInit(&held_);
    return detached;
  }

 private:
  union {
    VARIANT held_;
    abi::RawVariant raw_;
  };
};

}  // namespace veldmark::com
