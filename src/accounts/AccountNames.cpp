#include "accounts/AccountNames.h"

namespace veldmark {
namespace {

constexpr TextView kNetworkStart = u"\\\\";

}  // namespace

Text LocalDisplayName(TextView server_name, TextView name) {
  Text display_name;
  display_name.reserve(kNetworkStart.size() + server_name.size() + 1 + name.size());
  if (!server_name.starts_with(kNetworkStart)) display_name = kNetworkStart;
  return display_name.append(server_name).append(1, u'\\').append(name);
}

Text GlobalDisplayName(TextView domain_name, TextView name) {
  if (domain_name.empty()) return Text(name);
  Text display_name;
  display_name.reserve(domain_name.size() + 1 + name.size());
  return display_name.append(domain_name).append(1, u'\\').append(name);
}

}  // namespace veldmark
