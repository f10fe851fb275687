#include <gtest/gtest.h>

#include "apartment/Apartment.h"
#include "automation/Secret.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "root/SystemRoot.h"
#include "support/ErrorOf.h"
#include "support/MixedPlatform.h"

namespace veldmark {
namespace {

/// What a provider was asked, as text; "null" for a null pointer.
class RecordingProvider final : public NetworkProvider {
 public:
  DWORD WNetGetUniversalNameW(LPCWSTR, DWORD, void*, DWORD*) override { return 2250; }
  DWORD WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource, LPCWSTR password,
                            LPCWSTR user_name, DWORD flags) override {
    const auto shown = [](LPCWSTR text) { return text ? "'" + ToUtf8(text) + "'" : "null"; };
    asked = std::to_string(reinterpret_cast<std::intptr_t>(owner)) + " " +
            std::to_string(resource->dwScope + resource->dwDisplayType + resource->dwUsage) + " " +
            std::to_string(resource->dwType) + " " + shown(resource->lpLocalName) + " " +
            shown(resource->lpRemoteName) + " " + shown(resource->lpComment) + " " +
            shown(resource->lpProvider) + " " + shown(password) + " " + shown(user_name) + " " +
            std::to_string(flags);
    return status;
  }
  DWORD WNetCancelConnection2W(LPCWSTR name, DWORD flags, BOOL force) override {
    asked = ToUtf8(name) + " " + std::to_string(flags) + " " + std::to_string(force);
    return status;
  }

  std::string asked;
  DWORD status = 0;
};

TEST(Connections, GiveTheProviderWhatTheCallerGave) {
  simulated::SimulatedPlatform simulated;
  RecordingProvider provider;
  Platform mixed = WithProvider(simulated.platform(), provider);
  Apartment::Start(mixed);
  SystemRoot root;
  const auto add = [&](const Text& local, const Text& remote, const Text& user,
                       const Text& password, std::int32_t type, std::int32_t owner, bool keep) {
    return root.AddNetworkConnection(local, remote, user, Secret(password),
                                     static_cast<ResourceTypeEnum>(type), owner, keep);
  };
  EXPECT_TRUE(add(u"Z:", u"\\\\srv\\share", u"anna", u"open", 1, 77, true));
  EXPECT_EQ(provider.asked, "77 0 1 'Z:' '\\\\srv\\share' null null 'open' 'anna' 1");
  EXPECT_TRUE(add(u"", u"", u"", u"", -1, -1, false));
  EXPECT_EQ(provider.asked, "-1 0 4294967295 null null null null '' '' 0");
  EXPECT_TRUE(root.CancelNetworkConnection(u"Z:", true, false));
  EXPECT_EQ(provider.asked, "Z: 1 0");
  EXPECT_TRUE(root.CancelNetworkConnection(u"Z:", false, true));
  EXPECT_NE(provider.asked.back(), '0');
  provider.status = 1208;
  EXPECT_EQ(FailureOf([&] { add(u"", u"", u"", u"", 0, 0, false); }),
            u"1208|Veldmark2.SystemRoot|A error specific to the network provider occurred");
  Apartment::End();
}

}  // namespace
}  // namespace veldmark
