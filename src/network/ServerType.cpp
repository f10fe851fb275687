#include "network/ServerType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(ServerTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<ServerTypeEnum>(u"ServerTypeEnum", u"What a computer is, bit by bit.")
          .Value(u"SV_TYPE_WORKSTATION", SV_TYPE_WORKSTATION, u"It uses the network.")
          .Value(u"SV_TYPE_SERVER", SV_TYPE_SERVER, u"It shares something.")
          .Value(u"SV_TYPE_SQLSERVER", SV_TYPE_SQLSERVER, u"It runs a database server.")
          .Value(u"SV_TYPE_DOMAIN_CTRL", SV_TYPE_DOMAIN_CTRL, u"A primary controller.")
          .Value(u"SV_TYPE_DOMAIN_BAKCTRL", SV_TYPE_DOMAIN_BAKCTRL, u"A backup controller.")
          .Value(u"SV_TYPE_TIME_SOURCE", SV_TYPE_TIME_SOURCE, u"It gives the time.")
          .Value(u"SV_TYPE_AFP", SV_TYPE_AFP, u"It serves files to Macintosh computers.")
          .Value(u"SV_TYPE_NOVELL", SV_TYPE_NOVELL, u"A NetWare server.")
          .Value(u"SV_TYPE_DOMAIN_MEMBER", SV_TYPE_DOMAIN_MEMBER, u"Member of a domain.")
          .Value(u"SV_TYPE_PRINTQ_SERVER", SV_TYPE_PRINTQ_SERVER, u"It shares a printer.")
          .Value(u"SV_TYPE_DIALIN_SERVER", SV_TYPE_DIALIN_SERVER, u"It can be dialled.")
          .Value(u"SV_TYPE_XENIX_SERVER", SV_TYPE_XENIX_SERVER, u"It runs XENIX.")
          .Value(u"SV_TYPE_SERVER_UNIX", SV_TYPE_SERVER_UNIX, u"It runs UNIX: the same bit.")
          .Value(u"SV_TYPE_NT", SV_TYPE_NT, u"It runs Windows NT or a later version.")
          .Value(u"SV_TYPE_WFW", SV_TYPE_WFW, u"It runs Windows for Workgroups.")
          .Value(u"SV_TYPE_SERVER_MFPN", SV_TYPE_SERVER_MFPN, u"It serves files for NetWare.")
          .Value(u"SV_TYPE_SERVER_NT", SV_TYPE_SERVER_NT,
                 u"A server that is no controller: bit 15, here with all bits above it.")
          .Value(u"SV_TYPE_POTENTIAL_BROWSER", SV_TYPE_POTENTIAL_BROWSER,
                 u"It can keep the browse list.")
          .Value(u"SV_TYPE_BACKUP_BROWSER", SV_TYPE_BACKUP_BROWSER,
                 u"It keeps a copy of the browse list.")
          .Value(u"SV_TYPE_MASTER_BROWSER", SV_TYPE_MASTER_BROWSER, u"It keeps the browse list.")
          .Value(u"SV_TYPE_DOMAIN_MASTER", SV_TYPE_DOMAIN_MASTER,
                 u"It keeps the browse list of the whole domain.")
          .Value(u"SV_TYPE_SERVER_OSF", SV_TYPE_SERVER_OSF, u"It runs OSF.")
          .Value(u"SV_TYPE_SERVER_VMS", SV_TYPE_SERVER_VMS, u"It runs VMS.")
          .Value(u"SV_TYPE_WINDOWS", SV_TYPE_WINDOWS, u"It runs Windows 95 or one of its line.")
          .Value(u"SV_TYPE_DFS", SV_TYPE_DFS, u"A root of a distributed file system.")
          .Value(u"SV_TYPE_CLUSTER_NT", SV_TYPE_CLUSTER_NT, u"A cluster of servers.")
          .Value(u"SV_TYPE_DCE", SV_TYPE_DCE, u"It runs DCE.")
          .Value(u"SV_TYPE_ALTERNATE_XPORT", SV_TYPE_ALTERNATE_XPORT,
                 u"Asks for the list of another transport.")
          .Value(u"SV_TYPE_LOCAL_LIST_ONLY", SV_TYPE_LOCAL_LIST_ONLY,
                 u"Asks for what this computer's own list shows.")
          .Value(u"SV_TYPE_DOMAIN_ENUM", SV_TYPE_DOMAIN_ENUM, u"The primary domain.")
          .Value(u"SV_TYPE_ALL", SV_TYPE_ALL, u"Every computer.");
  return table;
}

}  // namespace veldmark
