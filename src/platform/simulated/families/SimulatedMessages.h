#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/operations/Messages.h"
#include "platform/simulated/families/Session.h"

namespace veldmark::simulated {

// The message tables of an estate: the system's own and those of modules, found by name or as
// files.
class SimulatedMessages final : public Messages {
 public:
  explicit SimulatedMessages(Session& session) : session_(session) {}

  HMODULE LoadLibraryExW(LPCWSTR library_file_name, HANDLE file, DWORD flags) override;
  BOOL FreeLibrary(HMODULE module) override;
  DWORD FormatMessageW(DWORD flags, const void* source, DWORD message_id, DWORD language_id,
                       LPWSTR buffer, DWORD size, void* arguments) override;

 private:
  struct LoadedModule {
    HMODULE handle;
    std::shared_ptr<const MessageTables> messages;
    std::size_t loads;
  };

  HMODULE Load(const Text& identity, std::shared_ptr<const MessageTables> messages, TextView name);
  const LoadedModule* FindModule(const void* source) const;
  // The text that a message number stands for, or the code that says why there is none.
  DWORD FindText(DWORD flags, const void* source, DWORD message_id, DWORD language_id,
                 TextView& text) const;

  Session& session_;
  std::map<Text, LoadedModule> modules_;
};

}  // namespace veldmark::simulated
