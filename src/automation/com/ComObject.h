#pragma once

#include "automation/com/Sdk.h"

namespace veldmark::com {

/// Base of a small interface implementation with a count of its own. It begins with one reference,
/// its maker's.
template <class... Faces>
class ComObject : public Faces... {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;
  virtual ~ComObject() = default;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (iid == IID_IUnknown) {
      *out = First<Faces...>(this);
    } else {
      ((iid == __uuidof(Faces) && (*out = static_cast<Faces*>(this))) || ...);
    }
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 private:
  template <class Face, class...>
  static Face* First(ComObject* self) {
    return self;
  }

  ULONG references_ = 1;
};

}  // namespace veldmark::com
