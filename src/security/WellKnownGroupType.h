#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The groups that every computer has. -1, which has no name, means none of them.
enum WellKnownGroupTypeEnum : std::int32_t {
  WKG_EVERYONE = 0,
  WKG_LOCAL = 1,
  WKG_CREATOROWNER = 2,
  WKG_CREATORGROUP = 3,
  WKG_DIALUP = 4,
  WKG_NETWORK = 5,
  WKG_BATCH = 6,
  WKG_INTERACTIVE = 7,
  WKG_SERVICE = 8,
  WKG_ANONYMOUSLOGON = 9,
  WKG_AUTHENTICATEDUSERS = 16,
  WKG_SYSTEM = 17,
  WKG_TERMINALSERVERUSERS = 18,
  WKG_SELF = 19,
  WKG_RESTRICTEDCODE = 20,
  WKG_ENTERPRISEDOMAINCONTROLLERS = 21,
  WKG_LOCALSERVICE = 22,
  WKG_NETWORKSERVICE = 23,
};

inline constexpr WellKnownGroupTypeEnum kNoWellKnownGroup{-1};

const Enumeration& DescribeEnumeration(WellKnownGroupTypeEnum);

}  // namespace veldmark
