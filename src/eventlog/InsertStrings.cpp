#include "eventlog/InsertStrings.h"

#include <algorithm>

#include "accounts/AccountNames.h"
#include "apartment/Apartment.h"
#include "apartment/CSupport.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/LateBound.h"
#include "security/CSid.h"

namespace veldmark {
namespace {

constexpr TextView kReferenceStart = u"%{";
constexpr TextView kSidStart = u"S-";
constexpr TextView kHexStart = u"&H";
constexpr const char16_t* kGuidResolver = u"MarlgateCOM.CQMResolveGUIDs";

bool IsGuid(TextView token) {
  for (;;) {
    const std::size_t end = token.find(u'-');
    if (!IsHexText(u"&h" + Text(token.substr(0, end)))) return false;
    if (end == TextView::npos) return true;
    token.remove_prefix(end + 1);
  }
}

Text AccountOf(const Text& sid_text) {
  const Ref<CSid> sid = Engine().GetSidFromText(sid_text, Text());
  const Text name = sid->AccountDisplayName();
  return sid->AccountUnknown() || name == kAccountUnknown ? sid->SidText() : name;
}

/// The name of a directory object, told by a component that a computer may have; empty for one that
/// isn't known.
Text NameOfGuid(TextView token, TextView server) {
  Apartment& apartment = Apartment::Current();
  if (!apartment.guid_resolver) {
    Ref<Object> resolver = apartment.platform.system.CreateObject(kGuidResolver);
    if (!resolver) Raise(runtime_error::kCannotCreateObject);
    apartment.guid_resolver = std::move(resolver);
  }
  Text asked_server(server);
  Text name;
  std::int32_t ignored = 0;
  const Ref<Object> resolver = apartment.guid_resolver;
  CallMethod(*resolver, u"ResolveGUID",
             {Variant::ByReference(asked_server), Variant(u"{" + Text(token) + u"}"),
              Variant::ByReference(name), Variant::ByReference(ignored)});
  return name;
}

Text ResolveReference(TextView token, TextView server) {
  Text name;
  if (token.starts_with(kSidStart)) return AccountOf(Text(token));
  if (token.size() >= 2 && IsGuid(token)) name = NameOfGuid(token, server);
  return name.empty() ? Text(kReferenceStart).append(token).append(u"}") : name;
}

}  // namespace

bool HasReference(TextView text) { return text.find(kReferenceStart) != TextView::npos; }

Text ResolveInsertString(TextView text, TextView server) {
  return ReRaising([&] {
    Text result;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t reference = std::min(text.find(kReferenceStart, start), text.size());
      result += text.substr(start, reference - start);
      if (reference == text.size()) break;
      const std::size_t token = reference + kReferenceStart.size();
      const std::size_t end = std::min(text.find(u'}', token), text.size());
      result += ResolveReference(text.substr(token, end - token), server);
      start = end + 1;
    }
    return result;
  });
}

bool IsHexText(TextView text) {
  const Text upper = ToUpper(text);
  TextView digits = upper;
  if (digits.size() > kHexStart.size() && digits.starts_with(kHexStart)) {
    digits.remove_prefix(kHexStart.size());
  }
  return digits.find_first_not_of(u"ABCDEF0123456789") == TextView::npos;
}

}  // namespace veldmark
