#include "apartment/DebugLog.h"

#include "apartment/Apartment.h"
#include "apartment/Conversions.h"
#include "apartment/RuntimeFile.h"

namespace veldmark {
namespace {

constexpr TextView kLogName = u"\\VK2_DEBUG.LOG";

}  // namespace

void DebugLog(TextView text) {
  Apartment& apartment = Apartment::Current();
  if (!apartment.debug) return;
  const Platform& platform = apartment.platform;
  const std::vector<std::uint8_t> line = StringToAnsiBuffer(Text(text) + u"\r\n");
  const Text path = StripTrailingBackslash(platform.system.ModuleFolder()).append(kLogName);
  RuntimeFile(platform.files, path, RuntimeFile::Mode::kAppend).Write(line);
}

}  // namespace veldmark
