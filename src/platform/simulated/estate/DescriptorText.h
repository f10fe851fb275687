#pragma once

#include <optional>

#include "platform/simulated/estate/SecurityDescriptor.h"

namespace veldmark::simulated {

// The descriptor that a string in the published form describes, such as
// "O:BAG:SYD:PAI(A;OICI;FA;;;BA)(OA;;RP;<guid>;;S-1-5-11)". Aliases of accounts ("LA", "DU") belong
// to `domain`. Nothing with a code in `error` otherwise: 1337 for an owner or group that isn't one,
// 1336 for an entry that isn't, 87 for anything else.
std::optional<SecurityDescriptor> ParseDescriptorText(TextView text, const Sid& domain,
                                                      DWORD& error);

// The same for descriptions that are known to be right. Throws std::invalid_argument.
SecurityDescriptor DescriptorOf(TextView text, const Sid& domain = DefaultDomainSid());

}  // namespace veldmark::simulated
