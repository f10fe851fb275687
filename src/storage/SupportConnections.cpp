#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Secret.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark {
namespace {

NetworkProvider& Provider() { return Apartment::Current().platform.network_provider; }

DWORD Flags(bool make_persistent) { return make_persistent ? kConnectUpdateProfile : 0; }

void Check(DWORD status) {
  if (status == kErrorSuccess) return;
  const auto number = static_cast<std::int32_t>(status);
  if (status == kErrorExtendedError) {
    Raise(number, {}, u"A error specific to the network provider occurred");
  }
  RaisePlatformError(number);
}

}  // namespace

void CSupport::AddNetworkConnection(Text local_name, Text remote_name, const Text& user_name,
                                    const Secret& password, DWORD resource_type, HWND owner,
                                    bool make_persistent) {
  ReRaising([&] {
    NETRESOURCEW resource{};
    resource.dwType = resource_type;
    if (!local_name.empty()) resource.lpLocalName = local_name.data();
    if (!remote_name.empty()) resource.lpRemoteName = remote_name.data();
    Check(Provider().WNetAddConnection3W(owner, &resource, password.c_str(), user_name.c_str(),
                                         Flags(make_persistent)));
  });
}

void CSupport::CancelNetworkConnection(const Text& remote_name, bool make_persistent, bool force) {
  ReRaising([&] {
    Check(Provider().WNetCancelConnection2W(remote_name.c_str(), Flags(make_persistent), force));
  });
}

}  // namespace veldmark
