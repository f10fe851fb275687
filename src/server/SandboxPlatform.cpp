#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "automation/Error.h"
#include "platform/simulated/estate_file/EstateFile.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "server/ModulePath.h"
#include "server/ServerPlatform.h"

namespace veldmark {
namespace {

constexpr std::int32_t kFileNotFound = 53;
constexpr std::int32_t kInvalidFileFormat = 321;

/// The file that describes the estate: the one that the environment names, or the one beside this
/// module.
std::filesystem::path EstateFile() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const auto length = GetEnvironmentVariableW(L"VELDMARK_ESTATE", path.data(),
                                                static_cast<unsigned long>(path.size()));
    if (length == 0) return std::filesystem::path(ModulePath()).replace_filename(L"estate.json");
    const bool fits = length < path.size();
    path.resize(length);
    if (fits) return path;
  }
}

simulated::Estate LoadEstate() {
  const std::filesystem::path path = EstateFile();
  const Text name = path.u16string();
  std::ifstream file(path, std::ios::binary);
  if (!file) Raise(kFileNotFound, {}, u"There is no estate file " + name);
  const std::string json{std::istreambuf_iterator<char>(file), {}};
  try {
    return simulated::ReadEstate(json);
  } catch (const simulated::EstateFileError& error) {
    Raise(kInvalidFileFormat, {}, name + u": " + FromUtf8(error.what()));
  }
}

struct World {
  simulated::SimulatedPlatform simulated{LoadEstate()};
  Platform platform = simulated.platform();
};

}  // namespace

Platform& ServerPlatform() {
  // An estate serves one thread at a time, so each thread has one of its own. It outlasts the
  // thread's apartment, which ends before anything thread-local does.
  thread_local std::unique_ptr<World> world;
  if (!world) world = std::make_unique<World>();
  return world->platform;
}

}  // namespace veldmark
