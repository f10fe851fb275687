#pragma once

#include <cstdint>
#include <utility>

#include "apartment/Conversions.h"
#include "apartment/Counted.h"
#include "apartment/Errors.h"
#include "automation/Conversion.h"
#include "automation/Object.h"
#include "collections/Collection.h"

namespace veldmark {

/// What all exported collection classes share: a list of objects of one class, held strongly. A
/// class `CFolders` adds its table and, where it has keys, the key of an element as
/// `static CollectionKey KeyOf(CFolder&)`.
template <class Class, class Element>
class CollectionClass : public Exported<Class> {
 public:
  /// Appends an element under the key that it has at this moment and returns it. Never raises: an
  /// element whose key is present already is dropped, and so is Nothing; `Err` tells.
  Ref<Element> Add(Element* element) {
    Store(element);
    return element;
  }
  /// The element at a position (a number) or under a key (a text).
  Ref<Element> Item(Variant& vntIndexKey) { return ElementIn(items_->Item(vntIndexKey)); }
  void Remove(Variant& vntIndexKey) { items_->Remove(vntIndexKey); }
  std::int32_t Count() const { return items_->Count(); }
  Ref<Enumerator> NewEnum() { return items_->NewEnum(); }

 protected:
  CollectionClass() : items_(Make<Collection>()) {}

  /// One add in swallowing mode; false if the element was not stored.
  bool Store(Element* element) {
    return Swallow([&] {
      if (!element) Raise(runtime_error::kObjectNotSet);
      if constexpr (requires { Class::KeyOf(*element); }) {
        items_->Add(Variant(Ref<Object>(element)), Class::KeyOf(*element));
      } else {
        items_->Add(Variant(Ref<Object>(element)));
      }
    });
  }
  /// The same under a key of the caller's choice, or none.
  bool StoreAs(Element& element, CollectionKey key) {
    return Swallow([&] { items_->Add(Variant(Ref<Object>(&element)), std::move(key)); });
  }
  static Ref<Element> ElementIn(const Variant& item) {
    return static_cast<Element*>(item.If<Ref<Object>>()->Get());
  }

  Ref<Collection> items_;
};

/// A collection class whose lookup tells positions from names: names are looked up as they are
/// written, case and all.
template <class Class, class Element>
class KeyedCollectionClass : public CollectionClass<Class, Element> {
 public:
  /// The element at a position, or under a name. What reads as nothing but digits is never a name:
  /// as a number it is a position, as a text it finds nothing. Raises 9 for a position out of
  /// range, 5 for an unknown name.
  Ref<Element> Item(Variant& vntIndexKey) {
    return ReRaising([&] {
      const Text name = ToText(vntIndexKey);
      return this->ElementIn(IsIndexKey(name) ? this->items_->Item(vntIndexKey)
                                              : this->items_->Item(CollectionKey::Encoded(name)));
    });
  }
  /// Takes an element out by the rules of `Item`.
  void Remove(Variant& vntIndexKey) {
    ReRaising([&] {
      const Text name = ToText(vntIndexKey);
      if (IsIndexKey(name)) {
        this->items_->Remove(vntIndexKey);
      } else {
        this->items_->Remove(CollectionKey::Encoded(name));
      }
    });
  }
  /// The element of a name, whatever it reads like; raises 5 for an unknown one.
  Ref<Element> ItemByKey(TextView Key) {
    return ReRaising(
        [&] { return this->ElementIn(this->items_->Item(CollectionKey::Encoded(Key))); });
  }
  /// The element at a position, counted from 1; raises 9 when it is out of range.
  Ref<Element> ItemByIndex(std::int32_t Index) {
    return ReRaising([&] { return this->ElementIn(this->items_->Item(Variant(Index))); });
  }
};

}  // namespace veldmark
