#include <algorithm>
#include <array>
#include <limits>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"
#include "security/AceFlags.h"
#include "security/CAce.h"
#include "security/CAces.h"
#include "security/CAcl.h"
#include "security/CSecurityDescriptor.h"
#include "security/CSid.h"
#include "security/SDControl.h"

namespace veldmark {
namespace {

constexpr TextView kSidStart = u"S-";
constexpr std::uint8_t kDescriptorRevision = 1;

struct Code {
  TextView code;
  std::uint32_t value;
};

constexpr Code kAceTypes[] = {
    {u"A", ACCESS_ALLOWED_ACE_TYPE},         {u"D", ACCESS_DENIED_ACE_TYPE},
    {u"AU", SYSTEM_AUDIT_ACE_TYPE},          {u"AL", SYSTEM_ALARM_ACE_TYPE},
    {u"OA", ACCESS_ALLOWED_OBJECT_ACE_TYPE}, {u"OD", ACCESS_DENIED_OBJECT_ACE_TYPE},
    {u"OU", SYSTEM_AUDIT_OBJECT_ACE_TYPE},   {u"OL", SYSTEM_ALARM_OBJECT_ACE_TYPE},
};

constexpr Code kAceFlags[] = {
    {u"CI", CONTAINER_INHERIT_ACE}, {u"OI", OBJECT_INHERIT_ACE}, {u"NP", NO_PROPAGATE_INHERIT_ACE},
    {u"IO", INHERIT_ONLY_ACE},      {u"ID", INHERITED_ACE},
};

constexpr Code kRights[] = {
    {u"GA", 0x10000000}, {u"GR", 0x80000000}, {u"GW", 0x40000000}, {u"GX", 0x20000000},
    {u"RC", 0x20000},    {u"SD", 0x10000},    {u"WD", 0x40000},    {u"WO", 0x80000},
    {u"RP", 0x10},       {u"WP", 0x20},       {u"CC", 0x1},        {u"DC", 0x2},
    {u"LC", 0x4},        {u"SW", 0x8},        {u"LO", 0x80},       {u"DT", 0x40},
    {u"CR", 0x100},      {u"FA", 0x1F01FF},   {u"FR", 0x120089},   {u"FW", 0x120116},
    {u"FX", 0x1200A0},   {u"KA", 0xF003F},    {u"KR", 0x20019},    {u"KW", 0x20006},
    {u"KX", 0x20019},
};

/// 0 for an unknown code.
template <std::size_t kCount>
std::uint32_t ValueOf(const Code (&codes)[kCount], TextView code) {
  const auto* const found = std::ranges::find(codes, code, &Code::code);
  return found == std::end(codes) ? 0 : found->value;
}

/// Calls `take` with the value of each pair of characters; an unknown one is 0.
template <std::size_t kCount, class Take>
void ForEachPair(const Code (&codes)[kCount], TextView field, Take&& take) {
  for (std::size_t at = 0; at < field.size(); at += 2) take(ValueOf(codes, field.substr(at, 2)));
}

/// The characters from a position on, as many as there are; none behind the end.
TextView PartOf(TextView text, std::size_t at, std::size_t count = TextView::npos) {
  return at < text.size() ? text.substr(at, count) : TextView();
}

/// Where the next `character` stands at or behind a position. Raises 5 where there is none.
std::size_t Next(TextView text, char16_t character, std::size_t at) {
  const std::size_t found = text.find(character, at);
  if (found == TextView::npos) Raise(runtime_error::kInvalidCall);
  return found;
}

/// The fields of an entry between its parentheses.
class AceFields {
 public:
  explicit AceFields(TextView ace) {
    if (ace.size() < 2) Raise(runtime_error::kInvalidCall);
    TextView rest = ace.substr(1, ace.size() - 2);
    bool is_last = rest.empty();
    while (!is_last && count_ < fields_.size()) {
      const std::size_t end = FindUnit(rest, u';');
      fields_[count_++] = rest.substr(0, end);
      is_last = end == rest.size();
      if (!is_last) rest.remove_prefix(end + 1);
    }
  }

  TextView operator[](std::size_t index) const {
    if (index >= count_) Raise(runtime_error::kSubscriptOutOfRange);
    return fields_[index];
  }

 private:
  std::array<TextView, 6> fields_;  // type, flags, rights, GUIDs, account
  std::size_t count_ = 0;
};

Text Braced(TextView guid) { return guid.empty() ? Text() : u"{" + Text(guid) + u"}"; }

Ref<CAce> ReadAce(CSupport& engine, TextView text, const Text& server, const Text& forest_root) {
  const AceFields fields(text);
  auto ace = Make<CAce>();
  ace->AceType = static_cast<AceTypeEnum>(ValueOf(kAceTypes, fields[0]));
  ForEachPair(kAceFlags, fields[1], [&](std::uint32_t flag) {
    // Added: a code that stands twice runs into the next flag.
    const std::uint32_t sum = ace->AceFlags + flag;
    if (sum > std::numeric_limits<std::uint8_t>::max()) Raise(runtime_error::kOverflow);
    ace->AceFlags = static_cast<std::uint8_t>(sum);
  });
  ForEachPair(kRights, fields[2],
              [&](std::uint32_t right) { ace->AccessMask |= static_cast<std::int32_t>(right); });
  ace->ObjectTypeGUID = Braced(fields[3]);
  ace->InheritedObjectTypeGUID = Braced(fields[4]);
  if (const TextView account = fields[5]; account.starts_with(kSidStart)) {
    ace->SetSid(engine.GetSidFromText(account, Text()));
  } else if (!account.empty()) {
    ace->SetSid(engine.TranslateSid(Text(account), server, forest_root));
  }
  return ace;
}

/// Walks a descriptor string, section after section. An account's alias is asked of the server.
class StringReader {
 public:
  StringReader(CSupport& engine, TextView text, const Text& server, const Text& forest_root)
      : engine_(engine), text_(text), server_(server), forest_root_(forest_root) {}

  Ref<CSecurityDescriptor> Read() {
    descriptor_ = Make<CSecurityDescriptor>();
    std::int16_t control = 0;
    descriptor_->SetHeader(kDescriptorRevision, control);
    // The last character alone is no section.
    while (at_ + 1 < text_.size()) {
      switch (UpperCase(text_[at_])) {
        case u'O':
          ReadOwner();
          break;
        case u'G':
          SkipGroup();
          break;
        case u'D':
          ReadList(control);
          break;
        case u'S':
          return descriptor_;
        default:
          RaisePlatformError(kErrorInvalidParameter);
      }
    }
    return descriptor_;
  }

 private:
  Ref<CSid> ReadAlias() {
    const auto sid = engine_.TranslateSid(Text(PartOf(text_, at_, 2)), server_, Text());
    at_ += 2;
    return sid;
  }

  void ReadOwner() {
    at_ += 2;
    if (PartOf(text_, at_, 2) != kSidStart) {
      descriptor_->SetOwnerSid(ReadAlias());
      return;
    }
    Text sid_text(PartOf(text_, at_));
    // With another section behind it the text loses its "S" and runs into that section's letter,
    // which is no number: a SID can only stand last.
    if (const std::size_t colon = sid_text.find(u':'); colon != Text::npos) {
      sid_text = sid_text.substr(1, colon - 1);
    }
    descriptor_->SetOwnerSid(engine_.GetSidFromText(sid_text, Text()));
    at_ += sid_text.size();
  }

  // The library's descriptors have no group. A SID as text stands in parentheses.
  void SkipGroup() {
    at_ += 2;
    if (PartOf(text_, at_, 2) != u"(S") {
      ReadAlias();
      return;
    }
    const std::size_t end = Next(text_, u')', at_);
    engine_.GetSidFromText(Text(text_.substr(at_ + 1, end - at_ - 1)), Text());
    at_ = end + 1;
  }

  void ReadList(std::int16_t& control) {
    at_ += 2;
    const auto acl = Make<CAcl>();
    const auto aces = Make<CAces>();
    control |= SDC_DACL_PRESENT;
    for (;;) {
      const Text two = ToUpper(PartOf(text_, at_, 2));
      if (two.starts_with(u'A')) {
        if (two != u"AR" && two != u"AI") RaisePlatformError(kErrorInvalidParameter);
        control |= two == u"AR" ? SDC_DACL_AUTO_INHERIT_REQ : SDC_DACL_AUTO_INHERITED;
        at_ += 2;
      } else if (two.starts_with(u'P')) {
        control |= SDC_DACL_PROTECTED;
        acl->IsProtected = true;
        ++at_;
      } else {
        break;
      }
    }
    while (PartOf(text_, at_, 1) == u"(") {
      const std::size_t end = Next(text_, u')', at_) + 1;
      aces->Add(ReadAce(engine_, text_.substr(at_, end - at_), server_, forest_root_).Get());
      at_ = end;
      // What is left of one character is not looked at, here as between sections.
      if (at_ + 1 >= text_.size()) break;
    }
    acl->SetAces(aces);
    descriptor_->SetHeader(kDescriptorRevision, control);
    descriptor_->SetDACL(acl);
  }

  CSupport& engine_;
  TextView text_;
  const Text& server_;
  const Text& forest_root_;
  std::size_t at_ = 0;
  Ref<CSecurityDescriptor> descriptor_;
};

}  // namespace

Ref<CSecurityDescriptor> CSupport::ConvertStringSDToSD(const Text& string_sd,
                                                       const Text& sid_lookup_server,
                                                       const Text& forest_root_dc) {
  return ReRaising(
      [&] { return StringReader(*this, string_sd, sid_lookup_server, forest_root_dc).Read(); });
}

Ref<CAce> CSupport::ConvertStringAceToAce(const Text& ace_string, const Text& sid_lookup_server,
                                          const Text& forest_root_dc) {
  return ReRaising([&] { return ReadAce(*this, ace_string, sid_lookup_server, forest_root_dc); });
}

}  // namespace veldmark
