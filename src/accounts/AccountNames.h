#pragma once

#include "automation/Text.h"

namespace veldmark {

/// What stands in the place of the name of an account that isn't there.
inline constexpr TextView kAccountUnknown = u"(Account Unknown)";

/// The display name of an account of a computer: "\\SRV\name". The server may come with its "\\".
Text LocalDisplayName(TextView server_name, TextView name);
/// The display name of an account of a domain: "CORP\name", or the name where there is no domain.
Text GlobalDisplayName(TextView domain_name, TextView name);

}  // namespace veldmark
