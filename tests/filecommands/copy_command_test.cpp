#include <functional>

#include "filecommands/command_test.h"
#include "filecommands/copy_dialog.h"
#include "filecommands/entry_path.h"
#include "filecommands/history_windows.h"
#include "history/history_store.h"

namespace {

class CopyCommandTest : public CommandTest {
 protected:
  void copyWith(const std::vector<Step>& steps, int flags = 0) {
    play(steps, [&] { copyCommand(left(), flags); });
  }
  void copyTo(const std::string& destination, const std::vector<Step>& steps = {}, int flags = 0) {
    const Westring text = decodeFileName(destination.c_str());
    play(steps, [&] { copyCommand(left(), flags, &text); });
  }
};

constexpr int Move = CopyFlag::Move;
constexpr int Bare = CopyFlag::BareName;

}  // namespace

TEST_F(CopyCommandTest, OneFileGoesToTheOtherPanelsDirectory) {
  file("left/some file.txt", "content");
  show("some file.txt");
  copyWith({{"Copy \"some file.txt\" to", {Key::Enter}, "copy_one"}});
  EXPECT_EQ(dir.read("right/some file.txt"), "content");
  EXPECT_EQ(currentName(left()), "some file.txt");
  EXPECT_NE(entryNamed(right(), "some file.txt"), nullptr) << "both panels were read again";
  EXPECT_EQ(screenText(), before_) << "every window is gone";
}

TEST_F(CopyCommandTest, AfterARenameThePanelShowsTheCursorOnTheNewName) {
  for (const char* name : {"left/a", "left/b"}) file(name);
  show("a");
  openWindows();
  copyWith({{"Move/Rename \"a\" to", {Key::Enter}, "", "renamed"}}, Move | Bare);
  EXPECT_GE(rowWith("renamed"), 0) << "drawn at once";
  EXPECT_EQ(currentName(left()), "renamed");
}

TEST_F(CopyCommandTest, TaggedFilesAreCountedInTheLine) {
  for (const char* name : {"left/a", "left/b", "left/c"}) file(name);
  show("c");
  tag("a");
  copyWith({{"Copy 1 file  to", {Key::Esc}}});
  tag("b");
  copyWith({{"Copy 2 files to", {Key::Esc}, "copy_tagged"}});
  copyWith({{"Move 2 files to", {Key::Esc}, "move_tagged"}}, Move);
  EXPECT_TRUE(dir.exists("left/a"));
}

TEST_F(CopyCommandTest, MovingHasItsOwnTitleAndLine) {
  file("left/a");
  show("a");
  copyWith({{"Move/Rename \"a\" to", {Key::Enter}, "move_one"}}, Move);
  EXPECT_FALSE(dir.exists("left/a"));
  EXPECT_TRUE(dir.exists("right/a"));
}

TEST_F(CopyCommandTest, ALongNameIsCutInTheLine) {
  const std::string name = "left/" + std::string(100, 'n');
  file(name);
  show(std::string(100, 'n'));
  copyWith({{"Copy \"" + std::string(54, 'n'), {Key::Esc}}});
}

TEST_F(CopyCommandTest, EscAndAnEmptyFieldEndTheCommand) {
  file("left/a");
  show("a");
  copyWith({{"Copy \"a\" to", {Key::Esc}}});
  copyWith({{"Copy \"a\" to", {Key::Enter}, "", " "}});
  EXPECT_EQ(contents(dir.path("right")).size(), 0U);
}

TEST_F(CopyCommandTest, TheFirstLetterReplacesTheProposal) {
  file("left/a");
  show("a");
  copyWith({{"Copy \"a\" to", {Key::Enter}, "", "new name"}});
  EXPECT_TRUE(dir.exists("left/new name"));
}

TEST_F(CopyCommandTest, TheBareNameFlagProposesTheNameAndRenameFollowsWithTheCursor) {
  for (const char* name : {"left/a", "left/b", "left/z"}) file(name);
  show("a");
  copyWith({{"Move/Rename \"a\" to", {Key::Enter}, "rename_bare", "y renamed"}}, Move | Bare);
  EXPECT_TRUE(dir.exists("left/y renamed"));
  EXPECT_EQ(currentName(left()), "y renamed");
}

TEST_F(CopyCommandTest, AFailedRenameLeavesTheCursor) {
  for (const char* name : {"left/a", "left/b"}) file(name);
  show("a");
  copyWith({{"Move/Rename \"a\" to", {Key::Enter}, "", "b"},
            {"File already exists, Overwrite?", {Key::Code(Answer::Skip)}, "overwrite_move"}},
           Move | Bare);
  EXPECT_EQ(currentName(left()), "a");
  EXPECT_TRUE(dir.exists("left/a"));
}

TEST_F(CopyCommandTest, TheThreeToggleKeysSwitchBetweenNameAndPath) {
  file("left/a");
  show("a");
  for (const Key::Code key : {Key::AltD, Key::F5, Key::F6}) {
    copyWith({{dir.path("right/a"), {key}}, {"a" + std::string(71, ' ') + "↓", {Key::Esc}}});
  }
}

TEST_F(CopyCommandTest, TogglingTakesTheDirectoryOffOrPutsTheOtherOneInFront) {
  EXPECT_EQ(bytes(toggledDirectory(L"/a/b/c", L"/other")), "c");
  EXPECT_EQ(bytes(toggledDirectory(L"c", L"/other")), "/other/c");
  EXPECT_EQ(bytes(toggledDirectory(L"c", L"/")), "/c");
  EXPECT_EQ(bytes(toggledDirectory(L"c", L"")), "c");
  EXPECT_EQ(bytes(toggledDirectory(L"/a/", L"/other")), "");
}

namespace {

// The window of the histories: takes down what stands in the field of the copy dialog of "a".
class FieldWatch : public HistoryWindows {
 public:
  using RowText = std::function<std::string(int x, int y, int width)>;
  explicit FieldWatch(RowText rowText) : rowText_(std::move(rowText)) {
    historyWindows().connect(*this);
  }
  ~FieldWatch() override { historyWindows().disconnect(); }
  Westring chooseDirectory() override {
    const std::string label = "Copy \"a\" to";
    const int width = static_cast<int>(label.size());
    for (int y = 0; y < console->rows(); ++y) {
      for (int x = 0; x + width < console->columns(); ++x) {
        if (rowText_(x, y, width) == label) seen = rowText_(x, y + 2, FieldWidth);
      }
    }
    seen.erase(seen.find_last_not_of(' ') + 1);
    return Westring();
  }
  std::string seen;

 private:
  static constexpr int FieldWidth = 72;
  RowText rowText_;
};

class PickingTree : public DirectoryTree {
 public:
  PickingTree() { directoryTree().connect(*this); }
  ~PickingTree() override { directoryTree().disconnect(); }
  Westring choose(Panel&, TreeWindowUse given) override {
    use = given;
    return L"/picked/from/tree";
  }
  std::optional<TreeWindowUse> use;
};

class PickingHistory : public HistoryWindows {
 public:
  PickingHistory() { historyWindows().connect(*this); }
  ~PickingHistory() override { historyWindows().disconnect(); }
  Westring chooseDirectory() override { return L"/picked/from/history"; }
};

}  // namespace

TEST_F(CopyCommandTest, WithoutAnOrdinaryOtherPanelTheBareNameIsProposed) {
  file("left/a");
  const auto proposal = [&] {
    show("a");
    FieldWatch watch([this](int x, int y, int width) { return rowText(x, y, width); });
    play({{"Copy \"a\" to", {Key::AltBackslash, Key::Esc}}}, [&] { copyCommand(left(), 0); });
    return watch.seen;
  };
  EXPECT_EQ(proposal(), dir.path("right/a"));
  right().type = PanelType::Info;
  EXPECT_EQ(proposal(), "a");
  right().type = PanelType::Files;
  right().style = PanelStyle::Tree;
  EXPECT_EQ(proposal(), "a");
  {
    const OnePathTree tree(L"/from/the/tree");
    EXPECT_EQ(proposal(), "/from/the/tree/a");
  }
  right().style = PanelStyle::Full;
  right().showing = false;
  EXPECT_EQ(proposal(), "a");
}

TEST_F(CopyCommandTest, TheSideButtonsDoNothingUntilConnectedAndFillTheFieldThen) {
  file("left/a");
  show("a");
  copyWith({{"Copy \"a\" to", {Key::F10, Key::AltBackslash, Key::Esc}}});
  PickingTree tree;
  PickingHistory history;
  copyWith({{"Copy \"a\" to", {Key::F10}},
            {"/picked/from/tree", {Key::AltBackslash}},
            {"/picked/from/history/", {Key::Esc}}});
  EXPECT_EQ(tree.use, TreeWindowUse::Field);
}

TEST_F(CopyCommandTest, OnTwoDotsWithNothingTaggedNothingHappens) {
  show("..");
  run([&] { copyCommand(left(), 0); });
  run([&] { copyCommand(left(), Move); });
  EXPECT_EQ(screenText(), before_);
}

TEST_F(CopyCommandTest, APanelWithoutEntriesDoesNothing) {
  Panel empty;
  empty.path = dir.wide("left");
  run([&] { copyCommand(empty, 0); });
}

TEST_F(CopyCommandTest, AnInvalidPathIsToldWithTheText) {
  file("left/a");
  show("a");
  copyTo("12:30", {{"Invalid path", {Key::Enter}, "invalid_path"}});
  EXPECT_EQ(contents(dir.path("right")).size(), 0U);
}

TEST_F(CopyCommandTest, ADestinationInASlashTakesTheName) {
  file("left/a");
  dir.makeDir("left/sub");
  show("a");
  copyTo("sub/");
  EXPECT_TRUE(dir.exists("left/sub/a"));
  copyTo("..");
  EXPECT_TRUE(dir.exists("a"));
  copyTo("*.bak");
  EXPECT_TRUE(dir.exists("left/a.bak"));
}

TEST_F(CopyCommandTest, TaggedFilesNeedADirectory) {
  for (const char* name : {"left/a", "left/b", "right/file"}) file(name);
  show("a");
  tag("a");
  tag("b");
  copyTo(dir.path("right/file"),
         {{"Destination must be a valid directory", {Key::Enter}, "no_directory"}});
  copyTo(dir.path("missing"), {{"Destination must be a valid directory", {Key::Enter}}});
  copyTo(dir.path("missing/"), {{"Directory does not exist", {Key::Enter}}});
  copyTo(dir.path("missing/*.bak"), {{"Directory does not exist", {Key::Enter}}});
  EXPECT_TRUE(isTagged("a"));
  copyTo(dir.path("right/*.bak"));
  EXPECT_TRUE(dir.exists("right/a.bak"));
  EXPECT_TRUE(dir.exists("right/b.bak"));
}

TEST_F(CopyCommandTest, TaggedFilesMayGoToADevice) {
  for (const char* name : {"left/a", "left/b"}) file(name);
  show("a");
  tag("a");
  tag("b");
  copyTo("/dev/null");
  EXPECT_FALSE(isTagged("a"));
}

TEST_F(CopyCommandTest, WhatWasDoneLosesItsTagAndWhatStayedKeepsIt) {
  for (const char* name : {"left/a", "left/b", "left/c", "right/b"}) file(name);
  show("a");
  for (const char* name : {"a", "b", "c"}) tag(name);
  copyTo(dir.path("right"),
         {{"File already exists, Overwrite?", {Key::Code(Answer::Skip)}, "overwrite_copy"}});
  EXPECT_EQ(taggedNames(left()), Texts{"b"});
  restoreSelection(left());
  EXPECT_EQ(taggedNames(left()), (Texts{"a", "c"}));
}

TEST_F(CopyCommandTest, CancelStopsTheWalkAndTheRestStaysTagged) {
  for (const char* name : {"left/a", "left/b", "left/c", "right/b"}) file(name);
  show("a");
  for (const char* name : {"a", "b", "c"}) tag(name);
  copyTo(dir.path("right"), {{"File already exists, Overwrite?", {Key::Esc}}});
  EXPECT_EQ(taggedNames(left()), (Texts{"b", "c"}));
  EXPECT_FALSE(dir.exists("right/c"));
}

TEST_F(CopyCommandTest, AnAnswerForAllHoldsForThisCommandOnly) {
  for (const char* name : {"left/a", "left/b", "right/a", "right/b"}) file(name);
  show("a");
  for (const char* name : {"a", "b"}) tag(name);
  copyTo(dir.path("right"), {{"File already exists, Overwrite?", {Key::Code(Answer::All)}}});
  show("a");
  for (const char* name : {"a", "b"}) tag(name);
  copyTo(dir.path("right"), {{"File already exists, Overwrite?", {Key::Code(Answer::None)}}});
}

TEST_F(CopyCommandTest, EscInTheQueueStopsAfterTheFile) {
  for (const char* name : {"left/a", "left/b", "left/c"}) file(name);
  show("a");
  for (const char* name : {"a", "b", "c"}) tag(name);
  queueKey(Key::Esc);
  const Westring text = dir.wide("right");
  copyCommand(left(), 0, &text);
  EXPECT_EQ(taggedNames(left()).size(), 3U) << "the first look comes while the file is copied";
  EXPECT_TRUE(contents(dir.path("right")).empty());
}

TEST_F(CopyCommandTest, TheTreeHearsOfMovedDirectories) {
  dir.makeDir("left/d1");
  dir.makeDir("left/d2");
  file("left/f");
  show("d1");
  TreeLog log;
  copyTo(dir.path("right/"), {}, Move);
  EXPECT_EQ(log.calls,
            (Texts{"renamed " + dir.path("left/d1") + " " + dir.path("right/d1"), "save"}));
  log.calls.clear();
  show("f");
  tag("d2");
  tag("f");
  copyTo(dir.path("right/"), {}, Move);
  EXPECT_EQ(log.calls,
            (Texts{"renamed " + dir.path("left/d2") + " " + dir.path("right/d2"), "save"}));
  log.calls.clear();
  show("..");
  EXPECT_TRUE(log.calls.empty());
}

TEST_F(CopyCommandTest, TheProposalWithAColonAndABackslashIsTakenAsItIs) {
  for (const char* name : {"right/w:x", "right/w:x/b\\c"}) dir.makeDir(name);
  file("left/12:30 ...", "content");
  right().path = dir.wide("right/w:x/b\\c");
  show("12:30 ...");
  copyWith({{"Copy \"12:30 ...\" to", {Key::Enter}}});
  EXPECT_EQ(dir.read("right/w:x/b\\c/12:30 ..."), "content");
}

TEST_F(CopyCommandTest, TheDestinationIsRemembered) {
  file("left/a");
  show("a");
  copyWith({{"Copy \"a\" to", {Key::Enter}}});
  FnStringStore& store = *fieldHistory(FieldHistory::Destination);
  ASSERT_GT(store.count(), 0);
  EXPECT_EQ(bytes(*store.peek(store.count() - 1)), dir.path("right/a"));
}

TEST_F(CopyCommandTest, TheFieldHolds512Characters) {
  file("left/a");
  show("a");
  copyWith({{"Copy \"a\" to", {Key::Enter}, "", std::string(600, 'x')},
            {"Name too long", {Key::Enter}}});
  FnStringStore& store = *fieldHistory(FieldHistory::Destination);
  EXPECT_EQ(bytes(*store.peek(store.count() - 1)), std::string(512, 'x'));
}

TEST_F(CopyCommandTest, TheProgressWindowShowsWhatIsCopied) {
  for (const char* name : {"left/a", "left/b"}) file(name, std::string(1000, 'x'));
  file("right/b");
  show("a");
  tag("a");
  tag("b");
  copyTo(dir.path("right"), {{"(2 of 2)", {Key::Code(Answer::Skip)}, "progress_behind_question"}});
}

TEST_F(CopyCommandTest, TheOtherQuestionsLookAsTheyShould) {
  file("left/a");
  dir.makeDir("left/d");
  show("a");
  copyTo(dir.path("left/a"), {{"File cannot overwrite itself", {Key::Enter}, "itself"}});
  show("d");
  copyTo(dir.path("left/d/e"),
         {{"Directory cannot be copied into itself", {Key::Enter}, "into_itself"}});
  show("a");
  copyTo(dir.path("missing/x"), {{"File not found", {Key::Enter}, "file_not_found"}});
}

TEST_F(CopyCommandTest, ManyTaggedFilesTakeTimeInProportion) {
  const auto seconds = [&](int count) {
    TempDir many;
    many.makeDir("from");
    many.makeDir("to");
    for (int i = 0; i < count; ++i) writeFile(many.path("from/f" + std::to_string(i)), "");
    left().path = many.wide("from");
    right().path = many.wide("to");
    panelRefresh();
    for (entry* item : left().entries) changeTag(left(), *item, TagMode::Tag);
    const Westring text = many.wide("to");
    const auto before = std::chrono::steady_clock::now();
    copyCommand(left(), 0, &text);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - before;
    EXPECT_EQ(left().taggedCount, 0);
    EXPECT_EQ(right().count(), count + 1);
    return took.count();
  };
  if (access("/dev/shm", W_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);
  const double few = seconds(5000);
  const double many = seconds(50000);
  unsetenv("TMPDIR");
  EXPECT_LT(many, few * 25) << few << " s for a tenth";
}

TEST_F(CopyCommandTest, OnlyAReadableOrdinaryDirectoryIsADestination) {
  Panel& other = right();
  EXPECT_EQ(bytes(destinationDirectory(other)), dir.path("right"));
  other.readError = EACCES;
  EXPECT_EQ(bytes(destinationDirectory(other)), "");
  other.readError = 0;
  other.archive = std::make_unique<FakeArchive>(other.path, std::vector<std::string>{}, nullptr);
  EXPECT_EQ(bytes(destinationDirectory(other)), "");
  other.archive.reset();
  other.showing = false;
  EXPECT_EQ(bytes(destinationDirectory(other)), "");
}

TEST_F(CopyCommandTest, ANameWithAStarIsProposedAndTakenAsItIs) {
  for (const char* name : {"a*b", "what?.txt"}) {
    file(std::string("left/") + name);
    show(name);
    copyWith({{"Copy \"", {Key::Enter}}});
    EXPECT_TRUE(dir.exists(std::string("right/") + name)) << name;
  }
  EXPECT_EQ(contents(dir.path("right")).size(), 2U);
}

TEST_F(CopyCommandTest, TheCursorsStayOnTheirNamesInBothPanels) {
  for (const char* name : {"left/a", "left/b", "right/m", "right/z"}) file(name);
  show("b");
  selectName(right(), L"m");
  copyTo(dir.path("right"));
  EXPECT_EQ(currentName(left()), "b");
  EXPECT_EQ(currentName(right()), "m");
}

TEST_F(CopyCommandTest, AMoveToAnotherDeviceKnowsHowMuchThereIs) {
  const auto other = onAnotherFileSystem(dir.path());
  if (!other) GTEST_SKIP() << "there is only one file system";
  dir.makeDir("left/tree");
  other->makeDir("tree");
  for (const char* name : {"tree/a", "tree/b", "tree/c"}) {
    file(std::string("left/") + name, std::string(100000, 'x'));
    other->write(name, "in the way");
  }
  show("tree");
  // A third of the bytes at the second question.
  copyTo(other->path() + "/",
         {{"File already exists, Overwrite?", {Key::Code(Answer::Yes)}},
          {"████████████░░░░░░░░░░░░░", {Key::Esc}}},
         Move);
  EXPECT_TRUE(dir.exists("left/tree"));
}
