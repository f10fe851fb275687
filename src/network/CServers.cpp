#include "network/CServers.h"

#include "collections/CollectionTable.h"
#include "network/CServer.h"

namespace veldmark {

const Interface& CServers::Describe() {
  static const Interface table =
      CollectionTable<CServers>(u"CServers", u"Servers, found by name.")
          .Plain(u"oServer")
          .Method<&CServers::ContainsKey>(u"ContainsKey", u"False, whatever the list holds.",
                                          {u"vntIndexKey"})
          .Remark(
              u"False for a server in the list too. ItemByKey tells: it raises 5 for one that "
              u"isn't there.")
          .ItemByKey()
          .ItemByIndex();
  return table;
}

CollectionKey CServers::KeyOf(CServer& server) { return CollectionKey::Encoded(server.ServerName); }

bool CServers::ContainsKey(Variant&) {
  // What is found is assigned to an object that was never set, so that it fails either way.
  Err().Clear();
  return false;
}

}  // namespace veldmark
