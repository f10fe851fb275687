#include "network/NetworkType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(NetworkTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<NetworkTypeEnum>(
          u"NetworkTypeEnum", u"The kinds of network, after the product that connects them.")
          .Value(u"NET_MSNET", NET_MSNET, u"MS-NET.")
          .Value(u"NET_LANMAN", NET_LANMAN, u"LAN Manager: the network of Windows itself.")
          .Value(u"NET_NETWARE", NET_NETWARE, u"NetWare.")
          .Value(u"NET_VINES", NET_VINES, u"VINES.")
          .Value(u"NET_10NET", NET_10NET, u"10NET.")
          .Value(u"NET_LOCUS", NET_LOCUS, u"Locus.")
          .Value(u"NET_SUN_PC_NFS", NET_SUN_PC_NFS, u"PC-NFS.")
          .Value(u"NET_LANSTEP", NET_LANSTEP, u"LANstep.")
          .Value(u"NET_9TILES", NET_9TILES, u"9TILES.")
          .Value(u"NET_LANTASTIC", NET_LANTASTIC, u"LANtastic.")
          .Value(u"NET_AS400", NET_AS400, u"AS/400.")
          .Value(u"NET_FTP_NFS", NET_FTP_NFS, u"FTP NFS.")
          .Value(u"NET_PATHWORKS", NET_PATHWORKS, u"PATHWORKS.")
          .Value(u"NET_LIFENET", NET_LIFENET, u"LifeNet.")
          .Value(u"NET_POWERLAN", NET_POWERLAN, u"POWERLan.")
          .Value(u"NET_BWNFS", NET_BWNFS, u"BW-NFS.")
          .Value(u"NET_COGENT", NET_COGENT, u"Cogent.")
          .Value(u"NET_FARALLON", NET_FARALLON, u"Farallon.")
          .Value(u"NET_APPLETALK", NET_APPLETALK, u"AppleTalk.")
          .Value(u"NET_INTERGRAPH", NET_INTERGRAPH, u"Intergraph.")
          .Value(u"NET_SYMFONET", NET_SYMFONET, u"SymfoNet.")
          .Value(u"NET_CLEARCASE", NET_CLEARCASE, u"ClearCase.")
          .Value(u"NET_FRONTIER", NET_FRONTIER, u"Frontier.")
          .Value(u"NET_BMC", NET_BMC, u"BMC.")
          .Value(u"NET_DCE", NET_DCE, u"DCE.")
          .Value(u"NET_DECORB", NET_DECORB, u"DECorb.")
          .Value(u"NET_PROTSTOR", NET_PROTSTOR, u"Protstor.")
          .Value(u"NET_FJ_REDIR", NET_FJ_REDIR, u"Fujitsu's redirector.")
          .Value(u"NET_DISTINCT", NET_DISTINCT, u"Distinct.")
          .Value(u"NET_TWINS", NET_TWINS, u"TWINS.")
          .Value(u"NET_RDR2SAMPLE", NET_RDR2SAMPLE, u"A sample redirector.");
  return table;
}

}  // namespace veldmark
