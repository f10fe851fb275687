#include "storage/StorageFixture.h"

namespace veldmark {
namespace {

using Walks = StorageTest;

std::string NamesIn(const Ref<CPathNames>& list) {
  return Listed(
      list, [](const CPathName& line) { return line.PathName + (line.IsDirectory ? u"/" : u""); });
}

TEST_F(Walks, PutEachEntryInItsListAndCountFoldersAsFilesWhereNoneAreWanted) {
  const struct {
    const char16_t* path;
    bool get_folders, get_files;
    const char *folders, *files, *names;  // null: the same as the files
  } cases[] = {
      {u"C:\\D", true, true, " C:\\D\\o C:\\D\\x", " C:\\D\\a C:\\D\\b",
       " C:\\D\\a C:\\D\\b C:\\D\\o/ C:\\D\\x/"},
      {u"C:\\D\\", true, false, " C:\\D\\o C:\\D\\x", "Nothing", " C:\\D\\o/ C:\\D\\x/"},
      {u"c:\\d", false, true, "Nothing", " c:\\d\\. c:\\d\\.. c:\\d\\a c:\\d\\b c:\\d\\o c:\\d\\x"},
      {u"C:\\D", false, false, "Nothing", "Nothing", ""},
      {u"E:", true, true, "", " E:\\one"},
      {u"\\\\?\\UNC\\SRV\\Share\\Deep", true, true, "", " \\\\SRV\\Share\\Deep\\f"},
      {u"", true, true, "Nothing", "Nothing"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.path));
    Ref<CFolders> folders;
    Ref<CFiles> files;
    EXPECT_EQ(Engine().GetFolderContents(c.path, folders, files, c.get_folders, c.get_files, false),
              *c.path != u'\0');
    EXPECT_EQ(PathsIn(folders), c.folders);
    EXPECT_EQ(PathsIn(files), c.files);
    EXPECT_EQ(NamesIn(Engine().GetPathNames(c.path, c.get_folders, c.get_files, false)),
              c.names ? c.names : c.files);
  }
  EXPECT_EQ(PathsIn(Engine().GetFolders(u"C:\\D")), " C:\\D\\o C:\\D\\x");
  EXPECT_EQ(PathsIn(Engine().GetFolders(u"")), "");
  EXPECT_EQ(PathsIn(Engine().GetFiles(u"C:\\D\\")), " C:\\D\\a C:\\D\\b");
  faults().FailNthOf("FindNextFileW", 4, 1117);
  EXPECT_EQ(PathsIn(At<CFolder>(u"C:\\D")->GetFiles()), " C:\\D\\. C:\\D\\.. C:\\D\\a C:\\D\\b")
      << "to where the platform fails to go on";
}

TEST_F(Walks, RaiseWhyAFolderCantBeOpenedAndLeaveTheOutputsNothing) {
  const std::pair<const char16_t*, std::int32_t> cases[] = {
      {u"C:\\Secret", 5}, {u"C:\\None", 3}, {u"C:\\D\\a", 267}, {u"\\\\NOBODY\\Share", 53}};
  for (const auto& [path, number] : cases) {
    SCOPED_TRACE(ToUtf8(path));
    EXPECT_EQ(ErrorOf([&] { At<CFolder>(path)->GetPathNames(true, true); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetFolders(path); }), number);
    EXPECT_EQ(ErrorOf([&] { Engine().GetFiles(path); }), number);
    Ref<CFolders> folders = Make<CFolders>();
    Ref<CFiles> files = Make<CFiles>();
    EXPECT_EQ(ErrorOf([&] { At<CFolder>(path)->GetFolderContents(folders, files); }), number);
    EXPECT_FALSE(folders || files);
  }
}

TEST_F(Walks, NarrateEveryEntryAndAskWhileNothingIsFound) {
  std::string log;
  Listen(StatusObject(), [&](std::int32_t event, std::span<Variant> arguments) {
    log += (event == 1 ? "" : "cancel? ") + ToUtf8(ToText(arguments[0])) + "\n";
  });
  const std::string entries =
      "Retrieved 0 Folders, 0 Files\ncancel? 0\nRetrieved 0 Folders, 0 Files\ncancel? 0\n"
      "Retrieved 0 Folders, 1 Files\nRetrieved 0 Folders, 2 Files\n"
      "Retrieved 1 Folders, 2 Files\nRetrieved 2 Folders, 2 Files\n";
  const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
  Ref<CFolders> folders;
  Ref<CFiles> files;
  folder->GetFolderContents(folders, files);
  folder->GetPathNames(true, true);
  Make<CFolder>()->GetFiles();
  EXPECT_EQ(log, "Retrieving Contents of Folder C:\\D\n" + entries +
                     "Retrieving Path Names in Folder C:\\D\n" + entries +
                     "Retrieving Contents of Folder \n");
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
  const Ref<CFolder> folder = At<CFolder>(u"C:\\Big");
  for (const auto& c : cases) {
    stop_at = c.stop_at;
    asked.clear();
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(asked, c.asked);
    EXPECT_EQ(folders->Count() + files->Count(), c.found);
    asked.clear();
    EXPECT_EQ(folder->GetPathNames(true, true)->Count(), c.found);
    EXPECT_EQ(asked, c.asked);
  }
}

/// Writes down what a folder's events bring, and cancels at the event that `cancel_at` counts.
struct Recorder {
  void ListenTo(CFolder& folder) {
    Listen(folder, [this](std::int32_t event, std::span<Variant> arguments) {
      EXPECT_FALSE(ToBoolean(arguments[1]));
      seen += " " + std::to_string(event) + ":" +
              ToUtf8(ToText(Call(*ToObject(arguments[0]), u"Path", MemberKind::kGet)));
      if (++events == cancel_at) arguments[1].Assign(true);
    });
  }
  int cancel_at = 0;
  std::string seen{};
  int events = 0;
};

TEST_F(Walks, DeliverByEventsInThePlaceOfListsUntilAListenerCancels) {
  const struct {
    int cancel_at;
    const char *contents, *files;
  } cases[] = {{0, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o 1:C:\\D\\x",
                " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a 2:C:\\D\\b 2:C:\\D\\o 2:C:\\D\\x"},
               {3, " 2:C:\\D\\a 2:C:\\D\\b 1:C:\\D\\o", " 2:C:\\D\\. 2:C:\\D\\.. 2:C:\\D\\a"}};
  for (const auto& c : cases) {
    const Ref<CFolder> folder = Engine().GetFolder(u"C:\\D");
    Recorder recorder{c.cancel_at};
    recorder.ListenTo(*folder);
    folder->PutAsyncFetch(true);
    Ref<CFolders> folders;
    Ref<CFiles> files;
    folder->GetFolderContents(folders, files);
    EXPECT_EQ(recorder.seen, c.contents);
    EXPECT_FALSE(folders || files);
    recorder = {c.cancel_at};
    EXPECT_FALSE(folder->GetFiles());
    EXPECT_EQ(recorder.seen, c.files);

    recorder = {};
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

  first = {};
  second = {1};
  walking->GetSubFolders();
  EXPECT_EQ(second.seen, " 1:C:\\D\\o");
  EXPECT_EQ(first.seen, second.seen);

  bystander = nullptr;  // listens no more, though nobody turned its AsyncFetch off
  first = {};
  walking->GetSubFolders();
  EXPECT_EQ(first.seen, " 1:C:\\D\\o 1:C:\\D\\x");
}

TEST_F(Walks, HandAListenersErrorToTheCaller) {
  const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
  for (Object* source :
       {static_cast<Object*>(folder.Get()), static_cast<Object*>(&StatusObject())}) {
    Listen(*source, [](auto, auto) { Raise(1234, u"Listener", u"Enough"); });
    folder->PutAsyncFetch(source == folder.Get());
    EXPECT_EQ(FailureOf([&] { folder->GetFiles(); }), u"1234|Listener|Enough");
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
  for (const bool async : {false, true}) {
    SweepFaults<StorageWorld>(
        {"FindNextFileW", "FindClose", "FileTimeToLocalFileTime", "FileTimeToSystemTime"},
        [async](StorageWorld&) {
          const Ref<CFolder> folder = At<CFolder>(u"C:\\D");
          folder->PutAsyncFetch(async);
          folder->GetFiles();
          folder->GetPathNames(true, true);
        },
        [](StorageWorld&, const std::string&, bool) {
          EXPECT_EQ(Apartment::Current().counters[Counter::kFile], 0);
          EXPECT_EQ(Apartment::Current().counters[Counter::kFolder], 0);
        });
  }
}

}  // namespace
}  // namespace veldmark
