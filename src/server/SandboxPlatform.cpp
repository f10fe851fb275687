#include <windows.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

#include "automation/Error.h"
#include "platform/simulated/estate_file/EstateFile.h"
#include "platform/simulated/families/SimulatedPlatform.h"
#include "platform/windows/WindowsTimers.h"
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

simulated::Ticks RealTime() {
  using Tick = std::chrono::duration<simulated::Ticks, std::ratio<1, simulated::kTicksPerSecond>>;
  const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<Tick>(since_start).count();
}

simulated::Estate LoadEstate() {
  const std::filesystem::path path = EstateFile();
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    Raise(kFileNotFound, {}, u"There is no estate file " + path.u16string());
  }
  try {
    return simulated::ReadEstateFile(path, &RealTime);
  } catch (const simulated::EstateFileError& error) {
    Raise(kInvalidFileFormat, {}, FromUtf8(error.what()));
  }
}

// The estate's timers fire out of the message loop that the script's host turns, so they are the
// host's, and beat whether or not the estate's clock runs.
struct World {
  World() { simulated.journal().StopKeeping(); }

  WindowsTimers timers;
  simulated::SimulatedPlatform simulated{LoadEstate(), &timers};
  Platform platform = simulated.platform();
};

}  // namespace

Platform& ServerPlatform() {
  // As on a real computer, all threads see the same world.
  static World world;
  return world.platform;
}

}  // namespace veldmark
