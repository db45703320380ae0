#include "panels/reader/directory_reader.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#include "panel_fixture.h"
#include "panels/commands/selection.h"
#include "panels/model/panel_position.h"
#include "support/as_user.h"
#include "support/fault_hook.h"

namespace {

using Names = std::vector<std::string>;

class DirectoryReaderTest : public PanelTest {
 protected:
  DirectoryReaderTest() : panel(left()) { panel.path = dir.wide(); }

  Names read() {
    readDirectory(panel);
    return listed(panel);
  }
  void tag(const std::string& name) { changeTag(panel, *entryNamed(panel, name), TagMode::Tag); }

  TempDir dir;
  Panel& panel;
};

std::string decimal(int number, int width) {
  std::string text = std::to_string(number);
  return std::string(static_cast<size_t>(width) - text.size(), '0') + text;
}

constexpr int Many = 100000;

std::vector<std::string> shuffledNames(int count) {
  constexpr int Step = 7919;  // a prime: every name comes once
  std::vector<std::string> names;
  for (int64_t i = 0; i < count; ++i)
    names.push_back(decimal(static_cast<int>(i * Step % count), 6));
  return names;
}

}  // namespace

TEST_F(DirectoryReaderTest, ListsParentDirectoriesHiddenFilesAndFilesInThisOrder) {
  dir.write("file", "12345");
  dir.write(".profile", "");
  dir.makeDir("sub");
  dir.makeDir(".config");
  GlobalOptions::Hidden = true;
  EXPECT_EQ((Names{"..", ".config", "sub", ".profile", "file"}), read());
  EXPECT_EQ(SortGroup::Parent, panel.entries[0]->sortGroup);
  EXPECT_EQ(SortGroup::Directory, panel.entries[1]->sortGroup);
  EXPECT_EQ(SortGroup::HiddenFile, panel.entries[3]->sortGroup);
  EXPECT_EQ(SortGroup::File, panel.entries[4]->sortGroup);
  EXPECT_EQ(5u, panel.entries[4]->size);
}

TEST_F(DirectoryReaderTest, AnEmptyDirectoryHoldsItsParentOnly) {
  EXPECT_EQ((Names{".."}), read());
}

TEST_F(DirectoryReaderTest, WithoutHiddenTheParentAndDoubleDotNamesStay) {
  dir.write(".profile", "");
  dir.write("..foo", "");
  dir.makeDir(".git");
  GlobalOptions::Hidden = false;
  EXPECT_EQ((Names{"..", "..foo"}), read());
  EXPECT_EQ(SortGroup::HiddenFile, entryNamed(panel, "..foo")->sortGroup);
  EXPECT_TRUE(entryNamed(panel, "..foo")->isHidden());
}

TEST_F(DirectoryReaderTest, TheRootHasNoParentAndNoDoubleDotNames) {
  panel.path = L"/";
  GlobalOptions::Hidden = true;
  for (const std::string& name : read()) EXPECT_NE("..", name.substr(0, 2));
  EXPECT_GT(panel.count(), 0);

  panel.archive =
      std::make_unique<FakeArchive>(L"/", std::vector<std::string>{"..foo", "x"}, nullptr);
  EXPECT_EQ((Names{"x"}), read());
}

TEST_F(DirectoryReaderTest, ADanglingLinkIsNotListed) {
  dir.link("nowhere", "dangling");
  dir.link(".", "here");
  EXPECT_EQ((Names{"..", "here"}), read());
}

TEST_F(DirectoryReaderTest, ALinkToADirectorySortsWithTheDirectories) {
  dir.makeDir("real");
  dir.link("real", "zlink");
  dir.write("a", "");
  EXPECT_EQ((Names{"..", "real", "zlink", "a"}), read());
  const entry* link = entryNamed(panel, "zlink");
  EXPECT_TRUE(link->isDirectory());
  EXPECT_TRUE(link->isLink());
  EXPECT_EQ(SortGroup::Directory, link->sortGroup);
}

TEST_F(DirectoryReaderTest, ALinkToAFileShowsItsTargetsSize) {
  dir.write("target", "1234567");
  dir.link("target", "link");
  read();
  EXPECT_EQ(7u, entryNamed(panel, "link")->size);
  EXPECT_FALSE(entryNamed(panel, "link")->isDirectory());
}

TEST_F(DirectoryReaderTest, EveryReadForgetsTheLinkTargets) {
  dir.write("a", "");
  dir.write("b", "");
  dir.link("a", "link");
  read();
  EXPECT_EQ("a", bytes(panel.linkTargets.targetOf(dir.wide("link"))));
  unlink(dir.path("link").c_str());
  dir.link("b", "link");
  EXPECT_EQ("a", bytes(panel.linkTargets.targetOf(dir.wide("link"))));
  read();
  EXPECT_EQ("b", bytes(panel.linkTargets.targetOf(dir.wide("link"))));
}

TEST_F(DirectoryReaderTest, HostileNamesAreListedAndComeBackAsTheirBytes) {
  const Names hostile = {"\xFF\xFE",  "new\nline",    "-rf",       " ",
                         "tab\tname", "caf\xC3\xA9",  "\xC0\xAF",  std::string(255, 'n'),
                         "*",         "[x]",          "a\\b",      "...",
                         "12:30",     "\xE5\xAD\x97", "e\xCC\x81", "\x01\x1B[31m"};
  for (const std::string& name : hostile) dir.write(name, "x");
  GlobalOptions::Hidden = true;
  Names found = read();
  ASSERT_FALSE(found.empty());
  EXPECT_EQ("..", found[0]);
  std::sort(found.begin() + 1, found.end());
  Names expected = hostile;
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(expected, Names(found.begin() + 1, found.end()));
}

TEST_F(DirectoryReaderTest, TheFilterLeavesDirectoriesAlone) {
  dir.makeDir("sub.c");
  dir.makeDir("docs");
  dir.write("a.c", "");
  dir.write("a.h", "");
  panel.filter = L"*.c";
  EXPECT_EQ((Names{"..", "docs", "sub.c", "a.c"}), read());
}

TEST_F(DirectoryReaderTest, AnEmptyOrBlankFilterMatchesAll) {
  dir.write("a", "");
  for (const wchar_t* filter : {L"", L"   ", L"*"}) {
    panel.filter = filter;
    EXPECT_EQ((Names{"..", "a"}), read());
  }
}

TEST_F(DirectoryReaderTest, GrowsFrom4096ToTwiceThatAndOn) {
  for (int i = 0; i < 9000; ++i) dir.write("file" + decimal(i, 5), "");
  read();
  EXPECT_EQ(9001, panel.count());
  EXPECT_EQ(16384, panel.entries.capacity());
  EXPECT_EQ("file00000", toUtf8(panel.entries[1]->name()).data() + std::string());
  EXPECT_EQ("file08999", toUtf8(panel.entries[9000]->name()).data() + std::string());
}

TEST_F(DirectoryReaderTest, ARereadKeepsTheTagsOfNamesThatStillExist) {
  dir.write("a", "1");
  dir.write("b", "22");
  dir.write("c", "333");
  read();
  tag("a");
  tag("b");
  entryNamed(panel, "c")->wasTagged = 1;
  unlink(dir.path("a").c_str());
  dir.write("b", "4444");
  read();
  EXPECT_EQ((Names{"b"}), taggedNames(panel));
  EXPECT_EQ(1, panel.taggedCount);
  EXPECT_EQ(4, panel.taggedSize);
  EXPECT_TRUE(entryNamed(panel, "c")->wasTagged);
}

TEST_F(DirectoryReaderTest, TagsFollowTheExactName) {
  dir.write("Name", "");
  read();
  tag("Name");
  unlink(dir.path("Name").c_str());
  dir.write("name", "");
  read();
  EXPECT_EQ((Names{}), taggedNames(panel));
  EXPECT_EQ(0, panel.taggedCount);
}

TEST_F(DirectoryReaderTest, TagsEndInAnotherDirectoryAndInOneThatDiffersInCaseOnly) {
  for (const char* sub : {"Foo", "foo"}) {
    dir.makeDir(sub);
    dir.write(std::string(sub) + "/x", "1");
  }
  panel.path = dir.wide("Foo");
  read();
  tag("x");
  panel.path = dir.wide("foo");
  read();
  EXPECT_EQ((Names{}), taggedNames(panel));
  panel.path = dir.wide("Foo");
  read();
  EXPECT_EQ((Names{}), taggedNames(panel));
  EXPECT_EQ(0, panel.taggedSize);
}

// A hundred thousand squared would take minutes.
TEST_F(DirectoryReaderTest, RereadingManyTagsDoesNotTakeTheSquareOfThem) {
  dir.write("x.zip", "");
  panel.path = dir.wide("x.zip");
  panel.archive = std::make_unique<FlatArchive>(panel.path, shuffledNames(Many));
  readDirectory(panel);
  selectAll(panel, TagMode::Tag, 0);
  ASSERT_EQ(Many, panel.taggedCount);
  const auto start = std::chrono::steady_clock::now();
  readDirectory(panel);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  EXPECT_EQ(Many, panel.taggedCount);
  EXPECT_EQ(Many, panel.taggedSize);
}

TEST_F(DirectoryReaderTest, ReadingManySubdirectoriesDoesNotTakeTheSquareOfThem) {
  dir.write("x.zip", "");
  panel.path = dir.wide("x.zip");
  panel.archive =
      std::make_unique<FlatArchive>(panel.path, shuffledNames(Many), Attribute::Directory);
  const auto start = std::chrono::steady_clock::now();
  readDirectory(panel);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  ASSERT_EQ(Many, panel.subdirectories->count());
  EXPECT_EQ("000000", bytes(*panel.subdirectories->peek(0)));
  EXPECT_EQ("099999", bytes(*panel.subdirectories->peek(Many - 1)));
}

TEST_F(DirectoryReaderTest, TheCursorStaysOnItsName) {
  for (const char* name : {"b", "d", "f"}) dir.write(name, "");
  read();
  selectName(panel, L"d");
  dir.write("a", "");
  dir.write("c", "");
  read();
  EXPECT_EQ("d", currentName(panel));
}

TEST_F(DirectoryReaderTest, AVanishedNameLeavesTheCursorOnItsRowWithinTheList) {
  for (int i = 0; i < 30; ++i) dir.write("f" + decimal(i, 2), "");
  read();
  selectName(panel, L"f10");
  const int index = panel.currentIndex();
  unlink(dir.path("f10").c_str());
  read();
  EXPECT_EQ(index, panel.currentIndex());
  EXPECT_EQ("f11", currentName(panel));

  selectName(panel, L"f29");
  for (int i = 20; i < 30; ++i) unlink(dir.path("f" + decimal(i, 2)).c_str());
  read();
  EXPECT_EQ(panel.count() - 1, panel.currentIndex());
  EXPECT_EQ("f19", currentName(panel));
}

TEST_F(DirectoryReaderTest, WithoutANameUnderTheCursorTheListStartsAtItsTop) {
  for (int i = 0; i < 30; ++i) dir.write("f" + decimal(i, 2), "");
  panel.top = 3;
  panel.cursor = 4;
  read();
  EXPECT_EQ(0, panel.top);
  EXPECT_EQ(0, panel.cursor);
}

TEST_F(DirectoryReaderTest, SelectNameMovesTheTopToShowTheName) {
  fillNumbered(panel, 100);
  panel.pageSize = 10;
  selectName(panel, L"1050");
  EXPECT_EQ(41, panel.top);
  EXPECT_EQ(9, panel.cursor);
  selectName(panel, L"1003");
  EXPECT_EQ(3, panel.top);
  EXPECT_EQ(0, panel.cursor);
  selectName(panel, L"1005");
  EXPECT_EQ(3, panel.top);
  EXPECT_EQ(2, panel.cursor);
  selectName(panel, L"none");
  EXPECT_EQ(5, panel.currentIndex());
}

TEST_F(DirectoryReaderTest, SelectNameIsExact) {
  fill(panel, {"readme", "README"});
  selectName(panel, L"README");
  EXPECT_EQ(1, panel.currentIndex());
}

TEST_F(DirectoryReaderTest, SelectNameBeforeTheFirstDrawKeepsTheCursorInTheList) {
  Panel fresh;
  fill(fresh, {"a", "b", "c"});
  selectName(fresh, L"c");
  EXPECT_EQ(2, fresh.currentIndex());
  EXPECT_GE(fresh.cursor, 0);
}

TEST_F(DirectoryReaderTest, APanelThatIsOffOrShowsInfoReadsLater) {
  dir.write("a", "");
  panel.showing = false;
  EXPECT_EQ((Names{}), read());
  EXPECT_TRUE(panel.needsRead);
  panel.showing = true;
  panel.type = PanelType::Info;
  panel.needsRead = false;
  EXPECT_EQ((Names{}), read());
  EXPECT_TRUE(panel.needsRead);
  panel.type = PanelType::Files;
  EXPECT_EQ((Names{"..", "a"}), read());
  EXPECT_FALSE(panel.needsRead);
  EXPECT_TRUE(panel.needsDraw);
}

TEST_F(DirectoryReaderTest, RefreshReadsWhatShowsAndPostponesTheRest) {
  dir.write("a", "");
  right().path = dir.wide();
  right().showing = false;
  panelRefresh();
  EXPECT_EQ((Names{"..", "a"}), listed(panel));
  EXPECT_EQ((Names{}), listed(right()));
  EXPECT_TRUE(right().needsRead);
}

TEST_F(DirectoryReaderTest, ADirectoryThatHasGoneListsItsParentOnly) {
  dir.makeDir("sub");
  dir.write("sub/file", "");
  panel.path = dir.wide("sub");
  read();
  unlink(dir.path("sub/file").c_str());
  rmdir(dir.path("sub").c_str());
  EXPECT_EQ((Names{".."}), read());
  EXPECT_EQ(0, panel.readError);
  EXPECT_EQ(dir.path("sub"), bytes(panel.path));
}

TEST_F(DirectoryReaderTest, APathThatIsAFileLeadsUpToItsName) {
  dir.write("a", "");
  dir.write("file", "");
  panel.path = dir.wide("file");
  EXPECT_EQ((Names{"..", "a", "file"}), read());
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_EQ("file", currentName(panel));
}

TEST_F(DirectoryReaderTest, APathThatIsTooLongLeadsUpToWhatCanBeRead) {
  Westring path = dir.wide();
  while (path.length() < MaxPathLength) path = joinPath(path, Westring(L'n', 200));
  panel.path = path;
  read();
  EXPECT_LT(panel.path.length(), MaxPathLength);
  EXPECT_EQ((Names{".."}), listed(panel));  // none of the directories exists
}

TEST_F(DirectoryReaderTest, AnUnreadableDirectoryLeadsUpToItsName) {
  dir.openToAll();
  dir.makeDir("locked");
  dir.makeDir("open");
  dir.chmod("locked", 0);
  EXPECT_EQ(0, runAsUser([this] {
              panel.path = dir.wide("locked");
              EXPECT_EQ((Names{"..", "locked", "open"}), read());
              EXPECT_EQ(dir.path(), bytes(panel.path));
              EXPECT_EQ("locked", currentName(panel));
              EXPECT_EQ(0, panel.readError);
            }));
}

TEST_F(DirectoryReaderTest, UnreadableParentsLeadUpToTheFirstThatCanBeRead) {
  dir.openToAll();
  for (const char* sub : {"a", "a/b", "a/b/c"}) dir.makeDir(sub);
  dir.chmod("a/b/c", 0);
  dir.chmod("a/b", 0711);  // may be passed, not listed
  dir.chmod("a", 0711);
  EXPECT_EQ(0, runAsUser([this] {
              panel.path = dir.wide("a/b/c");
              EXPECT_EQ((Names{"..", "a"}), read());
              EXPECT_EQ(dir.path(), bytes(panel.path));
              EXPECT_EQ("a", currentName(panel));
            }));
}

TEST_F(DirectoryReaderTest, ADirectoryBelowAnUnreadableOneCanBeRead) {
  dir.openToAll();
  for (const char* sub : {"a", "a/b"}) dir.makeDir(sub);
  dir.write("a/b/file", "");
  dir.chmod("a", 0711);
  EXPECT_EQ(0, runAsUser([this] {
              panel.path = dir.wide("a/b");
              EXPECT_EQ((Names{"..", "file"}), read());
            }));
}

TEST_F(DirectoryReaderTest, WhereNothingMayBeLookedAtOnlyTheParentIsListed) {
  dir.openToAll();
  dir.makeDir("list");
  dir.write("list/file", "");
  dir.chmod("list", 0744);  // names may be read, nothing more
  EXPECT_EQ(0, runAsUser([this] {
              panel.path = dir.wide("list");
              EXPECT_EQ((Names{".."}), read());
            }));
}

TEST_F(DirectoryReaderTest, AnUnreadableRootIsAnErrorOfTheDrive) {
  panel.path = L"/";
  FaultHook fault("openDirectory", EACCES);
  EXPECT_EQ((Names{}), read());
  EXPECT_EQ(EACCES, panel.readError);
  EXPECT_EQ("/", bytes(panel.path));
}

TEST_F(DirectoryReaderTest, UnreadableUpToTheRootEndsThere) {
  dir.makeDir("a");
  panel.path = dir.wide("a");
  FaultHook fault("openDirectory", EACCES);
  read();
  EXPECT_EQ("/", bytes(panel.path));
  EXPECT_EQ(EACCES, panel.readError);
  EXPECT_EQ(-1, panel.depth);
}

TEST_F(DirectoryReaderTest, AnotherErrorIsKeptForTheStatusLineUntilAGoodRead) {
  dir.write("a", "");
  read();
  {
    FaultHook fault("openDirectory", EIO);
    EXPECT_EQ((Names{}), read());
    EXPECT_EQ(EIO, panel.readError);
    EXPECT_EQ(nullptr, panel.currentEntry());
  }
  EXPECT_EQ((Names{"..", "a"}), read());
  EXPECT_EQ(0, panel.readError);
}

TEST_F(DirectoryReaderTest, AnErrorInTheMiddleShowsWhatWasRead) {
  for (int i = 0; i < 5; ++i) dir.write("f" + decimal(i, 1), "");
  class FaultAfter {
   public:
    explicit FaultAfter(int good) : left_(good) { System::setHook(onCall, this); }
    ~FaultAfter() { System::setHook(nullptr, nullptr); }

   private:
    static int onCall(const char* call, const char*, void* self) {
      auto* fault = static_cast<FaultAfter*>(self);
      if (std::string(call) != "readDirectory") return 0;
      return --fault->left_ < 0 ? EIO : 0;
    }
    int left_;
  } fault(4);
  read();
  EXPECT_GE(panel.count(), 3);
  EXPECT_LE(panel.count(), 5);
  EXPECT_EQ(EIO, panel.readError);
}

TEST_F(DirectoryReaderTest, NoDescriptorsAreLeftOpen) {
  dir.write("a", "");
  const int before = open("/dev/null", O_RDONLY);
  close(before);
  for (int i = 0; i < 5; ++i) read();
  const int after = open("/dev/null", O_RDONLY);
  close(after);
  EXPECT_EQ(before, after);
}

TEST_F(DirectoryReaderTest, BreakEndsTheReadWithASortedPartOfTheListing) {
  dir.write("x.zip", "");
  panel.path = dir.wide("x.zip");
  Names files;
  for (int i = 100; i > 0; --i) files.push_back("f" + decimal(i, 3));
  auto archive = std::make_unique<FakeArchive>(panel.path, files, nullptr);
  archive->onNext = [](size_t n) {
    if (n == 10) requestBreak();
  };
  panel.archive = std::move(archive);
  read();
  ASSERT_EQ(12, panel.count());  // the parent and 11 files
  EXPECT_EQ("f090", toUtf8(panel.entries[1]->name()).data() + std::string());
  EXPECT_EQ("f100", toUtf8(panel.entries[11]->name()).data() + std::string());
  EXPECT_EQ(BreakState::Idle, breakState.load());
}

TEST_F(DirectoryReaderTest, TheBreakOfAnOperationAroundItDoesNotCutTheListing) {
  for (const char* name : {"a", "b", "c"}) dir.write(name, "");
  BreakScope operation;
  requestBreak();
  EXPECT_EQ((Names{"..", "a", "b", "c"}), read());
  EXPECT_TRUE(breakRequested());
}

TEST_F(DirectoryReaderTest, BreakMeansNothingBeforeARead) {
  dir.write("a", "");
  requestBreak();
  EXPECT_EQ((Names{"..", "a"}), read());
}

TEST_F(DirectoryReaderTest, SubdirectoriesAreToldListedOrNot) {
  RecordingTree tree;
  dir.makeDir("b");
  dir.makeDir("B");
  dir.makeDir(".hidden");
  dir.makeDir("..odd");
  dir.write("file", "123");
  dir.write(".secret", "4567");
  GlobalOptions::Hidden = false;
  panel.filter = L"nothing";
  read();
  // Also the bytes of what isn't listed.
  EXPECT_EQ((Names{"read " + dir.path() + ": ..odd .hidden B b, 7 bytes"}), tree.calls);
}

TEST_F(DirectoryReaderTest, KnownTotalsStandForTheSizesOfDirectories) {
  RecordingTree tree;
  dir.makeDir("counted");
  dir.makeDir("unknown");
  tree.totals = {{dir.path("counted"), 4096}};
  GlobalOptions::RetainCount = true;
  read();
  EXPECT_EQ(4096u, entryNamed(panel, "counted")->size);
  EXPECT_EQ(1, entryNamed(panel, "counted")->level);
  EXPECT_EQ(0u, entryNamed(panel, "unknown")->size);
  EXPECT_EQ(0, entryNamed(panel, "unknown")->level);
  GlobalOptions::RetainCount = false;
  tree.calls.clear();
  read();
  EXPECT_EQ(1u, tree.calls.size());  // nothing is asked
  EXPECT_EQ(0, entryNamed(panel, "counted")->level);
}

TEST_F(DirectoryReaderTest, ATreeStylePanelShowsTheTreeInsteadOfFiles) {
  dir.write("a", "");
  panel.style = PanelStyle::Tree;
  EXPECT_EQ((Names{}), read());  // no tree is connected
  RecordingTree tree;
  EXPECT_EQ((Names{"/"}), read());
  EXPECT_EQ((Names{"fill"}), tree.calls);
}

TEST_F(DirectoryReaderTest, TheParentMadeByTheReaderIsADirectoryAndNothingElse) {
  dir.write("x.zip", "");
  panel.path = dir.wide("x.zip");
  panel.archive =
      std::make_unique<FakeArchive>(panel.path, std::vector<std::string>{"..foo", "a"}, nullptr);
  GlobalOptions::Hidden = true;
  EXPECT_EQ((Names{"..", "..foo", "a"}), read());  // a name like it doesn't stand for it
  const entry* parent = panel.entries[0];
  EXPECT_EQ(Attribute::Directory, parent->attributes);
  EXPECT_EQ(SortGroup::Parent, parent->sortGroup);
  EXPECT_EQ(0u, parent->size);
  EXPECT_EQ(0, parent->date);
}

TEST_F(DirectoryReaderTest, ArchivesAreLeftWhenThePathLeavesThemOrTheFileHasGone) {
  FakeArchive::Log log;
  dir.write("x.zip", "");
  panel.path = dir.wide("x.zip");
  panel.archive = std::make_unique<FakeArchive>(panel.path, std::vector<std::string>{"a"}, &log);
  EXPECT_EQ((Names{"..", "a"}), read());
  unlink(dir.path("x.zip").c_str());
  log.clear();
  EXPECT_EQ((Names{".."}), read());
  EXPECT_EQ(nullptr, panel.archive);
  EXPECT_EQ((FakeArchive::Log{"close " + dir.path("x.zip")}), log);
}

TEST_F(DirectoryReaderTest, ADirectoryThatTheArchiveDoesNotHoldIsLeftForTheNearestAbove) {
  dir.write("x.zip", "");
  panel.archive =
      std::make_unique<FakeArchive>(dir.wide("x.zip"), std::vector<std::string>{"a/b"}, nullptr);
  panel.path = dir.wide("x.zip/a/gone/deep");
  EXPECT_EQ((Names{"..", "b"}), read());
  EXPECT_EQ(bytes(panel.path), dir.path("x.zip/a"));
  EXPECT_EQ(0, panel.readError);
}

TEST_F(DirectoryReaderTest, AnArchiveThatMayNotBeReadIsLeftForItsFile) {
  class Locked : public FakeArchive {
   public:
    using FakeArchive::FakeArchive;
    int first(const Westring&, entry*&) override { return EACCES; }
  };
  dir.write("a", "");
  dir.write("x.zip", "");
  FakeArchive::Log log;
  panel.archive = std::make_unique<Locked>(dir.wide("x.zip"), Names{}, &log);
  panel.path = dir.wide("x.zip");
  EXPECT_EQ((Names{"..", "a", "x.zip"}), read());
  EXPECT_EQ("x.zip", currentName(panel));
  EXPECT_EQ((FakeArchive::Log{"close " + dir.path("x.zip")}), log);
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(DirectoryReaderTest, AListedNameOfTwentyCharactersCostsAtMost200Bytes) {
  constexpr int Count = 20000;
  for (int i = 0; i < Count; ++i) close(creat(dir.path("file" + decimal(i, 16)).c_str(), 0644));
  Panel fresh;
  fresh.path = dir.wide();
  const struct mallinfo2 before = mallinfo2();
  EXPECT_EQ(0, readListing(fresh));
  const struct mallinfo2 after = mallinfo2();
  const size_t used = after.uordblks + after.hblkhd - before.uordblks - before.hblkhd;
  EXPECT_EQ(Count + 1, fresh.count());
  EXPECT_LE(used / Count, 200u);
}

TEST_F(DirectoryReaderTest, OneLookAtEachNameAndASecondOneForLinks) {
  for (const char* name : {"a", "b", "c"}) dir.write(name, "");
  dir.link("a", "link");
  FaultHook counter;
  EXPECT_EQ(0, readListing(panel));
  // a, b, c, link, "." and "..", and the link's target
  EXPECT_EQ(7, counter.calls("statAt"));
}
