#include "security/PermissionText.h"

#include <algorithm>
#include <span>

#include "security/AccessRights.h"

namespace veldmark {
namespace {

constexpr TextView kFullControl = u"Full Control";
constexpr TextView kPrinterClass = u"CPrinter";

constexpr std::int32_t kReadControl = 0x20000;
constexpr std::int32_t kPrintRights = 0x20008;
constexpr std::int32_t kPrinterAllRights = 0xF000C;
constexpr std::int32_t kManageDocumentsRights = 0x10;

constexpr std::uint8_t kInheritedFlag = 16;
constexpr std::uint8_t kNoPropagateFlag = 4;

constexpr bool Has(std::uint8_t flags, std::uint8_t bits) { return (flags | bits) == flags; }

/// The rights behind a letter, and those which, had in part before any letter is, make the whole
/// special.
struct LetterRule {
  char16_t letter;
  std::int32_t rights;
  std::int32_t strays;
};

constexpr LetterRule kLetterRules[] = {
    {u'R', 0x120089, 0x20000 | 0x1 | 0x80 | 0x8},
    {u'W', 0x120116, 0x20000 | 0x2 | 0x100 | 0x10 | 0x4 | 0x100000},
    {u'X', 0x1200A0, 0x20000 | 0x80 | 0x20 | 0x100000},
    {u'D', 0x10000, 0},
    {u'P', 0x60000, 0x20000 | 0x40000},
    {u'O', 0x80000, 0},
};

Text FileLetters(std::int32_t mask) {
  constexpr TextView kSpecial = u"Special";
  if (HasRights(mask, kFileAllAccess)) return Text(kFullControl);
  Text letters;
  for (const LetterRule& rule : kLetterRules) {
    if (HasRights(mask, rule.rights)) letters += rule.letter;
    if (letters.empty() && (mask & rule.strays) != 0) return Text(kSpecial);
  }
  return letters.empty() ? Text(kSpecial) : letters;
}

struct Verdict {
  std::int32_t rights;
  TextView text;
};

/// The text of the first verdict whose rights the mask has.
Text FirstVerdict(std::int32_t mask, std::initializer_list<Verdict> verdicts,
                  TextView otherwise = {}) {
  for (const Verdict& verdict : verdicts) {
    if (HasRights(mask, verdict.rights)) return Text(verdict.text);
  }
  return Text(otherwise);
}

struct Code {
  TextView text;
  std::int32_t rights;
};

constexpr Code kFolderCodes[] = {{u"Lf", 0x1},  {u"Ra", 0x80}, {u"Rx", 0x8},
                                 {u"Cs", 0x4},  {u"Cf", 0x2},  {u"Wa", 0x100},
                                 {u"Wx", 0x10}, {u"Tf", 0x20}, {u"Ds", 0x40}};
constexpr Code kRegistryKeyCodes[] = {{u"Rd", 0x20019}, {u"Wd", 0x20006}, {u"Ex", 0x20019},
                                      {u"Qv", 0x1},     {u"Sv", 0x2},     {u"Cs", 0x4},
                                      {u"Es", 0x8},     {u"No", 0x10},    {u"Cl", 0x20}};
constexpr Code kServiceCodes[] = {{u"Qc", 0x1},  {u"Cc", 0x2},  {u"Qs", 0x4},
                                  {u"Ed", 0x8},  {u"Sa", 0x10}, {u"So", 0x20},
                                  {u"Pc", 0x40}, {u"In", 0x80}, {u"Ud", 0x100}};
constexpr Code kPrinterCodes[] = {
    {u"Ad", 0x4}, {u"Pr", 0x8}, {u"Es", 0x2}, {u"As", 0x1}, {u"Aj", 0x10}};
constexpr Code kFileCodes[] = {{u"Rd", 0x1}, {u"Ra", 0x80},  {u"Rx", 0x8},  {u"Wd", 0x2},
                               {u"Ad", 0x4}, {u"Wa", 0x100}, {u"Wx", 0x10}, {u"Ex", 0x20}};
constexpr Code kCommonCodes[] = {
    {u"Rp", 0x20000}, {u"Cp", 0x40000}, {u"De", 0x10000}, {u"To", 0x80000}};

std::span<const Code> CodesOf(TextView object_type) {
  if (object_type == u"CFolder") return kFolderCodes;
  if (object_type == u"CRegKey") return kRegistryKeyCodes;
  if (object_type == u"CService") return kServiceCodes;
  if (object_type == kPrinterClass) return kPrinterCodes;
  return kFileCodes;
}

void AppendCodes(Text& text, std::int32_t mask, std::span<const Code> codes) {
  for (const Code& code : codes) {
    if (HasRights(mask, code.rights)) text += code.text;
  }
}

struct Scope {
  std::uint8_t flags;
  TextView text;
};

Text FirstScope(std::uint8_t ace_flags, std::initializer_list<Scope> scopes, TextView otherwise) {
  const auto flags = static_cast<std::uint8_t>(ace_flags & ~(kInheritedFlag | kNoPropagateFlag));
  for (const Scope& scope : scopes) {
    if (Has(flags, scope.flags)) return Text(scope.text);
  }
  return Text(otherwise);
}

}  // namespace

Text GetSimplifiedPermString(std::int32_t access_mask, TextView object_type) {
  if (access_mask == 0) return {};
  const std::int32_t mask = MapGenericMask(access_mask, MappingOf(object_type));
  if (object_type == u"CFile" || object_type == u"CFolder") return FileLetters(mask);
  if (object_type == kPrinterClass) {
    return FirstVerdict(mask, {{kPrinterAllRights, kFullControl}, {kPrintRights, u"Print"}});
  }
  if (object_type == u"CShare") {
    return FirstVerdict(
        mask, {{kFileAllAccess, kFullControl}, {0x1301BF, u"Change"}, {0x1200A9, u"Read"}});
  }
  if (object_type == u"CService") return FirstVerdict(mask, {{0xF01FF, kFullControl}}, u"Special");
  if (object_type == u"CRegKey") {
    return FirstVerdict(mask, {{0xF003F, kFullControl}, {0x20019, u"Read"}}, u"Special");
  }
  return {};
}

Text GetSimplifiedPrinterPermString(std::int32_t access_mask, std::uint8_t ace_flags) {
  if (access_mask == 0) return {};
  const std::int32_t mask = MapGenericMask(access_mask, MappingOf(kPrinterClass));
  constexpr Verdict kPrint = {kPrintRights, u"Print"};
  constexpr Verdict kRead = {kReadControl, u"Read"};
  if (Has(ace_flags, 11)) {
    return FirstVerdict(mask, {{kPrinterAllRights, kFullControl}, kPrint, kRead});
  }
  if (Has(ace_flags, 10)) {
    return FirstVerdict(mask, {{kReadControl, u"Read Permissions"}}, u"Invalid");
  }
  if (Has(ace_flags, 9)) {
    constexpr TextView kManage = u"Manage Documents";
    return FirstVerdict(
        mask, {{kPrinterAllRights, kManage}, {kManageDocumentsRights, kManage}, kPrint, kRead});
  }
  return FirstVerdict(mask, {{kPrinterAllRights, u"Manage Printers"}, kPrint, kRead});
}

Text GetExtendedPermString(std::int32_t access_mask, TextView object_type) {
  Text text;
  if (access_mask == 0) return text;
  const std::int32_t mask = MapGenericMask(access_mask, MappingOf(object_type));
  AppendCodes(text, mask, CodesOf(object_type));
  if (object_type != u"CService") AppendCodes(text, mask, kCommonCodes);
  return text;
}

Text GetExtendedPrinterPermString(std::int32_t access_mask, std::uint8_t ace_flags) {
  constexpr std::uint8_t kObjectInherit = 1;
  Text text;
  if (access_mask == 0) return text;
  const std::int32_t mask = MapGenericMask(access_mask, MappingOf(kPrinterClass));
  const auto append = [&](std::int32_t rights, TextView code) {
    if (HasRights(mask, rights)) text += code;
  };
  append(0x8, u"Pr");
  if (HasRights(mask, 0x4)) {
    text += Has(ace_flags, kObjectInherit) ? u"Md" : u"Mp";
  } else {
    append(kManageDocumentsRights, u"Md");
  }
  append(kReadControl, u"Rp");
  append(0x40000, u"Cp");
  append(0x80000, u"To");
  return text;
}

Text GetInheritanceString(std::uint8_t ace_flags) {
  return FirstScope(ace_flags,
                    {{11, u"Subfolders and files only"},
                     {10, u"Subfolders only"},
                     {9, u"Files only"},
                     {3, u"This folder, subfolders and files"},
                     {2, u"This folder and subfolders"},
                     {1, u"This folder and files"}},
                    u"This folder only");
}

Text GetPrinterInheritanceString(std::uint8_t ace_flags) {
  return FirstScope(
      ace_flags,
      {{11, u"This printer and documents"}, {10, u"This printer only"}, {9, u"Documents only"}},
      u"This printer only");
}

}  // namespace veldmark
