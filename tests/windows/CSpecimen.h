#pragma once

#include <algorithm>
#include <cstdint>

#include "automation/Declare.h"
#include "automation/Enumerator.h"
#include "automation/Events.h"

namespace veldmark {

/// A class with one member of every shape that crosses the binary boundary.
class CSpecimen : public Exported<CSpecimen> {
 public:
  static const Interface& Describe();

  CSpecimen() { ++alive; }
  ~CSpecimen() override { --alive; }

  EventSource* Events() override { return &events_; }
  bool DefaultValue(Variant&) override { return false; }

  Ref<CSpecimen> Item(const Variant& index) {
    auto item = Make<CSpecimen>();
    item->Name = u"item " + ToText(index);
    return item;
  }
  /// Counts 1, 2, 3, raising `Told` at each step, and fails at the fourth where `Number` is 4.
  Ref<Enumerator> NewEnum();
  Text Join(TextView first, const Variant& second, std::int32_t times) {
    Text joined;
    for (; times > 0; --times) {
      joined += first;
      joined += second.IsMissing() ? Text(u"-") : ToText(second);
    }
    return joined;
  }
  void Fail(std::int32_t number, TextView description) {
    Raise(number, Text(u"Veldmark2.CSpecimen"), Text(description));
  }
  void Change(Text& text, Variant& value, std::int32_t& number, bool& flag) {
    text += u"!";
    value = Variant(Text(u"changed"));
    number += 1;
    flag = !flag;
  }
  void Leave(Text&, Variant&, std::int32_t&, bool&) {}
  void ChangeAndFail(Text& text) {
    text.clear();
    Raise(13, Text(u"Veldmark2.CSpecimen"));
  }
  void Create(Ref<CSpecimen>& made) {
    made = made ? nullptr : Make<CSpecimen>();
    if (made) made->Name = u"made";
  }
  Variant Echo(const Variant& value) { return value; }
  Ref<Object> EchoObject(Ref<Object> object) { return object; }
  Text NameOf(CSpecimen* other) { return other ? other->Name : Text(u"Nothing"); }
  ByteArray Reverse(ByteArray& bytes) {
    ByteArray original = bytes;
    std::ranges::reverse(bytes.elements);
    return original;
  }
  /// Raises the event `Told` and returns what its listeners left in `Cancel`.
  bool Tell(TextView message) {
    bool cancel = false;
    events_.Raise(*this, 1, {Variant(message), Variant::ByReference(cancel)});
    Name += u"told";
    return cancel;
  }
  Ref<CSpecimen> Children() { return this; }

  static inline int alive = 0;
  Text Name;
  std::int32_t Number = 0;

 private:
  EventSource events_;
};

}  // namespace veldmark
