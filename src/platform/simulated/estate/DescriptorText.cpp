#include "platform/simulated/estate/DescriptorText.h"

#include <array>
#include <stdexcept>

#include "automation/CaseMapping.h"
#include "platform/operations/ErrorCodes.h"

namespace veldmark::simulated {
namespace {

constexpr std::size_t kMaxListSize = 0xFFFF;

struct Word {
  TextView text;
  DWORD value;
};

constexpr Word kAceTypes[] = {
    {u"A", kAceAllowed},      {u"D", kAceDenied},         {u"AU", kAceAudit},
    {u"AL", kAceAlarm},       {u"OA", kAceAllowedObject}, {u"OD", kAceDeniedObject},
    {u"OU", kAceAuditObject}, {u"OL", kAceAlarmObject},   {u"ML", kAceMandatoryLabel}};

constexpr Word kAceFlags[] = {{u"OI", 0x01}, {u"CI", 0x02}, {u"NP", 0x04}, {u"IO", 0x08},
                              {u"ID", 0x10}, {u"CR", 0x20}, {u"SA", 0x40}, {u"FA", 0x80}};

constexpr Word kRights[] = {
    {u"GA", 0x10000000}, {u"GR", 0x80000000}, {u"GW", 0x40000000}, {u"GX", 0x20000000},
    {u"RC", 0x20000},    {u"SD", 0x10000},    {u"WD", 0x40000},    {u"WO", 0x80000},
    {u"CC", 0x1},        {u"DC", 0x2},        {u"LC", 0x4},        {u"SW", 0x8},
    {u"RP", 0x10},       {u"WP", 0x20},       {u"DT", 0x40},       {u"LO", 0x80},
    {u"CR", 0x100},      {u"FA", 0x1F01FF},   {u"FR", 0x120089},   {u"FW", 0x120116},
    {u"FX", 0x1200A0},   {u"KA", 0xF003F},    {u"KR", 0x20019},    {u"KW", 0x20006},
    {u"KX", 0x20019},    {u"NW", 0x1},        {u"NR", 0x2},        {u"NX", 0x4}};

constexpr Word kListFlags[] = {
    {u"P", kDaclProtected}, {u"AR", kDaclAutoInheritRequest}, {u"AI", kDaclAutoInherited}};

constexpr std::pair<TextView, TextView> kSids[] = {
    {u"AA", u"S-1-5-32-579"}, {u"AC", u"S-1-15-2-1"},   {u"AN", u"S-1-5-7"},
    {u"AO", u"S-1-5-32-548"}, {u"AS", u"S-1-18-1"},     {u"AU", u"S-1-5-11"},
    {u"BA", u"S-1-5-32-544"}, {u"BG", u"S-1-5-32-546"}, {u"BO", u"S-1-5-32-551"},
    {u"BU", u"S-1-5-32-545"}, {u"CD", u"S-1-5-32-574"}, {u"CG", u"S-1-3-1"},
    {u"CO", u"S-1-3-0"},      {u"CY", u"S-1-5-32-569"}, {u"ED", u"S-1-5-9"},
    {u"ER", u"S-1-5-32-573"}, {u"ES", u"S-1-5-32-576"}, {u"HA", u"S-1-5-32-578"},
    {u"HI", u"S-1-16-12288"}, {u"HO", u"S-1-5-32-584"}, {u"IS", u"S-1-5-32-568"},
    {u"IU", u"S-1-5-4"},      {u"LS", u"S-1-5-19"},     {u"LU", u"S-1-5-32-559"},
    {u"LW", u"S-1-16-4096"},  {u"ME", u"S-1-16-8192"},  {u"MP", u"S-1-16-8448"},
    {u"MS", u"S-1-5-32-577"}, {u"MU", u"S-1-5-32-558"}, {u"NO", u"S-1-5-32-556"},
    {u"NS", u"S-1-5-20"},     {u"NU", u"S-1-5-2"},      {u"OW", u"S-1-3-4"},
    {u"PO", u"S-1-5-32-550"}, {u"PS", u"S-1-5-10"},     {u"PU", u"S-1-5-32-547"},
    {u"RA", u"S-1-5-32-575"}, {u"RC", u"S-1-5-12"},     {u"RD", u"S-1-5-32-555"},
    {u"RE", u"S-1-5-32-552"}, {u"RM", u"S-1-5-32-580"}, {u"RU", u"S-1-5-32-554"},
    {u"SH", u"S-1-5-32-585"}, {u"SI", u"S-1-16-16384"}, {u"SO", u"S-1-5-32-549"},
    {u"SS", u"S-1-18-2"},     {u"SU", u"S-1-5-6"},      {u"UD", u"S-1-5-84-0-0-0-0-0"},
    {u"SY", u"S-1-5-18"},     {u"WD", u"S-1-1-0"},      {u"WR", u"S-1-5-33"}};

// Accounts of the domain that the descriptor belongs to.
constexpr Word kDomainAccounts[] = {
    {u"LA", 500}, {u"LG", 501}, {u"RO", 498}, {u"DA", 512}, {u"DU", 513}, {u"DG", 514},
    {u"DC", 515}, {u"DD", 516}, {u"CA", 517}, {u"SA", 518}, {u"EA", 519}, {u"PA", 520},
    {u"CN", 522}, {u"AP", 525}, {u"KA", 526}, {u"EK", 527}, {u"RS", 553}};

TextView Trim(TextView text) {
  while (text.starts_with(u' ')) text.remove_prefix(1);
  while (text.ends_with(u' ')) text.remove_suffix(1);
  return text;
}

// The value of the word that the text begins with, which is taken off; the longest wins.
template <std::size_t kCount>
std::optional<DWORD> TakeWord(TextView& text, const Word (&words)[kCount]) {
  const Word* best = nullptr;
  for (const Word& word : words) {
    const bool is_longer = best == nullptr || word.text.size() > best->text.size();
    if (text.starts_with(word.text) && is_longer) best = &word;
  }
  if (best == nullptr) return std::nullopt;
  text.remove_prefix(best->text.size());
  return best->value;
}

// The values of all words that the text consists of, together.
template <std::size_t kCount>
std::optional<DWORD> AllWords(TextView text, const Word (&words)[kCount]) {
  DWORD bits = 0;
  while (!text.empty()) {
    const auto value = TakeWord(text, words);
    if (!value) return std::nullopt;
    bits |= *value;
  }
  return bits;
}

std::optional<unsigned> DigitOf(char16_t unit, unsigned base) {
  unsigned digit = base;
  if (unit >= u'0' && unit <= u'9') digit = unit - u'0';
  if (unit >= u'A' && unit <= u'F') digit = unit - u'A' + 10u;
  return digit < base ? std::optional(digit) : std::nullopt;
}

// The digits of a number that has nothing else in it.
std::optional<std::uint64_t> NumberOf(TextView text, unsigned base) {
  if (text.empty() || text.size() > 16) return std::nullopt;
  std::uint64_t number = 0;
  for (const char16_t unit : text) {
    const auto digit = DigitOf(unit, base);
    if (!digit) return std::nullopt;
    number = number * base + *digit;
  }
  return number;
}

std::optional<DWORD> RightsOf(TextView text) {
  if (text.empty() || text[0] < u'0' || text[0] > u'9') return AllWords(text, kRights);
  std::optional<std::uint64_t> number;
  if (text.starts_with(u"0X")) {
    number = NumberOf(text.substr(2), 16);
  } else {
    number = NumberOf(text, text.size() > 1 && text[0] == u'0' ? 8 : 10);
  }
  if (!number || *number > 0xFFFFFFFF) return std::nullopt;
  return static_cast<DWORD>(*number);
}

// "01234567-89AB-CDEF-0123-456789ABCDEF".
std::optional<GUID> GuidOf(TextView text) {
  static constexpr std::array<std::size_t, 5> kGroups = {8, 4, 4, 4, 12};
  std::array<std::uint64_t, 5> numbers{};
  if (text.size() != 36) return std::nullopt;
  for (std::size_t group = 0, start = 0; group < kGroups.size(); ++group) {
    const auto number = NumberOf(text.substr(start, kGroups[group]), 16);
    start += kGroups[group] + 1;
    if (!number || (start < text.size() && text[start - 1] != u'-')) return std::nullopt;
    numbers[group] = *number;
  }
  GUID guid{.Data1 = static_cast<DWORD>(numbers[0]),
            .Data2 = static_cast<WORD>(numbers[1]),
            .Data3 = static_cast<WORD>(numbers[2]),
            .Data4 = {static_cast<BYTE>(numbers[3] >> 8), static_cast<BYTE>(numbers[3])}};
  for (int index = 0; index < 6; ++index) {
    guid.Data4[2 + index] = static_cast<BYTE>(numbers[4] >> (40 - 8 * index));
  }
  return guid;
}

class Parser {
 public:
  Parser(TextView text, const Sid& domain) : text_(ToUpper(text)), rest_(text_), domain_(domain) {}

  DWORD error() const { return error_; }

  bool Parse(SecurityDescriptor& descriptor) {
    Text seen;
    for (rest_ = Trim(rest_); !rest_.empty(); rest_ = Trim(rest_)) {
      const char16_t part = rest_[0];
      const bool is_part = TextView(u"OGDS").find(part) != TextView::npos;
      if (rest_.size() < 2 || rest_[1] != u':' || !is_part || seen.find(part) != Text::npos) {
        return Refuse(kErrorInvalidParameter);
      }
      seen += part;
      rest_ = Trim(rest_.substr(2));
      const bool good = part == u'O'   ? TakeSid(descriptor.owner)
                        : part == u'G' ? TakeSid(descriptor.group)
                        : part == u'D'
                            ? TakeList(descriptor.dacl, descriptor.control, kDaclPresent)
                            : TakeList(descriptor.sacl, descriptor.control, kSaclPresent);
      if (!good) return false;
    }
    return true;
  }

 private:
  bool Refuse(DWORD code) {
    error_ = code;
    return false;
  }

  bool SidOf(TextView text, Sid& sid) {
    const auto refused = [this] { return Refuse(kErrorInvalidSid); };
    if (text.size() != 2) {
      const auto parsed = Sid::FromText(text);
      if (!parsed) return refused();
      sid = *parsed;
      return true;
    }
    for (const auto& [alias, named] : kSids) {
      if (alias == text) return SidOf(named, sid);
    }
    const auto account = TakeWord(text, kDomainAccounts);
    if (!account) return refused();
    sid = domain_.Account(*account);
    return true;
  }

  // A SID ends where the next part begins, which is a letter before a colon.
  bool TakeSid(Sid& sid) {
    const std::size_t colon = rest_.find(u':');
    const std::size_t end = colon == TextView::npos ? rest_.size() : colon == 0 ? 0 : colon - 1;
    const TextView text = Trim(rest_.substr(0, end));
    rest_.remove_prefix(end);
    return SidOf(text, sid);
  }

  bool TakeList(std::optional<AccessList>& list, WORD& control, WORD present) {
    control |= present;
    if (rest_.starts_with(u"NO_ACCESS_CONTROL")) {
      rest_.remove_prefix(17);
      return true;
    }
    // What is said of the system list lies one bit further on.
    const int shift = present == kSaclPresent ? 1 : 0;
    for (auto flag = TakeWord(rest_, kListFlags); flag; flag = TakeWord(rest_, kListFlags)) {
      control = static_cast<WORD>(control | *flag << shift);
    }
    list.emplace();
    std::size_t size = 0;
    for (rest_ = Trim(rest_); rest_.starts_with(u'('); rest_ = Trim(rest_)) {
      const std::size_t end = rest_.find(u')');
      if (end == TextView::npos) return Refuse(kErrorInvalidAcl);
      if (!TakeAce(rest_.substr(1, end - 1), list->emplace_back())) return false;
      rest_.remove_prefix(end + 1);
      size += list->back().sid.bytes().size() + 44;
      if (size > kMaxListSize) return Refuse(kErrorInvalidAcl);
    }
    return true;
  }

  bool TakeAce(TextView text, Ace& ace) {
    std::array<TextView, 6> fields;
    for (std::size_t index = 0; index < fields.size(); ++index) {
      const std::size_t end = text.find(u';');
      const bool is_last = index + 1 == fields.size();
      if ((end == TextView::npos) != is_last) return Refuse(kErrorInvalidAcl);
      fields[index] = Trim(text.substr(0, end));
      text.remove_prefix(is_last ? text.size() : end + 1);
    }
    TextView type_text = fields[0];
    const auto type = TakeWord(type_text, kAceTypes);
    const auto flags = AllWords(fields[1], kAceFlags);
    const auto mask = RightsOf(fields[2]);
    if (!type || !type_text.empty() || !flags || !mask) return Refuse(kErrorInvalidAcl);
    ace.type = static_cast<BYTE>(*type);
    ace.flags = static_cast<BYTE>(*flags);
    ace.mask = *mask;
    for (const std::size_t index : {3, 4}) {
      if (fields[index].empty()) continue;
      const auto guid = GuidOf(fields[index]);
      if (!guid || !ace.IsObject()) return Refuse(kErrorInvalidAcl);
      (index == 3 ? ace.object_type : ace.inherited_object_type) = *guid;
    }
    return SidOf(fields[5], ace.sid) || Refuse(kErrorInvalidAcl);
  }

  Text text_;
  TextView rest_;
  const Sid& domain_;
  DWORD error_ = 0;
};

}  // namespace

std::optional<SecurityDescriptor> ParseDescriptorText(TextView text, const Sid& domain,
                                                      DWORD& error) {
  SecurityDescriptor descriptor;
  Parser parser(text, domain);
  const bool good = parser.Parse(descriptor);
  error = parser.error();
  return good ? std::optional(std::move(descriptor)) : std::nullopt;
}

SecurityDescriptor DescriptorOf(TextView text, const Sid& domain) {
  DWORD error = 0;
  auto descriptor = ParseDescriptorText(text, domain, error);
  if (!descriptor) throw std::invalid_argument("is no descriptor: code " + std::to_string(error));
  return std::move(*descriptor);
}

}  // namespace veldmark::simulated
