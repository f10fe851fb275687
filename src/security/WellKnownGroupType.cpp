#include "security/WellKnownGroupType.h"

#include "automation/Declare.h"

namespace veldmark {

const Enumeration& DescribeEnumeration(WellKnownGroupTypeEnum) {
  static const Enumeration table =
      DeclareEnumeration<WellKnownGroupTypeEnum>(u"WellKnownGroupTypeEnum",
                                                 u"The groups that every computer has.")
          .Value(u"WKG_EVERYONE", WKG_EVERYONE, u"Everyone.")
          .Value(u"WKG_LOCAL", WKG_LOCAL, u"Those who log on to a terminal.")
          .Value(u"WKG_CREATOROWNER", WKG_CREATOROWNER, u"Stands for the owner of a new object.")
          .Value(u"WKG_CREATORGROUP", WKG_CREATORGROUP,
                 u"Stands for the primary group of a new object's owner.")
          .Value(u"WKG_DIALUP", WKG_DIALUP, u"Those who dial in.")
          .Value(u"WKG_NETWORK", WKG_NETWORK, u"Those who come over the network.")
          .Value(u"WKG_BATCH", WKG_BATCH, u"Batch jobs.")
          .Value(u"WKG_INTERACTIVE", WKG_INTERACTIVE, u"Those who work at the computer.")
          .Value(u"WKG_SERVICE", WKG_SERVICE, u"Services.")
          .Value(u"WKG_ANONYMOUSLOGON", WKG_ANONYMOUSLOGON, u"Those who gave no name.")
          .Value(u"WKG_AUTHENTICATEDUSERS", WKG_AUTHENTICATEDUSERS,
                 u"Those who proved who they are.")
          .Value(u"WKG_SYSTEM", WKG_SYSTEM, u"The operating system.")
          .Value(u"WKG_TERMINALSERVERUSERS", WKG_TERMINALSERVERUSERS,
                 u"Those who work at a terminal server.")
          .Value(u"WKG_SELF", WKG_SELF, u"Stands for the object itself.")
          .Value(u"WKG_RESTRICTEDCODE", WKG_RESTRICTEDCODE, u"Programs with restricted rights.")
          .Value(u"WKG_ENTERPRISEDOMAINCONTROLLERS", WKG_ENTERPRISEDOMAINCONTROLLERS,
                 u"The domain controllers of the enterprise.")
          .Value(u"WKG_LOCALSERVICE", WKG_LOCALSERVICE,
                 u"The account of services without network rights.")
          .Value(u"WKG_NETWORKSERVICE", WKG_NETWORKSERVICE,
                 u"The account of services with network rights.");
  return table;
}

}  // namespace veldmark
