#pragma once

#include <cstdint>
#include <limits>

namespace veldmark {

struct Enumeration;

/// What a computer is and does, bit by bit. `SV_TYPE_SERVER_NT` is the bit 0x8000 of the platform
/// as a sign-extended 16-bit number, and so compares with no other value of the platform.
enum ServerTypeEnum : std::int32_t {
  SV_TYPE_WORKSTATION = 0x1,
  SV_TYPE_SERVER = 0x2,
  SV_TYPE_SQLSERVER = 0x4,
  SV_TYPE_DOMAIN_CTRL = 0x8,
  SV_TYPE_DOMAIN_BAKCTRL = 0x10,
  SV_TYPE_TIME_SOURCE = 0x20,
  SV_TYPE_AFP = 0x40,
  SV_TYPE_NOVELL = 0x80,
  SV_TYPE_DOMAIN_MEMBER = 0x100,
  SV_TYPE_PRINTQ_SERVER = 0x200,
  SV_TYPE_DIALIN_SERVER = 0x400,
  SV_TYPE_XENIX_SERVER = 0x800,
  SV_TYPE_SERVER_UNIX = SV_TYPE_XENIX_SERVER,
  SV_TYPE_NT = 0x1000,
  SV_TYPE_WFW = 0x2000,
  SV_TYPE_SERVER_MFPN = 0x4000,
  SV_TYPE_SERVER_NT = -0x8000,
  SV_TYPE_POTENTIAL_BROWSER = 0x10000,
  SV_TYPE_BACKUP_BROWSER = 0x20000,
  SV_TYPE_MASTER_BROWSER = 0x40000,
  SV_TYPE_DOMAIN_MASTER = 0x80000,
  SV_TYPE_SERVER_OSF = 0x100000,
  SV_TYPE_SERVER_VMS = 0x200000,
  SV_TYPE_WINDOWS = 0x400000,
  SV_TYPE_DFS = 0x800000,
  SV_TYPE_CLUSTER_NT = 0x1000000,
  SV_TYPE_DCE = 0x10000000,
  SV_TYPE_ALTERNATE_XPORT = 0x20000000,
  SV_TYPE_LOCAL_LIST_ONLY = 0x40000000,
  SV_TYPE_DOMAIN_ENUM = std::numeric_limits<std::int32_t>::min(),
  SV_TYPE_ALL = -1,
};

const Enumeration& DescribeEnumeration(ServerTypeEnum);

}  // namespace veldmark
