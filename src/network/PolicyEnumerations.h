#pragma once

#include <cstdint>

namespace veldmark {

struct Enumeration;

// What clients call the parts and values of a policy by; no member takes or gives them.

/// The kinds of event that a policy audits.
enum PolicyAuditEventTypeEnum : std::int32_t {
  AuditCategorySystem = 0,
  AuditCategoryLogon = 1,
  AuditCategoryObjectAccess = 2,
  AuditCategoryPrivilegeUse = 3,
  AuditCategoryDetailedTracking = 4,
  AuditCategoryPolicyChange = 5,
  AuditCategoryAccountManagement = 6,
  AuditCategoryDirectoryServiceAccess = 7,
  AuditCategoryAccountLogon = 8,
};

/// The parts of a policy.
enum PolicyInformationClassEnum : std::int32_t {
  PolicyAuditLogInformation = 1,
  PolicyAuditEventsInformation = 2,
  PolicyPrimaryDomainInformation = 3,
  PolicyPdAccountInformation = 4,
  PolicyAccountDomainInformation = 5,
  PolicyLsaServerRoleInformation = 6,
  PolicyReplicaSourceInformation = 7,
  PolicyDefaultQuotaInformation = 8,
  PolicyModificationInformation = 9,
  PolicyAuditFullSetInformation = 10,
  PolicyAuditFullQueryInformation = 11,
  PolicyDnsDomainInformation = 12,
};

/// The role of a server in its domain.
enum PolicyLsaServerRoleEnum : std::int32_t {
  PolicyServerRoleBackup = 2,
  PolicyServerRolePrimary = 3,
};

const Enumeration& DescribeEnumeration(PolicyAuditEventTypeEnum);
const Enumeration& DescribeEnumeration(PolicyInformationClassEnum);
const Enumeration& DescribeEnumeration(PolicyLsaServerRoleEnum);

}  // namespace veldmark
