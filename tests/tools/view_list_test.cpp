#include "tools/view_list.h"

#include "editor/text/file_status_store.h"
#include "filecommands/archive_actions.h"
#include "options/colours.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "tools/tools_test.h"

namespace {

class ViewListTest : public ToolsTest {
 protected:
  void SetUp() override {
    ToolsTest::SetUp();
    fileStatusStore().clear();
    left().path = leftDir.wide();
    right().path = rightDir.wide();
    openWindows();
  }
  void TearDown() override {
    drainEvents();
    ToolsTest::TearDown();
  }

  void readAndMoveTo(const std::string& name) {
    readDirectory(left());
    for (int i = 0; i < left().count(); ++i) {
      if (nameAt(i) == name) left().cursor = i - left().top;
    }
    ASSERT_EQ(current(), name);
  }
  std::string nameAt(int index) { return toUtf8(left().entries[index]->name()).data(); }
  std::string current() { return nameAt(left().currentIndex()); }
  static bool wasViewed(const Westring& path) { return fileStatusStore().find(path) != nullptr; }
  bool wasViewed(const std::string& name) const { return wasViewed(leftDir.wide(name)); }

  void queue(std::initializer_list<Key::Code> keys) {
    for (Key::Code key : keys) queueKey(key);
  }
};

TEST_F(ViewListTest, TheFileUnderTheCursorIsViewedAndThePanelsAreThereAgain) {
  leftDir.write("one", "text of one");
  readAndMoveTo("one");
  drawPanel(left());
  drawCursor(0, CursorBar::On);
  const std::string before = screenText();
  std::string shown;
  Beside user([&] {
    waitUntil([&] { return (shown = rowText(1)).starts_with("text of one"); });
    queueKey(Key::Esc);
  });
  viewList(left());
  EXPECT_EQ(shown.substr(0, 12), "text of one ");
  EXPECT_EQ(screenText(), before);
}

TEST_F(ViewListTest, AltDownAndAltUpGoFromFileToFileAndPassDirectoriesOver) {
  for (const char* name : {"a", "b", "c"}) leftDir.write(name, name);
  leftDir.makeDir("directory");
  readAndMoveTo("a");
  queue({Key::AltDown, Key::AltDown, Key::AltUp, Key::Esc});
  viewList(left());
  for (const char* name : {"a", "b", "c"}) EXPECT_TRUE(wasViewed(name)) << name;
  EXPECT_EQ(current(), "b");
}

TEST_F(ViewListTest, BothWaysOutLeaveTheCursorOnTheLastFileViewed) {
  for (const char* name : {"a", "b"}) leftDir.write(name, name);
  for (Key::Code key : {Key::Esc, Key::F10}) {
    readAndMoveTo("a");
    queue({Key::AltDown, key});
    viewList(left());
    EXPECT_EQ(current(), "b");
  }
}

TEST_F(ViewListTest, BehindTheLastFileAWindowTellsAndTheSameFileIsViewedAgain) {
  leftDir.makeDir("directory");
  leftDir.write("only", "the only file");
  readAndMoveTo("only");
  std::string shown;
  int bar = 0;
  Beside user([&] {
    queueKey(Key::AltUp);
    EXPECT_TRUE(waitToShow("No more files"));
    shown = screenText();
    bar = attrAt(1, rowWith("only"));
    EXPECT_TRUE(waitUntil([&] { return rowText(1).starts_with("the only file"); }));
    queueKey(Key::Esc);
  });
  viewList(left());
  EXPECT_EQ(shown.find("View:"), std::string::npos) << "over the panels";
  EXPECT_EQ(bar, colourOf(Colour::Highlight)) << "the cursor's bar is where it was";
  EXPECT_EQ(current(), "only");
}

TEST_F(ViewListTest, AFileThatIsGoneIsPassedOver) {
  for (const char* name : {"a", "b", "c"}) leftDir.write(name, name);
  readAndMoveTo("a");
  std::filesystem::remove(leftDir.path("b"));
  queue({Key::AltDown, Key::Esc});
  viewList(left());
  EXPECT_EQ(current(), "c");
  EXPECT_FALSE(wasViewed("b"));
}

TEST_F(ViewListTest, AnEntryTellsWhatItsFileIsByThen) {
  leftDir.write("log", "short");
  readAndMoveTo("log");
  entry* item = left().currentEntry();
  item->tagged = 1;
  left().taggedCount = 1;
  left().taggedSize = 5;
  leftDir.write("log", "longer than it was");
  queue({Key::Esc});
  viewList(left());
  EXPECT_EQ(left().currentEntry(), item);
  EXPECT_EQ(item->size, 18u);
  EXPECT_EQ(left().taggedSize, 18);
  EXPECT_TRUE(shows("18\u2502")) << "its row is drawn anew";
}

TEST_F(ViewListTest, AMemberOfAnArchiveIsViewedAsATemporaryFile) {
  struct Extractor : ArchiveActions {
    explicit Extractor(const TempDir& directory) : directory_(directory) {}
    Westring extract(Panel&, const Westring& name) override {
      taken += std::string(toUtf8(name.data()).data()) + " ";
      return name == Westring(L"broken") ? Westring() : directory_.wide(toUtf8(name.data()).data());
    }
    const TempDir& directory_;
    std::string taken;
  } extractor(rightDir);
  archiveActions().connect(extractor);
  rightDir.write("first", "1");
  rightDir.write("second", "2");
  readDirectory(left());
  fill(left(), {"first", "second"});
  left().archive = std::make_unique<FlatArchive>(L"/x.zip", std::vector<std::string>{});
  queue({Key::AltDown, Key::Esc});
  viewList(left());
  EXPECT_EQ(extractor.taken, "first second ");
  EXPECT_TRUE(wasViewed(rightDir.wide("second")));
  EXPECT_EQ(current(), "second");
  fill(left(), {"broken"});
  left().cursor = 0;
  viewList(left());
  EXPECT_EQ(extractor.taken, "first second broken ") << "and nothing is viewed";
  archiveActions().disconnect();
  left().archive.reset();
}

TEST_F(ViewListTest, WithoutAnEntryNothingHappens) {
  left().entries.clear();
  viewList(left());
  EXPECT_EQ(fileStatusStore().count(), 0);
}

}  // namespace
