#pragma once

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

  Ref<CSpecimen> Item(const Variant& index);
  Ref<Enumerator> NewEnum();
  Text Join(TextView first, const Variant& second, std::int32_t times);
  void Fail(std::int32_t number, TextView description);
  void Change(Text& text, Variant& value, std::int32_t& number, bool& flag);
  void Leave(Text& text, Variant& value, std::int32_t& number, bool& flag);
  void ChangeAndFail(Text& text);
  void Create(Ref<CSpecimen>& made);
  Variant Echo(const Variant& value) { return value; }
  Ref<Object> EchoObject(Ref<Object> object) { return object; }
  Text NameOf(CSpecimen* other);
  ByteArray Reverse(ByteArray& bytes);
  /// Raises the event `Told` and returns what its listeners left in `Cancel`.
  bool Tell(TextView message);
  Ref<CSpecimen> Children() { return this; }

  static inline int alive = 0;
  Text Name;
  std::int32_t Number = 0;

 private:
  EventSource events_;
};

}  // namespace veldmark
