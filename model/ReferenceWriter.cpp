#include "model/ReferenceWriter.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "root/ObjectModel.h"

namespace veldmark {
namespace {

/// A text as Markdown shows it, also within a table.
std::string Escaped(TextView text) {
  std::string escaped;
  for (const char c : ToUtf8(text)) {
    if (std::string_view("\\`*_[]<>|").find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// A link to the section with this heading.
std::string Link(TextView name) {
  return "[" + Escaped(name) + "](#" + ToUtf8(LowerAscii(name)) + ")";
}

std::string TypeName(const TypeReference& type) {
  switch (type.type) {
    case BoundaryType::kVoid:
      return {};
    case BoundaryType::kBoolean:
      return "Boolean";
    case BoundaryType::kByte:
      return "Byte";
    case BoundaryType::kInteger:
      return "Integer";
    case BoundaryType::kLong:
      return "Long";
    case BoundaryType::kLongLong:
      return "LongLong";
    case BoundaryType::kDouble:
      return "Double";
    case BoundaryType::kCurrency:
      return "Currency";
    case BoundaryType::kDate:
      return "Date";
    case BoundaryType::kText:
      return "String";
    case BoundaryType::kVariant:
      return "Variant";
    case BoundaryType::kClass:
      return Link(type.class_table().name);
    case BoundaryType::kAnyObject:
      return "Object";
    case BoundaryType::kEnumerator:
      return "the enumerator behind For Each";
    case BoundaryType::kEnumeration:
      return Link(type.enumeration_table().name);
    case BoundaryType::kByteArray:
      return "Byte()";
    case BoundaryType::kLongArray:
      return "Long()";
    case BoundaryType::kTextArray:
      return "String()";
  }
  return {};
}

std::string DefaultText(const Variant& value) {
  if (const bool* truth = value.If<bool>()) return *truth ? "True" : "False";
  if (const Text* text = value.If<Text>()) return '"' + Escaped(*text) + '"';
  if (const std::int16_t* number = value.If<std::int16_t>()) return std::to_string(*number);
  if (const std::int32_t* number = value.If<std::int32_t>()) return std::to_string(*number);
  if (value.Type() == VariantType::kObject) return "Nothing";
  return {};
}

std::string ParameterList(std::span<const Parameter> parameters) {
  std::string list;
  for (const Parameter& parameter : parameters) {
    if (!list.empty()) list += ", ";
    if (parameter.default_value) list += "Optional ";
    if (parameter.type.by_reference) list += "ByRef ";
    list += Escaped(parameter.name) + " As " + TypeName(parameter.type);
    const std::string value =
        parameter.default_value ? DefaultText(*parameter.default_value) : std::string();
    if (!value.empty()) list += " = " + value;
  }
  return list;
}

std::string Signature(TextView name, std::span<const Parameter> parameters,
                      const TypeReference& result, bool parentheses) {
  std::string text = "**" + Escaped(name) + "**";
  if (parentheses || !parameters.empty()) text += "(" + ParameterList(parameters) + ")";
  if (result.type != BoundaryType::kVoid) text += " As " + TypeName(result);
  return text;
}

std::string Row(const std::string& signature, std::string_view kind, TextView help) {
  return "| " + signature + " | " + std::string(kind) + " | " + Escaped(help) + " |\n";
}

std::string MemberRow(const Interface& table, const Member& member) {
  const auto has = [&](MemberKind kind) {
    return table.Find(member.id, static_cast<std::uint16_t>(kind)) != nullptr;
  };
  switch (member.kind) {
    case MemberKind::kMethod:
      return Row(Signature(member.name, member.parameters, member.result, true), "method",
                 member.help);
    case MemberKind::kGet: {
      std::string kind = has(MemberKind::kPut) ? "property" : "property, read only";
      if (member.id == kDefaultMember) kind += ", default";
      return Row(Signature(member.name, member.parameters, member.result, false), kind,
                 member.help);
    }
    case MemberKind::kPut: {
      if (has(MemberKind::kGet)) return {};
      const std::span<const Parameter> all = member.parameters;
      return Row(Signature(member.name, all.first(all.size() - 1), all.back().type, false),
                 "property, write only", member.help);
    }
  }
  return {};
}

/// What may surprise a caller, each remark once with the names of its members.
std::string Remarks(const Interface& table) {
  std::vector<std::pair<std::string, TextView>> remarks;
  for (const Member& member : table.members) {
    if (member.remark.empty()) continue;
    const std::string name = "**" + Escaped(member.name) + "**";
    const auto known = std::ranges::find(remarks, TextView(member.remark),
                                         [](const auto& remark) { return remark.second; });
    if (known == remarks.end()) {
      remarks.emplace_back(name, member.remark);
    } else {
      known->first += ", " + name;
    }
  }
  std::string text = remarks.empty() ? "" : "\nRemarks:\n\n";
  for (const auto& [names, remark] : remarks) text += "- " + names + ": " + Escaped(remark) + "\n";
  return text;
}

std::string ClassSection(const Interface& table) {
  std::string text = "\n### " + Escaped(table.name) + "\n\n" + Escaped(table.help) + "\n";
  if (!table.members.empty()) text += "\n| Member | Kind | Meaning |\n|---|---|---|\n";
  for (const Member& member : table.members) {
    if (!member.hidden) text += MemberRow(table, member);
  }
  text += Remarks(table);
  if (table.events) {
    text += "\nEvents:\n\n| Event | Meaning |\n|---|---|\n";
    for (const Event& event : table.events->events) {
      text += "| " + Signature(event.name, event.parameters, {}, true) + " | " +
              Escaped(event.help) + " |\n";
    }
  }
  return text;
}

std::string EnumerationSection(const Enumeration& table) {
  std::string text = "\n### " + Escaped(table.name) + "\n\n" + Escaped(table.help) +
                     "\n\n| Name | Value | Meaning |\n|---|---|---|\n";
  for (const Enumeration::Value& value : table.values) {
    text += "| " + Escaped(value.name) + " | " + std::to_string(value.value) + " | " +
            Escaped(value.help) + " |\n";
  }
  return text;
}

}  // namespace

std::string ReferenceText() {
  std::string text =
      "# Reference\n"
      "\n"
      "Every class, event and enumeration of the library, as scripts see them. Each class can be\n"
      "created under `Veldmark2.` and its name; most are handed out by another one, beginning "
      "with\n"
      "what `Veldmark2.SystemRoot` hands out. A collection also serves `For Each`.\n"
      "\n"
      "This page is generated from the member tables of the classes; `ninja renew_model` renews "
      "it.\n"
      "\n"
      "## Errors\n"
      "\n"
      "Most numbers are the platform's (2, 5, 2221), as it reports them; some are the runtime's "
      "(9,\n"
      "13, 91), and a few from -2147221504 (0x80040000) on are the library's own. VBScript reads\n"
      "the number in `Err.Number` as it stands here. Other clients get it as the result code of\n"
      "the failed call:\n"
      "\n"
      "| Number | Result code |\n|---|---|\n"
      "| 1 to 65535 | 0x800A0000 plus the number: 5 is 0x800A0005. In JScript, "
      "`error.number & 0xFFFF` |\n"
      "| above 65535 | 0x80000000 plus the number, in VBScript too |\n"
      "| negative | the number itself |\n"
      "\n"
      "Source and description come with it as error information. A call that doesn't reach the\n"
      "member fails with the platform's own code for that, as 0x80020005 for an argument of the\n"
      "wrong type, 0x80020006 for an unknown name and 0x8002000E for a wrong number of arguments;\n"
      "VBScript reads 13, 438 and 450.\n"
      "\n"
      "## Arguments by reference\n"
      "\n"
      "An argument marked ByRef comes back changed where the client passes a variable. JScript\n"
      "can't: there `GetSubFolders` and `GetFiles` of `CFolder` stand in for `GetFolderContents`.\n"
      "\n"
      "## Classes\n"
      "\n"
      "| Class | Meaning |\n|---|---|\n";
  for (const Interface* table : ObjectModel()) {
    text += "| " + Link(table->name) + " | " + Escaped(table->help) + " |\n";
  }
  for (const Interface* table : ObjectModel()) text += ClassSection(*table);
  if (!Enumerations().empty()) text += "\n## Enumerations\n";
  for (const Enumeration* table : Enumerations()) text += EnumerationSection(*table);
  return text;
}

}  // namespace veldmark
