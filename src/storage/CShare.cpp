#include "storage/CShare.h"

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/Declare.h"
#include "security/CSecurityDescriptor.h"
#include "storage/CFolder.h"

namespace veldmark {
namespace {

constexpr TextView kClassName = u"CShare";

}  // namespace

const Interface& CShare::Describe() {
  static const Interface table =
      Declare<CShare>(u"CShare", u"A shared folder or device of a computer.")
          .Method<&CShare::GetRootFolder>(u"GetRootFolder", u"The shared folder.")
          .Method<&CShare::GetSecurityDescriptor>(u"GetSecurityDescriptor",
                                                  u"Who may use the share.")
          .Stored<&CShare::ShareName>(u"ShareName", u"Its name in the network.")
          .Stored<&CShare::ServerName>(u"ServerName", u"The computer that shares it.")
          .Get<&CShare::SharePath>(u"SharePath", u"Where it lies on that computer.")
          .Get<&CShare::NetworkPath>(u"NetworkPath", u"Its path in the network, \\\\SRV\\Share.")
          .Stored<&CShare::Comment>(u"Comment", u"What its owner says about it.")
          .Stored<&CShare::ShareType>(u"ShareType", u"What is shared.")
          .Stored<&CShare::ShareAccess>(u"ShareAccess", u"What the share itself allows.")
          .Stored<&CShare::MaxUses>(u"MaxUses", u"How many may use it at once; -1 for any number.")
          .Stored<&CShare::CurrentUses>(u"CurrentUses", u"How many used it when it was listed.")
          .Stored<&CShare::Password>(u"Password", u"The share's password, where it has one.")
          .Method<&CShare::Delete>(u"Delete", u"Ends the share; the folder stays.")
          .Remark(
              u"Whoever uses the share loses what he has open there. Raises 5 for who may not "
              u"and 2310 where there is no such share.");
  return table;
}

Ref<CFolder> CShare::GetRootFolder() {
  return ReRaisingAs(kClassName, [&] {
    auto root = Make<CFolder>();
    root->FolderName = u"\\";
    root->PutPath(NetworkPath());
    return root;
  });
}

Ref<CSecurityDescriptor> CShare::GetSecurityDescriptor() {
  return ReRaisingAs(kClassName, [&] { return Engine().GetShareSD(ServerName, ShareName, this); });
}

Text CShare::NetworkPath() const { return u"\\\\" + ServerName + u"\\" + ShareName; }

bool CShare::Delete() {
  return ReRaisingAs(kClassName, [&] {
    NetworkManagement& network = Apartment::Current().platform.network_management;
    const Variant server = ApiStringBuffer(u"\\\\" + ServerName);
    const Variant name = ApiStringBuffer(ShareName);
    if (const DWORD status = network.NetShareDel(BufferText(server), BufferText(name), 0)) {
      RaisePlatformError(static_cast<std::int32_t>(status));
    }
    return true;
  });
}

}  // namespace veldmark
