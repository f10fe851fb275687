// Texts into descriptors, by the library's reading and by the platform's: a list that can be walked
// or an error that is settled.

#include "FuzzTarget.h"
#include "apartment/CSupport.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/ObjectType.h"

namespace {

using namespace veldmark;

void Walk(CSecurityDescriptor& descriptor) {
  if (const Ref<CSid> owner = descriptor.GetOwnerSid()) owner->SidText();
  const Ref<CAcl> list = descriptor.GetDACL();
  if (!list) return;
  const Ref<CAces> aces = list->GetAces();
  for (std::int32_t index = 1; index <= aces->Count(); ++index) {
    Variant position(index);
    const Ref<CAce> ace = aces->Item(position);
    if (const Ref<CSid> sid = ace->GetSid()) Require(sid->IsValid() || sid->SidText().empty());
    ace->PermissionsString();
    ace->InheritanceScope();
  }
}

void Read(const Text& text) {
  // The last two are raised where the server or controller that an alias is asked of isn't found.
  Try({5, 6, 9, 13, 87, 91, 53, 2453},
      [&] { Walk(*Engine().ConvertStringSDToSD(text, Text(), Text())); });
  try {
    Walk(*Engine().GetNamedSD(Text(), SE_DS_OBJECT, nullptr, Text(), Text(), Text(), text));
  } catch (const AutomationError& error) {
    Require(error.number != 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  Read(Text(data, data + size));
  Require(world.simulated.ledger().IsClean());
  world.simulated.journal().Clear();
  return 0;
}
