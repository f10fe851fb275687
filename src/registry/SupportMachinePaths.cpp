#include <vector>

#include "apartment/CSupport.h"
#include "apartment/Conversions.h"
#include "apartment/Errors.h"
#include "automation/CaseMapping.h"
#include "automation/Conversion.h"
#include "network/ServerNames.h"
#include "registry/CRegSettings.h"

namespace veldmark {
namespace {

/// A reference that is known of other computers, and the registry value that it stands for.
struct MachineDirectory {
  TextView reference;
  TextView path;
  TextView value_name;
};

constexpr TextView kSystemSettings = u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
constexpr TextView kProgramSettings = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion";
constexpr MachineDirectory kDirectories[] = {
    {u"%SYSTEMROOT%", kSystemSettings, u"SystemRoot"},
    {u"%PROGRAMFILES%", kProgramSettings, u"ProgramFilesDir"},
    {u"%COMMONFILES%", kProgramSettings, u"CommonFilesDir"}};

Text ExpandHere(const Text& path) {
  // Most texts have nothing to expand.
  if (path.find(u'%') == Text::npos) return TrimAtNul(path);
  System& system = Apartment::Current().platform.system;
  const DWORD length = system.ExpandEnvironmentStringsW(path.c_str(), nullptr, 0);
  std::vector<char16_t> buffer(std::size_t{length} + 1);
  system.ExpandEnvironmentStringsW(path.c_str(), buffer.data(), length);
  buffer.back() = u'\0';
  return TrimAtNul({buffer.data(), buffer.size()});
}

/// What a reference stands for on a computer; empty where it isn't known or can't be asked for.
Text DirectoryOf(TextView reference, const Text& machine) {
  Text directory;
  for (const MachineDirectory& known : kDirectories) {
    if (ToUpper(reference) != known.reference) continue;
    Swallow([&] {
      CRegSettings settings;
      settings.MachineName = machine;
      settings.HKeyRoot = static_cast<std::int32_t>(0x80000002u);
      settings.Path = known.path;
      directory = settings.GetString(Text(), Text(known.value_name), Text());
    });
  }
  return directory;
}

Text ExpandOn(const Text& machine, const Text& path) {
  const std::size_t start = path.find(u'%');
  if (start == Text::npos) return path;
  const std::size_t end = path.find(u'%', start + 1);
  if (end == Text::npos) return path;
  if (end == start + 1) return {};
  const Text reference = path.substr(start, end - start + 1);
  const Ref<Collection>& cache = Apartment::Current().machine_paths;
  const Text key = machine + u"|" + reference;
  if (const auto remembered = FindRemembered(cache, key)) {
    return ReplaceAllNoCase(path, reference, ToText(*remembered));
  }
  Err().Clear();
  const Text directory = DirectoryOf(reference, machine);
  Swallow([&] { Remember(cache, key, Variant(directory)); });
  return ReplaceAllNoCase(path, reference, directory);
}

}  // namespace

Text CSupport::ExpandPathForMachine(const Text& path, const Text& machine) {
  Text expanded;
  Swallow([&] { expanded = machine.empty() ? ExpandHere(path) : ExpandOn(machine, path); });
  return expanded;
}

}  // namespace veldmark
