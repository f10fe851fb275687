#include "network/PolicyEnumerations.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(PolicyAuditEventTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<PolicyAuditEventTypeEnum>(u"PolicyAuditEventTypeEnum",
                                                   u"The kinds of event that a policy audits.")
          .Value(u"AuditCategorySystem", AuditCategorySystem,
                 u"Restarts and the security of the system itself.")
          .Value(u"AuditCategoryLogon", AuditCategoryLogon, u"Logging on and off.")
          .Value(u"AuditCategoryObjectAccess", AuditCategoryObjectAccess,
                 u"Access to files and other objects.")
          .Value(u"AuditCategoryPrivilegeUse", AuditCategoryPrivilegeUse, u"Use of privileges.")
          .Value(u"AuditCategoryDetailedTracking", AuditCategoryDetailedTracking,
                 u"Processes and their like.")
          .Value(u"AuditCategoryPolicyChange", AuditCategoryPolicyChange, u"Changes of policies.")
          .Value(u"AuditCategoryAccountManagement", AuditCategoryAccountManagement,
                 u"Changes of accounts.")
          .Value(u"AuditCategoryDirectoryServiceAccess", AuditCategoryDirectoryServiceAccess,
                 u"Access to the directory.")
          .Value(u"AuditCategoryAccountLogon", AuditCategoryAccountLogon,
                 u"Checks of accounts by a controller.");
  return table;
}

const Enumeration& DescribeEnumeration(PolicyInformationClassEnum) {
  static const Enumeration table =
      DeclareEnumeration<PolicyInformationClassEnum>(u"PolicyInformationClassEnum",
                                                     u"The parts of a policy.")
          .Value(u"PolicyAuditLogInformation", PolicyAuditLogInformation, u"The audit log.")
          .Value(u"PolicyAuditEventsInformation", PolicyAuditEventsInformation, u"What is audited.")
          .Value(u"PolicyPrimaryDomainInformation", PolicyPrimaryDomainInformation,
                 u"The primary domain.")
          .Value(u"PolicyPdAccountInformation", PolicyPdAccountInformation,
                 u"The account in the primary domain.")
          .Value(u"PolicyAccountDomainInformation", PolicyAccountDomainInformation,
                 u"The domain of the accounts.")
          .Value(u"PolicyLsaServerRoleInformation", PolicyLsaServerRoleInformation,
                 u"The role of the server.")
          .Value(u"PolicyReplicaSourceInformation", PolicyReplicaSourceInformation,
                 u"Where it is copied from.")
          .Value(u"PolicyDefaultQuotaInformation", PolicyDefaultQuotaInformation, u"The quotas.")
          .Value(u"PolicyModificationInformation", PolicyModificationInformation,
                 u"When it was changed.")
          .Value(u"PolicyAuditFullSetInformation", PolicyAuditFullSetInformation,
                 u"What happens when the audit log is full, to be set.")
          .Value(u"PolicyAuditFullQueryInformation", PolicyAuditFullQueryInformation,
                 u"The same, to be read.")
          .Value(u"PolicyDnsDomainInformation", PolicyDnsDomainInformation,
                 u"The primary domain with its DNS names.");
  return table;
}

const Enumeration& DescribeEnumeration(PolicyLsaServerRoleEnum) {
  static const Enumeration table =
      DeclareEnumeration<PolicyLsaServerRoleEnum>(u"PolicyLsaServerRoleEnum",
                                                  u"The role of a server in its domain.")
          .Value(u"PolicyServerRoleBackup", PolicyServerRoleBackup, u"A backup controller.")
          .Value(u"PolicyServerRolePrimary", PolicyServerRolePrimary, u"The primary controller.");
  return table;
}

}  // namespace veldmark
