#include <cstring>

#include "automation/Secret.h"
#include "platform/operations/Handles.h"
#include "root/SystemRoot.h"
#include "storage/StorageFixture.h"
#include "support/MixedPlatform.h"

namespace veldmark {
namespace {

/// A provider that says what it was asked ("null" for a null pointer) and answers as it is told.
class StubProvider final : public simulated::SimulatedNetworkProvider {
 public:
  using SimulatedNetworkProvider::SimulatedNetworkProvider;
  DWORD WNetGetUniversalNameW(LPCWSTR, DWORD, void* buffer, DWORD* size) override {
    if (!buffer) {
      *size = static_cast<DWORD>(sizeof(UNIVERSAL_NAME_INFOW) + 2 * (name.size() + 1));
      return first_status;
    }
    auto* const text = static_cast<char*>(buffer) + sizeof(UNIVERSAL_NAME_INFOW);
    std::memcpy(text, name.c_str(), 2 * (name.size() + 1));
    static_cast<UNIVERSAL_NAME_INFOW*>(buffer)->lpUniversalName = reinterpret_cast<LPWSTR>(text);
    return status;
  }
  DWORD WNetAddConnection3W(HWND owner, const NETRESOURCEW* resource, LPCWSTR password,
                            LPCWSTR user_name, DWORD flags) override {
    const auto shown = [](LPCWSTR text) { return text ? " '" + ToUtf8(text) + "'" : " null"; };
    asked = std::to_string(reinterpret_cast<std::intptr_t>(owner)) + " " +
            std::to_string(resource->dwScope + resource->dwDisplayType + resource->dwUsage) + " " +
            std::to_string(resource->dwType) + shown(resource->lpLocalName) +
            shown(resource->lpRemoteName) + shown(resource->lpComment) +
            shown(resource->lpProvider) + shown(password) + shown(user_name) + " " +
            std::to_string(flags);
    return status;
  }
  DWORD WNetCancelConnection2W(LPCWSTR cancelled, DWORD flags, BOOL force) override {
    asked = ToUtf8(cancelled) + " " + std::to_string(flags) + (force ? " forced" : "");
    return status;
  }

  Text name;
  std::string asked;
  DWORD first_status = 234;
  DWORD status = 0;
};

class Providers : public testing::Test {
 protected:
  Providers() { Apartment::Start(platform_); }
  ~Providers() override { Apartment::End(); }

  simulated::SimulatedPlatform simulated_;
  StubProvider provider_{simulated_.session()};
  Platform platform_ = Mixed(simulated_.platform(), provider_);
};

TEST_F(Providers, TellTheShareOfAMappedDriveAndGiveItAReadableName) {
  const std::pair<const char16_t*, const char16_t*> cases[] = {
      {u"\\\\srv\\share\\", u"Share on 'Srv'"},
      {u"\\\\SRV\\COMMON FILES\\", u"Common Files on 'Srv'"},
      {u"\\\\srv\\share\\sub\\", u"Share\\sub on 'Srv'"},
      {u"\\\\srv\\share", u"Shar on 'Srv'"},
      {u"\\\\srv", u" on 'Srv'"},
      {u"\\\\\\share\\", u"Share on ''"},
      {u"\\", u" on ''"},
      {u"", u" on ''"},
  };
  for (const auto& [name, readable] : cases) {
    provider_.name = name;
    Text volume, share;
    Engine().GetUNCPath(u"Z", volume, share);
    EXPECT_EQ(share, name);
    EXPECT_EQ(volume, readable) << ToUtf8(name);
  }
  const std::tuple<DWORD, DWORD, std::int32_t> failures[] = {
      {2250, 0, 0}, {0, 0, 0}, {234, 1222, 1222}, {234, 234, 234}};
  for (const auto& [first, second, raised] : failures) {
    provider_.first_status = first;
    provider_.status = second;
    Text volume = u"kept", share = u"too";
    EXPECT_EQ(ErrorOf([&] { Engine().GetUNCPath(u"Z", volume, share); }), raised);
    EXPECT_EQ(volume + share, u"kepttoo");
  }
}

TEST_F(Providers, AreAskedForWhatTheCallerGave) {
  SystemRoot root;
  const auto add = [&](const Text& local, const Text& remote, const Text& user,
                       const Text& password, std::int32_t type, std::int32_t owner, bool keep) {
    return root.AddNetworkConnection(local, remote, user, Secret(password),
                                     static_cast<ResourceTypeEnum>(type), owner, keep);
  };
  EXPECT_TRUE(add(u"Z:", u"\\\\srv\\share", u"anna", u"open", 1, 77, true));
  EXPECT_EQ(provider_.asked, "77 0 1 'Z:' '\\\\srv\\share' null null 'open' 'anna' 1");
  EXPECT_TRUE(add(u"", u"", u"", u"", -1, -1, false));
  EXPECT_EQ(provider_.asked, "-1 0 4294967295 null null null null '' '' 0");
  EXPECT_TRUE(root.CancelNetworkConnection(u"Z:", true, false));
  EXPECT_EQ(provider_.asked, "Z: 1");
  EXPECT_TRUE(root.CancelNetworkConnection(u"Z:", false, true));
  EXPECT_EQ(provider_.asked, "Z: 0 forced");
  for (const std::int32_t status : {1208, 1222}) {
    provider_.status = static_cast<DWORD>(status);
    const Text text = ToText(status) + u"|Veldmark2.SystemRoot|" +
                      (status == 1208 ? u"A error specific to the network provider occurred"
                                      : GetAPIErrorText(status));
    EXPECT_EQ(FailureOf([&] { add(u"", u"", u"", u"", 0, 0, false); }), text);
    EXPECT_EQ(FailureOf([&] { root.CancelNetworkConnection(u"Z:", false, false); }), text);
  }
}

TEST_F(StorageTest, ConnectionsOpenASharesFilesUntilTheyAreCancelled) {
  simulated::Computer& server = *estate().FindComputer(u"SRV");
  simulated::Share& pay = server.AddShare(u"Pay", u"C:\\Shared\\Deep");
  pay.user = u"SRV\\clerk";
  pay.password = u"thirty-first";
  server.AddShare(u"Odd", u"C:\\Shared").provider_fails = true;
  server.AddShare(u"Shut", u"C:\\Shared", true);
  estate().AddComputer(u"GONE").SetReachable(false);
  const Text file = u"\\\\SRV\\Pay\\f";
  SystemRoot root;
  EXPECT_FALSE(root.FileExists(file)) << "a share that asks who comes is closed";
  struct Case {
    const char16_t *local, *remote, *password;
    std::int32_t type, raised;
  };
  const Case cases[] = {{u"X:", u"\\\\SRV\\Share", u"", 1, 0},
                        {u"x:", u"\\\\SRV\\Share", u"", 1, 85},
                        {u"Y:", u"\\\\srv\\share\\Deep", u"", 1, 0},
                        {u"Z:", u"\\\\SRV\\Share\\None", u"", 1, 67},
                        {u"Z:", u"\\\\SRV\\None", u"", 1, 67},
                        {u"Z:", u"\\\\GONE\\Share", u"", 1, 53},
                        {u"Z:", u"", u"", 1, 87},
                        {u"Z", u"\\\\SRV\\Share", u"", 1, 1200},
                        {u"Z:", u"\\\\SRV\\Share", u"", 0, 66},
                        {u"LPT1", u"\\\\SRV\\Share", u"", 2, 66},
                        {u"Z:", u"\\\\SRV\\Shut", u"", 1, 5},
                        {u"Z:", u"\\\\SRV\\Odd", u"", 1, 1208},
                        {u"Z:", u"\\\\SRV\\Pay", u"wr0ng", 1, 86},
                        {u"Z:", u"\\\\SRV\\Pay", u"thirty-first", 1, 0},
                        {u"", u"\\\\SRV\\Pay", u"thirty-first", 0, 0}};
  for (const Case& c : cases) {
    EXPECT_EQ(ErrorOf([&] {
                root.AddNetworkConnection(c.local, c.remote, *c.password ? u"srv\\Clerk" : u"",
                                          Secret(c.password), static_cast<ResourceTypeEnum>(c.type),
                                          0, false);
              }),
              c.raised)
        << ToUtf8(Text(c.local) + u" " + c.remote);
  }
  EXPECT_EQ(PathsIn(Engine().GetFiles(u"Y:")), " Y:\\f");
  for (const auto& call : journal().entries()) {
    EXPECT_EQ(call.argument.find("thirty"), std::string::npos) << call.operation;
  }
  EXPECT_TRUE(root.WriteTextFile(file, u"x", false));
  EXPECT_TRUE(root.CancelNetworkConnection(u"\\\\srv\\pay", false, false))
      << "the one without a drive";
  EXPECT_EQ(root.ReadTextFile(file), u"x") << "the drive's connection still stands";
  {
    const FileHandle open(
        platform.files, platform.files.CreateFileW(u"Z:\\f", kGenericRead, kFileShareRead, nullptr,
                                                   kOpenExisting, 0, nullptr));
    EXPECT_EQ(ErrorOf([&] { root.CancelNetworkConnection(u"z:", false, false); }), 2401);
    EXPECT_TRUE(root.CancelNetworkConnection(u"z:", false, true));
  }
  EXPECT_EQ(ErrorOf([&] { root.CancelNetworkConnection(u"Z:", false, false); }), 2250);
  EXPECT_EQ(ErrorOf([&] { root.ReadTextFile(file); }), 75);
}

}  // namespace
}  // namespace veldmark
