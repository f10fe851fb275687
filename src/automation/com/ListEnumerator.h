#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "automation/ModuleCount.h"
#include "automation/com/ComObject.h"
#include "automation/com/ComRef.h"

namespace veldmark::com {

/// One connected listener, as an enumeration of connections gives it.
struct Connection {
  ComRef<IUnknown> listener;
  DWORD cookie = 0;
};

inline void HandOutItem(const ComRef<IConnectionPoint>& item, IConnectionPoint*& out) {
  out = ComRef<IConnectionPoint>(item).Detach();
}
inline void HandOutItem(const Connection& item, CONNECTDATA& out) {
  out = {ComRef<IUnknown>(item.listener).Detach(), item.cookie};
}

/// A platform enumerator over a list that was taken when it was made.
template <class Face, class Item>
class ListEnumerator final : public ComObject<Face> {
 public:
  /// Hands out an enumerator over what `list` returns.
  template <class List>
  static HRESULT Make(List list, Face** out) noexcept {
    try {
      *out = new ListEnumerator(std::make_shared<const std::vector<Item>>(list()), 0);
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }

  template <class Out>
  HRESULT Take(ULONG count, Out* items, ULONG* fetched) {
    if (fetched) *fetched = 0;
    if (!items || (!fetched && count != 1)) return E_INVALIDARG;
    ULONG taken = 0;
    for (; taken < count && position_ < items_->size(); ++taken) {
      HandOutItem((*items_)[position_++], items[taken]);
    }
    if (fetched) *fetched = taken;
    return taken == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Next(
      ULONG count,
      std::conditional_t<std::is_same_v<Item, Connection>, CONNECTDATA, IConnectionPoint*>* items,
      ULONG* fetched) override {
    return Take(count, items, fetched);
  }
  STDMETHODIMP Skip(ULONG count) override {
    const std::size_t left = items_->size() - position_;
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    position_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Face** out) override {
    if (!out) return E_POINTER;
    *out = new (std::nothrow) ListEnumerator(items_, position_);
    return *out ? S_OK : E_OUTOFMEMORY;
  }

 private:
  using Items = std::shared_ptr<const std::vector<Item>>;
  ListEnumerator(Items items, std::size_t position)
      : items_(std::move(items)), position_(position) {}

  ModuleHold hold_;  // first, so that it outlasts the items
  Items items_;
  std::size_t position_;
};

}  // namespace veldmark::com
