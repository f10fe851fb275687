#include <windows.h>

#include <lmcons.h>
#include <objbase.h>
#include <winspool.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "contract/World.h"
#include "platform/windows/WindowsPlatform.h"
#include "platform/windows/WineDifferences.h"

namespace {

// The SDK's macro names a type that means ours inside our namespace.
const ::HKEY kCurrentUser = HKEY_CURRENT_USER;

}  // namespace

namespace veldmark {
namespace {

const wchar_t* Wide(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}

std::u16string Utf16(std::wstring_view text) { return {text.begin(), text.end()}; }

// A file of the build tree.
std::u16string Built(const char* name) {
  return (std::filesystem::path("Z:" VELDMARK_BINARY_DIR) / name).make_preferred().u16string();
}

void RemoveTree(const std::wstring& folder) {
  ::WIN32_FIND_DATAW entry;
  const ::HANDLE find = ::FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (find != INVALID_HANDLE_VALUE) {
    do {
      const std::wstring name = entry.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring path = folder + L"\\" + name;
      ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        RemoveTree(path);
      } else {
        ::DeleteFileW(path.c_str());
      }
    } while (::FindNextFileW(find, &entry));
    ::FindClose(find);
  }
  ::RemoveDirectoryW(folder.c_str());
}

class WindowsWorld final : public World {
 public:
  WindowsWorld() {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    // The number of this process won't do: Wine soon gives it to another one, which would find what
    // a process that was ended has left behind.
    ::GUID fresh{};
    ::CoCreateGuid(&fresh);
    const std::wstring name = L"vk" + std::to_wstring(fresh.Data1);
    std::array<wchar_t, MAX_PATH + 1> temporary{};
    ::GetTempPathW(static_cast<::DWORD>(temporary.size()), temporary.data());
    // The user part of that path may be in its short form.
    std::array<wchar_t, MAX_PATH + 1> full{};
    ::GetLongPathNameW(temporary.data(), full.data(), static_cast<::DWORD>(full.size()));
    scratch_ = Utf16(full.data() + name);
    ::CreateDirectoryW(Wide(scratch_), nullptr);

    std::array<wchar_t, UNLEN + 1> user{};
    ::DWORD size = static_cast<::DWORD>(user.size());
    ::GetUserNameW(user.data(), &size);
    user_ = Utf16(user.data());

    scratch_key_ = u"Software\\Veldmark2 contract\\" + Utf16(name);
    ::HKEY key = nullptr;
    ::RegCreateKeyW(kCurrentUser, Wide(scratch_key_), &key);
    ::RegCloseKey(key);
  }

  ~WindowsWorld() override {
    for (const ::HANDLE printer : printers_) {
      ::DeletePrinter(printer);
      ::ClosePrinter(printer);
    }
    ::RegDeleteTreeW(kCurrentUser, Wide(scratch_key_));
    RemoveTree(std::wstring(Wide(scratch_)));
    ::CoUninitialize();
  }

  Platform platform() override { return WindowsPlatform(); }
  const std::u16string& scratch() const override { return scratch_; }
  const std::u16string& scratch_key() const override { return scratch_key_; }
  const std::u16string& user() const override { return user_; }
  std::u16string event_texts() const override { return Built("event_texts.dll"); }
  std::u16string service_program() const override { return Built("service_program.exe"); }
  void LetPass(unsigned milliseconds) override { ::Sleep(milliseconds); }

  HANDLE OpenImpersonationToken() override {
    ::HANDLE process = nullptr;
    ::HANDLE impersonation = nullptr;
    ::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY | TOKEN_DUPLICATE, &process);
    ::DuplicateTokenEx(process, TOKEN_QUERY, nullptr, SecurityIdentification, TokenImpersonation,
                       &impersonation);
    ::CloseHandle(process);
    return impersonation;
  }

  // On the port of a file, by a driver that only has to be there.
  void AddPrinter(const PRINTER_INFO_2W& record) override {
    const auto text = [](const wchar_t* only_read) { return const_cast<wchar_t*>(only_read); };
    ::DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = text(L"Veldmark2 contract");
    driver.pDriverPath = driver.pConfigFile = driver.pDataFile = text(L"wineps.drv");
    ::AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver), APD_COPY_NEW_FILES);
    ::PRINTER_INFO_2W printer{};
    std::memcpy(&printer, &record, sizeof printer);
    printer.pDriverName = driver.pName;
    printer.pPortName = text(L"FILE:");
    printer.pPrintProcessor = text(L"WinPrint");
    printer.pDatatype = text(L"RAW");
    const ::HANDLE handle = ::AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    ASSERT_NE(handle, nullptr) << ::GetLastError();
    printers_.push_back(handle);
  }

  const char* WhyNot(Trait trait) const override {
    static const std::map<Trait, const char*> missing_under_wine = {
        {Trait::ShortNames, "Wine makes short names of a hash"},
        {Trait::DosWildcards, "Wine's listings know \"*\" and \"?\" only"},
        {Trait::FileGuards, "the host guards by mode bits alone and lets its superuser write"},
        {Trait::PathRules, "Wine takes what the host does, and normalises a listing's pattern"},
        {Trait::ListedFoldersStay, "Wine reads a listing at once and lets go of the folder"},
        {Trait::CreationTimes, "Wine takes the host's time of the last change for it"},
        {Trait::PublishedTexts, "Wine's texts are worded by itself, and it has no netmsg.dll"},
        {Trait::Connections, "Wine has no network provider: whatever is asked, 1222"},
        {Trait::GlobalGroups, "Wine has none: it denies them, or doesn't have the operation"},
        {Trait::LocalGroupChanges, "Wine changes no local group: 50 for its empty success"},
        {Trait::UserRights, "Wine's security authority knows no rights: 259, whatever is asked"},
        {Trait::ClearedResults, "Wine leaves what the caller had there"},
        {Trait::SocketStarts, "Wine's library takes an end without a start"},
        {Trait::ServiceDependencies, "Wine starts and stops services without regard to others"},
        {Trait::ServiceChecks, "Wine takes what it is given"},
        {Trait::EventRecords, "Wine's event logs hold no records and look at no flags"},
        {Trait::EmptyAccountNames, "Wine takes an empty name for BUILTIN, a wrong SID for none"},
    };
    if (!RunsUnderWine()) {
      return trait == Trait::EventRecords ? "there is no log \"Contract\" here" : nullptr;
    }
    const auto found = missing_under_wine.find(trait);
    return found == missing_under_wine.end() ? nullptr : found->second;
  }

 private:
  std::u16string scratch_;
  std::u16string scratch_key_;
  std::u16string user_;
  std::vector<::HANDLE> printers_;
};

}  // namespace

std::unique_ptr<World> MakeWorld() { return std::make_unique<WindowsWorld>(); }

}  // namespace veldmark
