#include "windows/CSpecimen.h"

namespace veldmark {
namespace {

class ThreeNumbers final : public Enumerator {
 public:
  ThreeNumbers(Ref<CSpecimen> list, std::int32_t position)
      : list_(std::move(list)), position_(position) {}
  bool Next(Variant& item) override {
    list_->Tell({});
    if (position_ == 3 && list_->Number == 4) Raise(9);
    if (position_ == 3) return false;
    item = Variant(++position_);
    return true;
  }
  bool Skip(std::uint32_t count) override {
    const std::uint32_t left = static_cast<std::uint32_t>(3 - position_);
    position_ += static_cast<std::int32_t>(std::min(count, left));
    return count <= left;
  }
  void Reset() override { position_ = 0; }
  Ref<Enumerator> Clone() const override { return Make<ThreeNumbers>(list_, position_); }

 private:
  Ref<CSpecimen> list_;
  std::int32_t position_;
};

const EventInterface& SpecimenEvents() {
  static const EventInterface table =
      DeclareEvents(u"__CSpecimen", u"")
          .Event<const Text&, bool&>(u"Told", u"", {u"Message", u"Cancel"});
  return table;
}

}  // namespace

const Interface& CSpecimen::Describe() {
  static const Interface table =
      Declare<CSpecimen>(u"CSpecimen", u"")
          .Stored<&CSpecimen::Name>(u"Name", u"")
          .Stored<&CSpecimen::Number>(u"Number", u"")
          .Get<&CSpecimen::Item>(u"Item", u"", {u"Index"})
          .Default()
          .Get<&CSpecimen::NewEnum>(u"NewEnum", u"")
          .Enumerates()
          .Method<&CSpecimen::Join>(
              u"Join", u"",
              {u"First", {u"Second", Status{Status::kParameterNotFound}}, {u"Times", 1}})
          .Method<&CSpecimen::Fail>(u"Fail", u"", {u"Number", u"Description"})
          .Method<&CSpecimen::Change>(u"Change", u"", {u"Text", u"Value", u"Number", u"Flag"})
          .Method<&CSpecimen::Leave>(u"Leave", u"", {u"Text", u"Value", u"Number", u"Flag"})
          .Method<&CSpecimen::ChangeAndFail>(u"ChangeAndFail", u"", {u"Text"})
          .Method<&CSpecimen::Create>(u"Create", u"", {u"Made"})
          .Method<&CSpecimen::Echo>(u"Echo", u"", {u"Value"})
          .Method<&CSpecimen::EchoObject>(u"EchoObject", u"", {u"Object"})
          .Method<&CSpecimen::NameOf>(u"NameOf", u"", {u"Other"})
          .Method<&CSpecimen::Reverse>(u"Reverse", u"", {u"Bytes"})
          .Method<&CSpecimen::Tell>(u"Tell", u"", {u"Message"})
          .Get<&CSpecimen::Children>(u"Children", u"")
          .Events(SpecimenEvents());
  return table;
}

Ref<Enumerator> CSpecimen::NewEnum() { return Make<ThreeNumbers>(this, 0); }

}  // namespace veldmark
