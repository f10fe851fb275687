#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using Walks = StorageTest;

TEST_F(Walks, PutEachEntryInItsListAndCountFoldersAsFilesWhereNoneAreWanted) {
  const struct {
    const char16_t* path;
    bool get_folders, get_files;
    const char *folders, *files;
  } cases[] = {
      {u"C:\\D", true, true, " C:\\D\\o C:\\D\\x", " C:\\D\\a C:\\D\\b"},
      {u"C:\\D\\", true, false, " C:\\D\\o C:\\D\\x", "Nothing"},
      {u"c:\\d", false, true, "Nothing", " c:\\d\\. c:\\d\\.. c:\\d\\a c:\\d\\b c:\\d\\o c:\\d\\x"},
      {u"C:\\D", false, false, "Nothing", "Nothing"},
      {u"C:\\Empty", true, false, "", "Nothing"},
      {u"C:\\Empty", false, true, "Nothing", " C:\\Empty\\. C:\\Empty\\.."},
      {u"E:", true, true, "", " E:\\one"},
      {u"E:\\", false, true, "Nothing", " E:\\one"},
      {u"\\\\SRV\\Share", true, true, " \\\\SRV\\Share\\Deep", ""},
      {u"\\\\?\\UNC\\SRV\\Share\\Deep", true, true, "", " \\\\SRV\\Share\\Deep\\f"},
      {u"", true, true, "Nothing", "Nothing"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    Ref<CFolders> folders;
    Ref<CFiles> files;
    EXPECT_EQ(Engine().GetFolderContents(c.path, folders, files, c.get_folders, c.get_files, false),
              *c.path != u'\0');
    EXPECT_EQ(PathsIn(folders), c.folders);
    EXPECT_EQ(PathsIn(files), c.files);
  }
  EXPECT_EQ(PathsIn(Engine().GetFolders(u"C:\\D")), " C:\\D\\o C:\\D\\x");
  EXPECT_EQ(PathsIn(Engine().GetFolders(u"")), "");
  EXPECT_EQ(PathsIn(Engine().GetFiles(u"C:\\D\\")), " C:\\D\\a C:\\D\\b");
}

TEST_F(Walks, ListPathNamesByTheSameRuleAndEndWhereThePlatformFailsToGoOn) {
  const struct {
    const char16_t* path;
    std::vector<Variant> arguments;
    const char* names;
  } cases[] = {
      {u"C:\\D", {}, " C:\\D\\a C:\\D\\b C:\\D\\o/ C:\\D\\x/"},
      {u"C:\\D", {true, false}, " C:\\D\\o/ C:\\D\\x/"},
      {u"C:\\D", {false}, " C:\\D\\. C:\\D\\.. C:\\D\\a C:\\D\\b C:\\D\\o C:\\D\\x"},
      {u"C:\\D", {false, false}, ""},
      {u"E:", {}, " E:\\one"},
      {u"\\\\SRV\\Share\\", {}, " \\\\SRV\\Share\\Deep/"},
  };
  for (const auto& c : cases) {
    const Ref<CFolder> folder = Engine().GetFolder(c.path);
    const Ref<Object> names =
        ToObject(Call(*folder, u"GetPathNames", MemberKind::kMethod, c.arguments));
    std::string listed;
    const auto& list = static_cast<CPathNames&>(*names);
    for (std::int32_t i = 1; i <= list.Count(); ++i) {
      const Ref<CPathName> name = static_cast<CPathNames&>(*names).ItemByIndex(i);
      listed += " " + ToUtf8(name->PathName) + (name->IsDirectory ? "/" : "");
    }
    EXPECT_EQ(listed, c.names);
  }
  EXPECT_FALSE(Engine().GetPathNames(u"", true, true, false));
  faults().FailNthOf("FindNextFileW", 4, 1117);
  EXPECT_EQ(PathsIn(Engine().GetFolder(u"C:\\D")->GetFiles()),
            " C:\\D\\. C:\\D\\.. C:\\D\\a C:\\D\\b");
}

TEST_F(Walks, RaiseWhyAFolderCantBeOpenedAndLeaveTheOutputsNothing) {
  const std::pair<const char16_t*, std::int32_t> cases[] = {
      {u"C:\\Secret", 5}, {u"C:\\None", 3}, {u"C:\\D\\a", 267}, {u"\\\\NOBODY\\Share", 53}};
  for (const auto& [path, number] : cases) {
    SCOPED_TRACE(ToUtf8(path));
    const auto folder = Make<CFolder>();
    folder->PutPath(path);
    EXPECT_EQ(ErrorOf([&] { folder->GetFiles(); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetPathNames(path, true, true, false); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetFolders(path); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetFiles(path); }), number);
    Ref<CFolders> folders = Make<CFolders>();
    Ref<CFiles> found = Make<CFiles>();
    EXPECT_EQ(ErrorOf([&] { folder->GetFolderContents(folders, found); }), number);
    EXPECT_FALSE(folders || found);
  }
}

TEST_F(Walks, NarrateEveryEntryAndAskWhileNothingIsFound) {
  std::vector<std::string> log;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    log.push_back((event == 1 ? "" : "cancel? ") + ToUtf8(ToText(arguments[0])));
  });
  const std::vector<std::string> entries = {
      "Retrieved 0 Folders, 0 Files", "cancel? 0",
      "Retrieved 0 Folders, 0 Files", "cancel? 0",
      "Retrieved 0 Folders, 1 Files", "Retrieved 0 Folders, 2 Files",
      "Retrieved 1 Folders, 2 Files", "Retrieved 2 Folders, 2 Files"};
  const auto with_start = [&](const char* start) {
    std::vector<std::string> all = entries;
    all.insert(all.begin(), start);
    return all;
  };
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  Ref<CFolders> folders;
  Ref<CFiles> files;
  folder->GetFolderContents(folders, files);
  EXPECT_EQ(log, with_start("Retrieving Contents of Folder C:\\D"));
  log.clear();
  folder->GetPathNames(true, true);
  EXPECT_EQ(log, with_start("Retrieving Path Names in Folder C:\\D"));
  log.clear();
  Make<CFolder>()->GetFiles();
  EXPECT_EQ(log, std::vector<std::string>{"Retrieving Contents of Folder "});
}

TEST_F(Walks, AskAtEveryThousandObjectsAndKeepWhatWasFoundBefore) {
  for (std::int64_t i = 0; i < 2001; ++i) {
    const Text path = u"C:\\Big\\" + ToText(100000 + i);
    i % 2 ? local().AddFolder(path) : local().AddFile(path);
  }
  std::vector<std::int32_t> asked;
  std::int32_t stop_at = -1;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    if (event != 2) return;
    asked.push_back(ToLong(arguments[0]));
    if (asked.back() == stop_at) arguments[1].Assign(true);
  });
  const struct {
    std::int32_t stop_at;
    std::vector<std::int32_t> asked;
    std::int32_t found;
  } cases[] = {{-1, {0, 0, 1000, 2000}, 2001}, {0, {0}, 0}, {1000, {0, 0, 1000}, 1000}};
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\Big");
  for (const auto& c : cases) {
    for (const bool async : {false, true}) {
      SCOPED_TRACE(c.stop_at);
      folder->PutAsyncFetch(async);
      stop_at = c.stop_at;
      asked.clear();
      Ref<CFolders> folders;
      Ref<CFiles> files;
      folder->GetFolderContents(folders, files);
      EXPECT_EQ(asked, c.asked);
      EXPECT_EQ(files ? folders->Count() + files->Count() : c.found, c.found);
      asked.clear();
      const Ref<CPathNames> names = folder->GetPathNames(true, true);
      EXPECT_EQ(asked, c.asked);
      EXPECT_EQ(names ? names->Count() : c.found, c.found);
      EXPECT_EQ(names == nullptr, async);
    }
  }
}

/// Writes down what a folder's events bring, and cancels at the event that `cancel_at` counts.
struct Recorder {
  void ListenTo(CFolder& folder) {
    Listen(folder, [this](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_FALSE(ToBoolean(arguments[1]));
      seen += " " + std::to_string(event) + ":" + ToUtf8(PathOf(*ToObject(arguments[0])));
      if (++events == cancel_at) arguments[1].Assign(true);
    });
  }
  explicit Recorder(int cancel = 0) : cancel_at(cancel) {}
  int cancel_at;
  std::string seen;
  int events = 0;
};

TEST_F(Walks, DeliverByEventsInThePlaceOfListsUntilAListenerCancels) {
  const struct {
    int cancel_at;
    const char *contents, *files;
  } cases[] = {
      {0, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o 1:C:\\D\\x",
       " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a 2:C:\\D\\b 2:C:\\D\\o 2:C:\\D\\x"},
      {1, " 2:C:\\D\\a", " 2:C:\\D\\."},
      {3, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o", " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a"},
  };
  for (const auto& c : cases) {
    const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
    Recorder recorder(c.cancel_at);
    recorder.ListenTo(*folder);
    folder->PutAsyncFetch(true);
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(recorder.seen, c.contents);
    EXPECT_FALSE(folders || files);
    recorder = Recorder(c.cancel_at);
    EXPECT_FALSE(folder->GetFiles());
    EXPECT_EQ(recorder.seen, c.files);

    recorder = Recorder();
    EXPECT_FALSE(folder->GetPathNames(true, true));
    folder->PutAsyncFetch(false);
    EXPECT_EQ(PathsIn(folder->GetSubFolders()), " C:\\D\\o C:\\D\\x");
    EXPECT_EQ(recorder.seen, "");
  }
}

TEST_F(Walks, BringEveryObjectToAllFoldersThatListenAndLetAnyOfThemCancel) {
  const Ref<CFolder> walking = Engine().GetFolder(u"C:\\D");
  Ref<CFolder> bystander = Engine().GetFolder(u"C:\\Empty");
  Recorder first, second;
  first.ListenTo(*walking);
  second.ListenTo(*bystander);
  walking->PutAsyncFetch(true);
  bystander->PutAsyncFetch(true);
  bystander->PutAsyncFetch(true);
  EXPECT_FALSE(walking->GetSubFolders());
  EXPECT_EQ(first.seen, " 1:C:\\D\\o 1:C:\\D\\x");
  EXPECT_EQ(second.seen, first.seen);

  first = Recorder();
  second = Recorder(1);
  walking->GetSubFolders();
  EXPECT_EQ(second.seen, " 1:C:\\D\\o");
  EXPECT_EQ(first.seen, second.seen);

  bystander = nullptr;  // listens no more, though nobody turned its AsyncFetch off
  first = Recorder();
  walking->GetSubFolders();
  EXPECT_EQ(first.seen, " 1:C:\\D\\o 1:C:\\D\\x");
}

TEST_F(Walks, HandAListenersErrorToTheCaller) {
  const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  bool from_status = false;
  const auto raise = [&](bool wanted) {
    if (wanted) throw AutomationError(1234, u"Listener", u"Enough");
  };
  Listen(StatusObject(),
         [&](std::int32_t event, std::span<Variant>) { raise(from_status && event == 1); });
  Listen(*folder, [&](std::int32_t, std::span<Variant>) { raise(!from_status); });
  folder->PutAsyncFetch(true);
  for (const bool status : {false, true}) {
    from_status = status;
    EXPECT_EQ(ErrorOf([&] { folder->GetFiles(); }), 1234);
    EXPECT_EQ(Err().Source(), u"Listener");
    EXPECT_EQ(Err().Description(), u"Enough");
    EXPECT_EQ(ledger().Report(), "");
  }
}

TEST_F(Walks, OutliveTheFolderThatAListenerLetsGo) {
  Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
  int events = 0;
  Listen(*folder, [&](std::int32_t, std::span<Variant>) {
    ++events;
    folder = nullptr;
  });
  folder->PutAsyncFetch(true);
  CFolder& walking = *folder;
  EXPECT_FALSE(walking.GetFiles());
  EXPECT_EQ(events, 6);
  EXPECT_EQ(Apartment::Current().counters[Counter::kFolder], 0);
}

TEST(WalkFaults, AreReportedByTheOpeningAndSwallowedAfterIt) {
  const std::set<std::string> swallowed = {"FindNextFileW", "FindClose", "FileTimeToLocalFileTime",
                                           "FileTimeToSystemTime"};
  const auto walk = [](bool async) {
    return [async](StorageWorld&) {
      const auto folder = Make<CFolder>();
      folder->PutPath(u"C:\\D");
      folder->PutAsyncFetch(async);
      folder->GetFiles();
      folder->GetPathNames(true, true);
    };
  };
  const auto nothing_left = [](StorageWorld&, const std::string&, bool) {
    EXPECT_EQ(Apartment::Current().counters[Counter::kFile], 0);
    EXPECT_EQ(Apartment::Current().counters[Counter::kFolder], 0);
  };
  SweepFaults<StorageWorld>(swallowed, walk(false), nothing_left);
  SweepFaults<StorageWorld>(swallowed, walk(true), nothing_left);
}

}  // namespace
}  // namespace veldmark
