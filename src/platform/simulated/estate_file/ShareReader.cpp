#include "platform/simulated/estate_file/ShareReader.h"

#include <array>

#include "platform/simulated/estate_file/Values.h"

namespace veldmark::simulated {

void ReadShares(const Node& node, Computer& computer, const Estate& estate) {
  static constexpr std::array<DWORD, 4> kTypes = {kShareTypeDisk, kShareTypePrintQueue,
                                                  kShareTypeDevice, kShareTypeIpc};
  for (const Node& share : node.Elements()) {
    share.OnlyFields({"name", "path", "denied", "type", "security", "user", "password",
                      "providerFails", "detailsDenied", "remark", "permissions", "maximumUses",
                      "currentUses"});
    const Text name = share.Required("name").String();
    const auto type_field = share.Field("type");
    const DWORD type =
        kTypes[type_field ? type_field->OneOf({"disk", "printQueue", "device", "ipc"}) : 0];
    const auto path = type == kShareTypeDisk ? share.Required("path") : share.Field("path");
    const auto denied = share.Field("denied");
    const Text path_text = path ? path->String() : Text();
    Share& added = (path ? *path : share).Try([&]() -> Share& {
      return computer.AddShare(name, path_text, denied && denied->Boolean(), type);
    });
    if (const auto user = share.Field("user")) added.user = user->String();
    if (const auto password = share.Field("password")) added.password = password->String();
    if (const auto fails = share.Field("providerFails")) added.provider_fails = fails->Boolean();
    if (const auto denied_details = share.Field("detailsDenied")) {
      added.details_denied = denied_details->Boolean();
    }
    if (const auto remark = share.Field("remark")) added.remark = remark->String();
    if (const auto bits = share.Field("permissions")) added.permissions = bits->Unsigned32();
    if (const auto uses = share.Field("maximumUses")) added.maximum_uses = uses->Unsigned32();
    if (const auto uses = share.Field("currentUses")) added.current_uses = uses->Unsigned32();
    const auto security = share.Field("security");
    if (security && !security->IsNull()) {
      added.security = SecurityBlock::Make(ReadSecurity(*security, estate));
    }
  }
}

}  // namespace veldmark::simulated
