#include "model/IdlWriter.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "root/ObjectModel.h"

namespace veldmark {
namespace {

std::string Quoted(TextView text) {
  std::string quoted = "\"";
  for (const char c : ToUtf8(text)) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string Uuid(const Identity& identity) { return "uuid(" + identity.ToString() + ")"; }

std::string TypeName(const TypeReference& type) {
  switch (type.type) {
    case BoundaryType::kVoid:
      return "void";
    case BoundaryType::kBoolean:
      return "VARIANT_BOOL";
    case BoundaryType::kByte:
      return "unsigned char";
    case BoundaryType::kInteger:
      return "short";
    case BoundaryType::kLong:
      return "long";
    case BoundaryType::kLongLong:
      return "hyper";
    case BoundaryType::kDouble:
      return "double";
    case BoundaryType::kCurrency:
      return "CURRENCY";
    case BoundaryType::kDate:
      return "DATE";
    case BoundaryType::kText:
      return "BSTR";
    case BoundaryType::kVariant:
      return "VARIANT";
    case BoundaryType::kClass:
      return ToUtf8(type.class_table().InterfaceName()) + "*";
    case BoundaryType::kAnyObject:
      return "IDispatch*";
    case BoundaryType::kEnumerator:
      return "IUnknown*";
    case BoundaryType::kEnumeration:
      return ToUtf8(type.enumeration_table().name);
    case BoundaryType::kByteArray:
      return "SAFEARRAY(unsigned char)";
    case BoundaryType::kLongArray:
      return "SAFEARRAY(long)";
    case BoundaryType::kTextArray:
      return "SAFEARRAY(BSTR)";
  }
  throw std::logic_error("a type without a name");
}

/// What goes into `defaultvalue()`; empty for a default that only a missing argument stands for.
std::string DefaultValue(const Variant& value) {
  switch (value.Type()) {
    case VariantType::kEmpty:
    case VariantType::kStatus:
      return {};
    case VariantType::kBoolean:
      return *value.If<bool>() ? "-1" : "0";
    case VariantType::kByte:
      return std::to_string(*value.If<std::uint8_t>());
    case VariantType::kInteger:
      return std::to_string(*value.If<std::int16_t>());
    case VariantType::kLong:
      return std::to_string(*value.If<std::int32_t>());
    case VariantType::kText:
      return Quoted(*value.If<Text>());
    case VariantType::kObject:
      return "0";
    default:
      throw std::logic_error("a default value that interface definitions can't state");
  }
}

std::string ParameterList(const std::vector<Parameter>& parameters, const std::string& result) {
  std::string list;
  for (const Parameter& parameter : parameters) {
    if (!list.empty()) list += ", ";
    list += parameter.type.by_reference ? "[in, out" : "[in";
    if (parameter.default_value) {
      list += ", optional";
      const std::string value = DefaultValue(*parameter.default_value);
      if (!value.empty()) list += ", defaultvalue(" + value + ")";
    }
    list += "] " + TypeName(parameter.type) + (parameter.type.by_reference ? "* " : " ") +
            ToUtf8(parameter.name);
  }
  if (!result.empty()) list += (list.empty() ? "" : ", ") + result;
  return list.empty() ? "void" : list;
}

std::string KindAttribute(const Member& member) {
  switch (member.kind) {
    case MemberKind::kMethod:
      return {};
    case MemberKind::kGet:
      return "propget, ";
    case MemberKind::kPut:
      break;
  }
  // Early-bound clients assign an object by `Set`, which asks for this kind of put.
  const BoundaryType type = member.parameters.back().type.type;
  const bool object = type == BoundaryType::kClass || type == BoundaryType::kAnyObject;
  return object ? "propputref, " : "propput, ";
}

std::string MemberText(const Member& member) {
  const std::string result = member.result.type == BoundaryType::kVoid
                                 ? std::string()
                                 : "[out, retval] " + TypeName(member.result) + "* Result";
  return "    [id(" + std::to_string(member.id) + "), " + KindAttribute(member) +
         (member.hidden ? "hidden, " : "") + "helpstring(" + Quoted(member.help) +
         ")]\n    HRESULT " + ToUtf8(member.name) + "(" + ParameterList(member.parameters, result) +
         ");\n";
}

/// The compiler reads no decimal number below -2147483647.
std::string Number(std::int32_t value) {
  return value == std::numeric_limits<std::int32_t>::min() ? "0x80000000" : std::to_string(value);
}

std::string EnumerationText(const Enumeration& table) {
  std::string text = "  typedef [" + Uuid(table.EnumerationIdentity()) + ", helpstring(" +
                     Quoted(table.help) + ")]\n  enum " + ToUtf8(table.name) + " {\n";
  for (std::size_t i = 0; i < table.values.size(); ++i) {
    const Enumeration::Value& value = table.values[i];
    // The compiler takes no help string here.
    text += "    " + ToUtf8(value.name) + " = " + Number(value.value) +
            (i + 1 < table.values.size() ? "," : "") + "  // " + ToUtf8(value.help) + "\n";
  }
  return text + "  } " + ToUtf8(table.name) + ";\n";
}

std::string HeaderLine(const std::string& line) {
  return "  cpp_quote(" + Quoted(FromUtf8(line)) + ")\n";
}

/// All enumerations, arranged for the header that C++ clients make of the definitions: some values
/// bear names that the platform's headers give to macros or to values of their own.
std::string EnumerationsText() {
  std::string before;
  std::string after;
  std::string names;
  std::string text;
  for (const Enumeration* table : Enumerations()) {
    for (const Enumeration::Value& value : table->values) {
      const std::string name = ToUtf8(value.name);
      if (std::ranges::any_of(name, [](char c) { return c >= 'a' && c <= 'z'; })) continue;
      before += HeaderLine("#pragma push_macro(\"" + name + "\")") + HeaderLine("#undef " + name);
      after += HeaderLine("#pragma pop_macro(\"" + name + "\")");
    }
    names += HeaderLine("using Veldmark2::" + ToUtf8(table->name) + ";");
    text += EnumerationText(*table) + "\n";
  }
  const auto for_cpp = [](const std::string& lines) {
    return HeaderLine("#ifdef __cplusplus") + lines + HeaderLine("#endif");
  };
  return before + for_cpp(HeaderLine("namespace Veldmark2 {")) + "\n" + text +
         for_cpp(HeaderLine("}") + names) + after;
}

std::string InterfaceText(const Interface& table) {
  std::string text = "  [object, " + Uuid(table.InterfaceIdentity()) +
                     ", dual, oleautomation, nonextensible, hidden,\n   helpstring(" +
                     Quoted(table.help) + ")]\n  interface " + ToUtf8(table.InterfaceName()) +
                     " : IDispatch {\n";
  for (const Member& member : table.members) text += MemberText(member);
  return text + "  }\n";
}

std::string EventInterfaceText(const EventInterface& table) {
  std::string text = "  [" + Uuid(table.InterfaceIdentity()) + ", hidden, helpstring(" +
                     Quoted(table.help) + ")]\n  dispinterface " + ToUtf8(table.name) +
                     " {\n    properties:\n    methods:\n";
  for (const Event& event : table.events) {
    text += "    [id(" + std::to_string(event.id) + "), helpstring(" + Quoted(event.help) +
            ")]\n    void " + ToUtf8(event.name) + "(" + ParameterList(event.parameters, {}) +
            ");\n";
  }
  return text + "  }\n";
}

std::string ClassText(const Interface& table) {
  std::string text = "  [" + Uuid(table.ClassIdentity()) + ", helpstring(" + Quoted(table.help) +
                     ")]\n  coclass " + ToUtf8(table.name) + " {\n    [default] interface " +
                     ToUtf8(table.InterfaceName()) + ";\n";
  if (table.events) {
    text += "    [default, source] dispinterface " + ToUtf8(table.events->name) + ";\n";
  }
  return text + "  }\n";
}

}  // namespace

std::string IdlText() {
  std::string text =
      "// Generated from the member tables of the exported classes; `ninja renew_model` renews "
      "it.\n"
      "\n"
      "import \"oaidl.idl\";\n"
      "import \"ocidl.idl\";\n"
      "\n"
      "[" +
      Uuid(LibraryIdentity()) + ", version(" + std::to_string(kModelMajorVersion) + "." +
      std::to_string(kModelMinorVersion) +
      "),\n helpstring(\"Veldmark2 administration library\")]\n"
      "library Veldmark2 {\n"
      "  importlib(\"stdole2.tlb\");\n";

  for (const Interface* table : ObjectModel()) {
    text += "\n  interface " + ToUtf8(table->InterfaceName()) + ";";
  }
  text += "\n";
  if (!Enumerations().empty()) text += "\n" + EnumerationsText();
  for (const Interface* table : ObjectModel()) text += "\n" + InterfaceText(*table);
  for (const EventInterface* table : EventInterfaces()) text += "\n" + EventInterfaceText(*table);
  for (const Interface* table : ObjectModel()) text += "\n" + ClassText(*table);
  return text + "}\n";
}

}  // namespace veldmark
