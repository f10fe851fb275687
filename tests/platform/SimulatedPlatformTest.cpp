#include "platform/simulated/families/SimulatedPlatform.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "automation/LastError.h"
#include "platform/operations/ErrorCodes.h"
#include "platform/operations/Handles.h"
#include "platform/simulated/estate/FileNames.h"
#include "platform/simulated/estate_file/EstateFile.h"

namespace veldmark::simulated {
namespace {

class Simulation : public testing::Test {
 protected:
  Simulation() : platform_(simulated_.platform()), files_(platform_.files) {
    Computer& local = simulated_.estate().local();
    local.AddFile(u"C:\\Data\\a.txt", "alpha");
    Computer& server = simulated_.estate().AddComputer(u"LANTERN");
    server.AddDrive(u'D');
    server.AddFile(u"D:\\Public\\Deep\\b.txt", "beta");
    server.AddFolder(u"D:\\Secret");
    server.AddShare(u"Public", u"D:\\Public");
    server.AddShare(u"Private", u"D:\\Secret", true);
  }

  // 0, or the code that opening the file for reading fails with.
  DWORD Read(TextView path) {
    const FileHandle file(
        files_, files_.CreateFileW(Text(path).c_str(), kGenericRead, kFileShareRead, nullptr,
                                   kOpenExisting, 0, nullptr));
    return file ? 0 : LastPlatformError();
  }

  // 0, or the code that the first entry of a listing fails with.
  DWORD List(TextView path) {
    WIN32_FIND_DATAW data;
    const FindHandle find(files_, files_.FindFirstFileW(Text(path).c_str(), &data));
    return find ? 0 : LastPlatformError();
  }

  SimulatedPlatform simulated_;
  Platform platform_;
  FileSystem& files_;
};

TEST_F(Simulation, ReachesTheFilesOfOtherComputersByTheirShares) {
  Estate& estate = simulated_.estate();
  estate.MapDrive(u'z', u"\\\\lantern\\public\\Deep");
  estate.SetCurrentFolder(u"C:\\Data");
  Computer& ruin = estate.AddComputer(u"RUIN");
  ruin.AddDrive(u'C');
  ruin.SetReachable(false);
  estate.local().Find(u"C:\\Data")->AddChild(u"closed", true, estate.now())->DenyList();
  estate.local().AddFile(u"C:\\Data\\closed\\x").DenyRead();
  estate.local().AddFile(u"C:\\Data\\busy").Locked();
  EXPECT_EQ(Read(u"\\\\LANTERN\\Public\\Deep\\b.txt"), 0u);
  EXPECT_EQ(Read(u"\\\\?\\UNC\\lantern\\PUBLIC\\deep\\B.TXT"), 0u);
  EXPECT_EQ(Read(u"\\\\lantern\\d$\\Public\\Deep\\b.txt"), 0u);
  EXPECT_EQ(Read(u"\\\\localhost\\C$\\Data\\a.txt"), 0u);
  EXPECT_EQ(Read(u"Z:\\b.txt"), 0u);
  EXPECT_EQ(Read(u"a.txt"), 0u);
  EXPECT_EQ(Read(u"..\\Data\\.\\a.txt"), 0u);
  EXPECT_EQ(Read(u"\\Data\\a.txt"), 0u);
  EXPECT_EQ(Read(u"C:a.txt"), 0u);
  EXPECT_EQ(Read(u"Z:\\none"), 2u);
  EXPECT_EQ(Read(u"\\\\lantern\\nothing\\x"), 67u);
  EXPECT_EQ(Read(u"\\\\lantern\\private\\x"), 5u);
  EXPECT_EQ(Read(u"\\\\ruin\\c$\\x"), 53u);
  EXPECT_EQ(Read(u"C:\\Data\\closed\\x"), 5u);
  EXPECT_EQ(Read(u"C:\\Data\\busy"), 32u);
  const std::pair<const char16_t*, DWORD> lists[] = {
      {u"\\\\lantern\\public\\*", 0}, {u"\\\\lantern\\public", 67}, {u"\\\\lantern\\public\\", 2},
      {u"\\\\nobody\\public", 53},    {u"C:\\Data\\closed\\*", 5},  {u"C:\\Data\\closed", 0},
      {u"C:\\Data\\closed\\x", 5}};
  for (const auto& [path, error] : lists) EXPECT_EQ(List(path), error) << ToUtf8(path);
  EXPECT_EQ(files_.GetDriveTypeW(u"Z:\\"), kDriveRemote);
  EXPECT_EQ(files_.GetDriveTypeW(u"\\\\lantern\\public\\"), kDriveRemote);
  EXPECT_FALSE(files_.RemoveDirectoryW(u"C:\\Data"));
  EXPECT_EQ(LastPlatformError(), kErrorSharingViolation) << "the current folder";

  alignas(void*) std::uint8_t buffer[128];
  DWORD size = 0;
  NetworkProvider& network = platform_.network_provider;
  EXPECT_EQ(network.WNetGetUniversalNameW(u"z:\\b.txt", 1, nullptr, &size), kErrorMoreData);
  const DWORD needed = size--;
  EXPECT_EQ(network.WNetGetUniversalNameW(u"z:\\b.txt", 1, buffer, &size), kErrorMoreData);
  EXPECT_EQ(size, needed);
  EXPECT_EQ(network.WNetGetUniversalNameW(u"z:\\b.txt", 1, buffer, &size), 0u);
  EXPECT_EQ(Text(reinterpret_cast<UNIVERSAL_NAME_INFOW*>(buffer)->lpUniversalName),
            u"\\\\lantern\\public\\Deep\\b.txt");
}

TEST_F(Simulation, ReachesTheRegistriesThatLetIt) {
  Estate& estate = simulated_.estate();
  estate.FindComputer(u"\\\\lantern")->local_machine().Key(u"SOFTWARE\\Closed").DenyRead();
  estate.AddComputer(u"SHY").SetRemoteRegistry(RemoteRegistry::Denied);
  estate.AddComputer(u"MUTE").SetRemoteRegistry(RemoteRegistry::Stopped);
  Registry& registry = platform_.registry;
  RegistryKey root(registry);
  EXPECT_EQ(registry.RegConnectRegistryW(u"SHY", kHkeyUsers, root.Receive()), 5);
  EXPECT_EQ(registry.RegConnectRegistryW(u"MUTE", kHkeyUsers, root.Receive()), 53);
  EXPECT_EQ(registry.RegConnectRegistryW(u"LANTERN", kHkeyCurrentUser, root.Receive()), 6);
  ASSERT_EQ(registry.RegConnectRegistryW(u"\\\\Lantern", kHkeyLocalMachine, root.Receive()), 0);
  RegistryKey key(registry);
  EXPECT_EQ(registry.RegOpenKeyExW(root.Get(), u"SOFTWARE\\Closed", 0, kKeyRead, key.Receive()), 5);
  EXPECT_EQ(registry.RegOpenKeyExW(root.Get(), u"SOFTWARE", 0, kKeyRead, key.Receive()), 0);
}

TEST_F(Simulation, KnowsWhatIsOpenWhatCameBackTwiceAndWhatWasCalled) {
  Ledger& ledger = simulated_.ledger();
  WIN32_FIND_DATAW data;
  HANDLE const find = files_.FindFirstFileW(u"C:\\Data\\*", &data);
  HANDLE const file =
      files_.CreateFileW(u"C:\\Data\\a.txt", kGenericRead, 0, nullptr, kOpenExisting, 0, nullptr);
  EXPECT_EQ(ledger.Report(),
            "open find handle of FindFirstFileW(C:\\Data\\*)\n"
            "open file handle of CreateFileW(C:\\Data\\a.txt)\n");
  EXPECT_FALSE(files_.CloseHandle(find)) << "a find handle is no file handle";
  EXPECT_TRUE(files_.CloseHandle(file));
  EXPECT_FALSE(files_.CloseHandle(file));
  EXPECT_EQ(LastPlatformError(), kErrorInvalidHandle);
  EXPECT_TRUE(files_.FindClose(find));
  void* const memory = platform_.system.CoTaskMemAlloc(4);
  platform_.system.CoTaskMemFree(memory);
  platform_.system.CoTaskMemFree(memory);
  EXPECT_TRUE(ledger.still_open().empty());
  EXPECT_EQ(ledger.faults().size(), 3u);
  EXPECT_FALSE(ledger.IsClean());

  Messages& messages = platform_.messages;
  const HMODULE module = messages.LoadLibraryExW(u"NETMSG", nullptr, kLoadLibraryAsDatafile);
  EXPECT_EQ(messages.LoadLibraryExW(u"netmsg.dll", nullptr, kLoadLibraryAsDatafile), module);
  EXPECT_TRUE(messages.FreeLibrary(module));
  EXPECT_EQ(ledger.still_open().size(), 1u) << "loaded twice, freed once";
  EXPECT_TRUE(messages.FreeLibrary(module));
  EXPECT_FALSE(messages.FreeLibrary(module));

  EXPECT_FALSE(simulated_.journal().entries().empty());
  simulated_.journal().StopKeeping();
  EXPECT_EQ(List(u"C:\\*"), 0u);
  EXPECT_TRUE(simulated_.journal().entries().empty());
}

TEST_F(Simulation, ServesThreadsInTurnOnOneWorldEachWithItsOwnErrors) {
  const auto work = [this](const Text& own) {
    for (int round = 0; round < 300; ++round) {
      const Text name = u"C:\\" + own + ToText(round);
      EXPECT_TRUE(files_.CreateDirectoryW(name.c_str(), nullptr));
      EXPECT_EQ(List(name), 0u);
      EXPECT_FALSE(files_.CreateDirectoryW(name.c_str(), nullptr));
      EXPECT_EQ(LastPlatformError(), kErrorAlreadyExists);
      EXPECT_EQ(Read(u"C:\\none"), kErrorFileNotFound);
      EXPECT_TRUE(round == 0 || files_.RemoveDirectoryW(name.c_str()));
    }
  };
  std::thread other(work, u"theirs");
  work(u"ours");
  other.join();
  EXPECT_EQ(List(u"C:\\ours0") + List(u"C:\\theirs0"), 0u) << "one world";
  EXPECT_EQ(List(u"C:\\theirs1"), kErrorFileNotFound);
  EXPECT_TRUE(simulated_.ledger().IsClean()) << simulated_.ledger().Report();
}

TEST(SimulatedTimers, BeatOnTheirOwnThreadWhileTheClockOfTheFileRuns) {
  static Timers* timers = nullptr;
  static int beats = 0;
  Ticks real = 5'000'000;
  for (const bool runs : {true, false}) {
    const std::string file = std::string(R"({"computers": [{"name": "A"}], "clockRuns": )") +
                             (runs ? "true}" : "false}");
    SimulatedPlatform simulated(ReadEstate(file, [&real] { return real; }));
    const Platform platform = simulated.platform();
    timers = &platform.timers;
    beats = 0;
    const UINT_PTR id = timers->SetTimer(nullptr, 0, 100, [](HWND, UINT, UINT_PTR own, DWORD) {
      // A callback calls the platform again.
      EXPECT_EQ(timers->SetTimer(nullptr, own, 100, nullptr), own);
      ++beats;
    });
    std::thread([&] {
      real += 100 * kTicksPerMillisecond;
      timers->DoEvents();
      EXPECT_FALSE(timers->KillTimer(nullptr, id));
    }).join();
    EXPECT_EQ(beats, 0) << "another thread's turn";
    timers->DoEvents();
    EXPECT_EQ(beats, runs ? 1 : 0);
    EXPECT_EQ(simulated.estate().milliseconds(), runs ? 100u : 0u);
    simulated.estate().Advance(100);
    EXPECT_EQ(simulated.estate().milliseconds(), runs ? 200u : 100u);
    EXPECT_TRUE(timers->KillTimer(nullptr, id));
  }
}

TEST(PublishedMessages, HaveATextForEveryCodeThatTheOperationsName) {
  std::ifstream header(VELDMARK_SOURCE_DIR "/src/platform/operations/ErrorCodes.h");
  const std::string source{std::istreambuf_iterator<char>(header), {}};
  const std::regex constant(R"((k\w+) = (\d+);)");
  const Estate estate;
  int codes = 0;
  for (std::sregex_iterator match(source.begin(), source.end(), constant), end; match != end;
       ++match, ++codes) {
    const auto code = static_cast<DWORD>(std::stoul((*match)[2]));
    EXPECT_TRUE(estate.system_messages().contains(code) ||
                estate.modules().at(u"NETMSG.DLL").contains(code))
        << (*match)[1] << " = " << code;
  }
  EXPECT_GT(codes, 60);
}

TEST(ShortNames, RunFromNumbersToChecksumsWithoutEnd) {
  std::set<Text> taken;
  std::vector<std::string> made;
  for (int index = 0; index < 12; ++index) {
    Text name = MakeShortName(u"Document number " + ToText(index) + u".text",
                              [&](TextView candidate) { return taken.contains(Text(candidate)); });
    EXPECT_LE(name.find(u'.'), 8u);
    EXPECT_TRUE(taken.insert(name).second);
    made.push_back(ToUtf8(name));
  }
  EXPECT_EQ(made[3], "DOCUME~4.TEX");
  EXPECT_EQ(made[4].substr(0, 2), "DO");
  EXPECT_EQ(made[4].substr(6), "~1.TEX");
  std::set<Text> all;
  for (int index = 0; index < 200; ++index) {
    const auto used = [&](TextView candidate) { return all.contains(Text(candidate)); };
    EXPECT_TRUE(all.insert(MakeShortName(u"Always the same name", used)).second);
  }
}

}  // namespace
}  // namespace veldmark::simulated
