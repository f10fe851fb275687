#include <cstdio>
#include <string>
#include <string_view>

#include "model/IdlWriter.h"
#include "model/ManifestWriter.h"
#include "model/ReferenceWriter.h"

int main(int count, char** arguments) {
  const std::string_view wanted = count == 2 ? arguments[1] : "";
  std::string text;
  if (wanted == "--idl") {
    text = veldmark::IdlText();
  } else if (wanted == "--reference") {
    text = veldmark::ReferenceText();
  } else if (wanted == "--manifest") {
    text = veldmark::ManifestText();
  } else {
    std::fputs("usage: generate_model --idl | --reference | --manifest\n", stderr);
    return 2;
  }
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}
