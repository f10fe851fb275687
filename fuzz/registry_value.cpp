// Any bytes as the data of a registry value of any type: reading it ends within its bytes, in both
// ways, and what is told keeps to the type. The same bytes as a path to be expanded.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "FuzzTarget.h"
#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "collections/Collection.h"
#include "registry/ValueData.h"

namespace {

using namespace veldmark;

simulated::Estate Described() {
  simulated::Estate estate;
  estate.AddComputer(u"SRV")
      .local_machine()
      .Key(u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion")
      .String(u"SystemRoot", u"%SystemRoot%\\%");
  return estate;
}

// The list's strings neither end in a NUL nor have two in a row.
void RequireList(const Variant& value) {
  const Text* const strings = value.If<Text>();
  Require(strings != nullptr && strings->find(TextView(u"\0\0", 2)) == Text::npos);
}

void Check(int type_number, DataBytes data) {
  const auto type = static_cast<RegValueTypes>(type_number);
  const Variant listed = ListedValueOf(type, data);
  for (const TextView machine : {u"", u"SRV"}) {
    const Variant asked = ValueOf(type, data, Text(machine));
    Require(asked.Type() == listed.Type());
    if (!IsTextType(type)) Require(asked == listed);
  }
  Require(IsReadType(type) == (listed.Type() != VariantType::kEmpty));
  if (const auto* bytes = listed.If<ByteArray>()) Require(bytes->elements.size() == data.size());
  if (type == REG_MULTI_SZ) RequireList(listed);
  if (IsTextType(type) && type != REG_EXPAND_SZ) {
    Require(listed.If<Text>()->size() <= (data.size() + 1) / 2);
  }
  if (type == REG_SZ) Require(listed.If<Text>()->find(u'\0') == Text::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world(Described());
  world.simulated.journal().Clear();
  Apartment::Current().machine_paths = Make<Collection>();
  // A copy of its own size, so that a read behind it is noticed.
  const std::vector<std::uint8_t> bytes(data, data + size);
  for (int type = -1; type <= 12; ++type) Check(type, bytes);
  const Text path = ByteArrayToString(bytes);
  for (const TextView machine : {u"", u"SRV", u"\\\\NOBODY"}) {
    const Text expanded = Engine().ExpandPathForMachine(path, Text(machine));
    if (path.find(u'%') != Text::npos) continue;
    Require(expanded == (machine.empty() ? TrimAtNul(path) : path));
  }
  return 0;
}
