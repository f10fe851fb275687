#include "model/ManifestWriter.h"

#include "root/ObjectModel.h"

namespace veldmark {
namespace {

std::string Braced(const Identity& identity) { return "{" + identity.ToString() + "}"; }

std::string Attribute(TextView text) {
  std::string escaped;
  for (const char c : ToUtf8(text)) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace

std::string ManifestText() {
  const std::string version =
      std::to_string(kModelMajorVersion) + "." + std::to_string(kModelMinorVersion);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<!-- Generated from the member tables of the exported classes; `ninja renew_model` renews "
      "it. "
      "-->\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      "  <assemblyIdentity type=\"win32\" name=\"Veldmark2\" version=\"" +
      version +
      ".0.0\"/>\n"
      "  <file name=\"Veldmark2.dll\">\n"
      "    <typelib tlbid=\"" +
      Braced(LibraryIdentity()) + "\" version=\"" + version + "\" helpdir=\"\"/>\n";
  for (const Interface* table : ObjectModel()) {
    text += "    <comClass clsid=\"" + Braced(table->ClassIdentity()) + "\" progid=\"" +
            ToUtf8(table->ProgramIdentity()) + "\" threadingModel=\"Apartment\"\n              " +
            "tlbid=\"" + Braced(LibraryIdentity()) + "\" description=\"" + Attribute(table->help) +
            "\"/>\n";
  }
  return text + "  </file>\n</assembly>\n";
}

}  // namespace veldmark
