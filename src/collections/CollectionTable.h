#pragma once

#include "automation/Declare.h"
#include "collections/CollectionClass.h"

namespace veldmark {

/// Builds the table of a collection class in its slot order, most often that of a group:
///
///     CollectionTable<CFolders>(u"CFolders", u"Folders by name.").Keyed(u"oFolder")
template <class Class>
class CollectionTable {
 public:
  CollectionTable(const char16_t* name, const char16_t* help) : table_(name, help) {}

  /// Add, Item, Count, Remove, NewEnum. `element` is the argument of Add.
  CollectionTable&& Plain(const char16_t* element, const char16_t* add_help = kAddHelp) && {
    return std::move(*this).Add(element, add_help).Item().Count().Remove().NewEnum();
  }
  /// The same, then ItemByKey and ItemByIndex.
  CollectionTable&& Keyed(const char16_t* element, const char16_t* add_help = kAddHelp) && {
    return std::move(*this).Plain(element, add_help).ItemByKey().ItemByIndex();
  }

  CollectionTable&& Add(const char16_t* element, const char16_t* help = kAddHelp) && {
    return Then(std::move(table_).template Method<&Class::Add>(u"Add", help, {element}));
  }
  CollectionTable&& Item(TextView remark = kItemRemark) && {
    return Then(std::move(table_)
                    .template Get<&Class::Item>(u"Item", kItemHelp, {u"vntIndexKey"})
                    .Default()
                    .Remark(remark));
  }
  CollectionTable&& Count() && {
    return Then(std::move(table_).template Get<&Class::Count>(u"Count", u"How many there are."));
  }
  CollectionTable&& Remove() && {
    return Then(std::move(table_).template Method<&Class::Remove>(
        u"Remove", u"Takes one out, named as for Item.", {u"vntIndexKey"}));
  }
  CollectionTable&& NewEnum() && {
    return Then(std::move(table_)
                    .template Get<&Class::NewEnum>(u"NewEnum", u"What For Each walks.")
                    .Enumerates());
  }
  CollectionTable&& ItemByKey() && {
    return Then(std::move(table_).template Get<&Class::ItemByKey>(
        u"ItemByKey", u"The one with this name, of whatever characters; 5 for none.", {u"Key"}));
  }
  CollectionTable&& ItemByIndex() && {
    return Then(std::move(table_).template Get<&Class::ItemByIndex>(
        u"ItemByIndex", u"The one at this position, counted from 1.", {u"Index"}));
  }
  /// A member of the class's own.
  template <auto kMethod>
  CollectionTable&& Method(const char16_t* name, const char16_t* help, ParameterNames names) && {
    return Then(std::move(table_).template Method<kMethod>(name, help, names));
  }
  CollectionTable&& Remark(TextView remark) && { return Then(std::move(table_).Remark(remark)); }
  operator Interface() && { return std::move(table_); }

 private:
  static constexpr bool kHasKeys = requires { &Class::KeyOf; };
  static constexpr const char16_t* kAddHelp =
      kHasKeys ? u"Appends one and returns it. One whose name is in the list already is dropped."
               : u"Appends one and returns it.";
  static constexpr const char16_t* kItemHelp =
      kHasKeys ? u"The one at a position, given as a number, or with a name, given as a text."
               : u"The one at a position, counted from 1.";
  static constexpr TextView kItemRemark = requires { &Class::ItemByKey; }
  ? u"Names count with their case. A text of nothing but digits finds nothing, whatever the "
    u"names are; ItemByKey finds it. Raises 5 for an unknown name and 9 for a position out "
    u"of range."
  : kHasKeys ? u"A text is a name, one of digits too. Raises 5 for an unknown name and 9 for a "
               u"position out of range."
             : u"Raises 9 for a position out of range and 5 for any text, one of digits too.";

  CollectionTable&& Then(Declare<Class>&&) { return std::move(*this); }

  Declare<Class> table_;
};

}  // namespace veldmark
