// Records of the accounts' cache: whatever stands in it, a look-up never raises, and what was kept
// comes back as it was unless a field holds the separator.

#include <array>

#include "FuzzTarget.h"
#include "accounts/AccountNames.h"
#include "automation/CaseMapping.h"
#include "collections/Collection.h"
#include "security/AccountCache.h"

namespace {

using namespace veldmark;

constexpr TextView kServer = u"SRV";

void ForgetAll() {
  Apartment::Current().sid_cache = Make<Collection>();
  Apartment::Current().account_cache = Make<Collection>();
}

void ReadForeign(const Text& record) {
  ForgetAll();
  Apartment::Current().sid_cache->Add(Variant(record), CollectionKey::Plain(u"S-1-5-18"));
  Apartment::Current().account_cache->Add(Variant(record), CollectionKey::Plain(u"D\\N"));
  for (const TextView server : {kServer, TextView(u"ELSEWHERE")}) {
    Account by_sid{u"s-1-5-18", {}, {}, {}};
    Account by_name{{}, u"d", u"n", {}};
    for (Account* const account : {&by_sid, &by_name}) {
      if (FindCachedAccount(*account, server)) {
        Require(account->name.find(u'|') == Text::npos);
      } else {
        Require(account->name.size() <= 1);
      }
    }
  }
}

void KeepAndFind(const Text& text) {
  ForgetAll();
  std::array<Text, 3> fields;
  std::size_t at = 0;
  for (const char16_t unit : text) {
    if (unit == u'\n' && at + 1 < fields.size()) {
      ++at;
    } else {
      fields[at].push_back(unit);
    }
  }
  const Account kept{u"S-" + fields[0], fields[1], fields[2],
                     static_cast<SidTypeEnum>(text.size() % 10)};
  CacheAccount(kept, kServer);
  if (text.find(u'|') != Text::npos) return;
  Account by_sid{kept.sid_text, {}, {}, {}};
  Account by_name{{}, kept.domain, kept.name, {}};
  for (Account* const account : {&by_sid, &by_name}) {
    Require(FindCachedAccount(*account, kServer));
    Require(account->sid_text == kept.sid_text && account->domain == kept.domain &&
            account->name == kept.name && account->sid_type == kept.sid_type);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  const Text text(data, data + size);
  ReadForeign(text);
  KeepAndFind(text);
  world.simulated.journal().Clear();
  return 0;
}
