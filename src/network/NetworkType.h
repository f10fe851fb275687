#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

/// The kinds of network: the upper word of the platform's numbers of network types.
enum NetworkTypeEnum : std::int32_t {
  NET_MSNET = 1,
  NET_LANMAN = 2,
  NET_NETWARE = 3,
  NET_VINES = 4,
  NET_10NET = 5,
  NET_LOCUS = 6,
  NET_SUN_PC_NFS = 7,
  NET_LANSTEP = 8,
  NET_9TILES = 9,
  NET_LANTASTIC = 10,
  NET_AS400 = 11,
  NET_FTP_NFS = 12,
  NET_PATHWORKS = 13,
  NET_LIFENET = 14,
  NET_POWERLAN = 15,
  NET_BWNFS = 16,
  NET_COGENT = 17,
  NET_FARALLON = 18,
  NET_APPLETALK = 19,
  NET_INTERGRAPH = 20,
  NET_SYMFONET = 21,
  NET_CLEARCASE = 22,
  NET_FRONTIER = 23,
  NET_BMC = 24,
  NET_DCE = 25,
  NET_DECORB = 32,
  NET_PROTSTOR = 33,
  NET_FJ_REDIR = 34,
  NET_DISTINCT = 35,
  NET_TWINS = 36,
  NET_RDR2SAMPLE = 37,
};

const Enumeration& DescribeEnumeration(NetworkTypeEnum);

}  // namespace veldmark
