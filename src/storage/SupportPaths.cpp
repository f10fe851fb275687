#include <algorithm>
#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "storage/PathForms.h"

namespace veldmark {
namespace {

/// What stands for a name that the platform doesn't tell.
constexpr TextView kUnknownServer = u"(UNKNOWN)";

constexpr TextView kNetworkStart = u"\\\\";

}  // namespace

Text CSupport::StripLongPathChars(const Text& path) { return PlainPath(path); }

Text CSupport::GetServerNameFromPath(const Text& path) {
  Text server;
  Swallow([&] {
    if (path.empty()) return;
    if (path.starts_with(kNetworkStart)) {
      const TextView behind = TextView(path).substr(kNetworkStart.size());
      server = ToUpper(behind.substr(0, behind.find(u'\\')));
    } else {
      server = own_server_name_.empty() ? ToUpper(ComputerName()) : own_server_name_;
      if (server != kUnknownServer) own_server_name_ = server;
    }
  });
  return server;
}

void CSupport::GetUNCPath(const Text& drive_letter, Text& volume_name, Text& share_name) {
  ReRaising([&] {
    NetworkProvider& provider = Apartment::Current().platform.network_provider;
    const Text root = drive_letter + u":\\";
    DWORD size = 0;
    DWORD status =
        provider.WNetGetUniversalNameW(root.c_str(), kUniversalNameInfoLevel, nullptr, &size);
    if (status != kErrorMoreData) return;

    // Never smaller than the record itself, and zero where the platform wrote nothing.
    std::vector<UNIVERSAL_NAME_INFOW> buffer(size / sizeof(UNIVERSAL_NAME_INFOW) + 1);
    status =
        provider.WNetGetUniversalNameW(root.c_str(), kUniversalNameInfoLevel, buffer.data(), &size);
    if (status != 0) RaisePlatformError(status);

    share_name = WidePtrToString(buffer.front().lpUniversalName, false);
    // "\\server\share\": where a backslash is missing, so is what it ends.
    TextView rest = TextView(share_name).substr(std::min(share_name.size(), kNetworkStart.size()));
    const std::size_t server_end = std::min(rest.find(u'\\'), rest.size());
    const TextView server = rest.substr(0, server_end);
    rest.remove_prefix(std::min(server_end + 1, rest.size()));
    const TextView share = rest.substr(0, rest.empty() ? 0 : rest.size() - 1);
    volume_name = ToProperCase(share) + u" on '" + ToProperCase(server) + u"'";
  });
}

}  // namespace veldmark
