// Self-relative descriptors with their lists, entries and SIDs into the object model, in the way of
// files and in that of other objects, and the list back into bytes.

#include <vector>

#include "FuzzTarget.h"
#include "apartment/CSupport.h"
#include "platform/operations/ErrorCodes.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/DescriptorReader.h"

namespace {

using namespace veldmark;

void Read(Bytes bytes, const DescriptorReader& reader) {
  const auto descriptor = Make<CSecurityDescriptor>();
  bool is_read = false;
  Try({kErrorInvalidAcl, kErrorInvalidSid, kErrorInvalidSecurityDescriptor}, [&] {
    const BinaryDescriptor parts = reader.ReadHeader(*descriptor, bytes);
    reader.ReadOwner(*descriptor, parts);
    reader.ReadDacl(*descriptor, parts);
    is_read = true;
  });
  if (!is_read) return;
  if (const Ref<CSid> owner = descriptor->GetOwnerSid()) Require(!owner->SidText().empty());
  const Ref<CAces> aces = descriptor->GetDACL()->GetAces();
  for (std::int32_t index = 1; index <= aces->Count(); ++index) {
    Variant position(index);
    const Ref<CAce> ace = aces->Item(position);
    const Ref<CSid> sid = ace->GetSid();
    Require(sid->IsValid() || sid->SidText().empty());
    ace->PermissionsString();
    ace->ExtendedPermissionsString();
    ace->InheritanceScope();
  }
  descriptor->SetParentObject(u"CFile", u"C:\\kept");
  try {
    descriptor->Save();
  } catch (const AutomationError&) {
    // A SID or flag that was read as it stood can be one that isn't written.
  }
}

void ReadSid(Bytes bytes) {
  Try({kErrorInvalidSid}, [&] {
    const auto sid = Engine().GetSidObjectFromSid(
        Variant(ByteArray(std::vector<std::uint8_t>(bytes.begin(), bytes.end()))), Text());
    Require(static_cast<std::size_t>(sid->SidLength()) <= bytes.size());
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world([] {
    simulated::Estate estate;
    estate.local().AddFile(u"C:\\kept");
    return estate;
  }());
  // A block of exactly this size, so that a read beyond it is seen.
  const std::vector<std::uint8_t> bytes(data, data + size);
  Read(bytes, {.object_type = SE_FILE_OBJECT,
               .object_class = u"CFile",
               .resides_on_server = u"SRV",
               .plain_entries_only = true});
  Read(bytes, {.object_type = SE_DS_OBJECT, .object_class = u"CRegKey", .resides_on_server = {}});
  ReadSid(bytes);
  Require(world.simulated.ledger().IsClean());
  world.simulated.journal().Clear();
  return 0;
}
