#include "tools/directory_sizes.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "foundation/system.h"

#include "panels/commands/change_directory.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/selection.h"
#include "panels/model/panel_position.h"
#include "tools/tools_test.h"

namespace {

class DirectorySizes : public ToolsTest {
 protected:
  void SetUp() override {
    ToolsTest::SetUp();
    for (const char* name : {"one", "one/deep", "two"}) leftDir.makeDir(name);
    leftDir.write("one/a", std::string(1000, 'x'));
    leftDir.write("one/deep/b", std::string(234, 'x'));
    leftDir.write("two/c", std::string(50, 'x'));
    leftDir.write("file", std::string(7, 'x'));
    leftDir.link("two", "linked");
    goToPath(left(), leftDir.wide());
    openWindows();
  }
  entry& item(const std::string& name) { return *entryNamed(left(), name); }
  void countAt(const std::string& name) {
    selectName(left(), decodeFileName(name.c_str()).data());
    countDirectorySizes(left());
  }
};

TEST_F(DirectorySizes, TheDirectoryUnderTheCursorShowsItsBytes) {
  countAt("one");
  EXPECT_EQ(item("one").size, 1234u);
  EXPECT_EQ(item("one").level, 1);
  EXPECT_EQ(item("two").level, 0);
  EXPECT_TRUE(shows("1,234") || shows("1234"));
  EXPECT_FALSE(shows("Reading Directories"));
}

TEST_F(DirectorySizes, InAnArchiveWhatItHoldsIsCounted) {
  const ArchivesAreOpened opener;
  leftDir.write("pack.zip", zipArchive({{"dir/deep/er/a", "12345"}, {"dir/b", "678"}, {"c", "x"}}));
  goToPath(left(), leftDir.wide("pack.zip"));
  GlobalOptions::SizeCountPause = true;
  const Beside user([this] {
    EXPECT_TRUE(waitToShow("[ OK ]")) << screenText();
    EXPECT_TRUE(shows("Directories: 2 ")) << screenText();
    EXPECT_TRUE(shows("pack.zip/dir")) << screenText();
    queueKey(Key::Enter);
  });
  countAt("dir");
  EXPECT_EQ(item("dir").size, 8u);
  EXPECT_EQ(item("dir").level, 1);
}

TEST_F(DirectorySizes, FilesLinksAndTheParentEntryAreLeftAlone) {
  countAt("file");
  EXPECT_EQ(item("file").size, 7u);
  countAt("linked");
  EXPECT_EQ(item("linked").level, 0);
  countAt("..");
  EXPECT_EQ(item("..").level, 0);
}

TEST_F(DirectorySizes, TaggedDirectoriesAreCountedAndTheSumIsCorrected) {
  for (const char* name : {"one", "two", "file"}) {
    selectName(left(), decodeFileName(name).data());
    toggleTag(left(), left().currentIndex(), TagMode::Tag);
  }
  EXPECT_EQ(left().taggedSize, 7);
  countAt("..");
  EXPECT_EQ(item("one").size, 1234u);
  EXPECT_EQ(item("two").size, 50u);
  EXPECT_EQ(left().taggedSize, 1234 + 50 + 7);
  countAt("one");
  EXPECT_EQ(left().taggedSize, 1234 + 50 + 7) << "counted again";
}

TEST_F(DirectorySizes, PanelsThatListNoDirectoryDoNothing) {
  toggleInfo(0);
  countDirectorySizes(left());
  EXPECT_EQ(item("one").level, 0);
  toggleInfo(0);
  saveLines("0/\n1a\n");
  setStyle(0, PanelStyle::Tree);
  countDirectorySizes(left());
  EXPECT_FALSE(shows("Reading Directories"));
}

TEST_F(DirectorySizes, WithThePauseTheWindowStaysUntilItsButton) {
  GlobalOptions::SizeCountPause = true;
  Beside user([this] {
    EXPECT_TRUE(waitToShow("OK"));
    EXPECT_TRUE(shows(" Reading Directories "));
    EXPECT_TRUE(shows("║ Directories: 1                Files: 2             ║"));
    EXPECT_TRUE(shows("║ Total Size: 1,234                                  ║"));
    EXPECT_TRUE(shows(leftDir.path("one/deep")));
    queueKey(Key::Enter);
  });
  countAt("one");
  EXPECT_FALSE(shows("Reading Directories"));
  EXPECT_EQ(item("one").size, 1234u);
}

TEST_F(DirectorySizes, EscLeavesWhatWasntCountedAndAsksForNoButton) {
  GlobalOptions::SizeCountPause = true;
  for (const char* name : {"one", "two"}) {
    selectName(left(), decodeFileName(name).data());
    toggleTag(left(), left().currentIndex(), TagMode::Tag);
  }
  // A disk so slow that Esc is seen in the first directory.
  System::setHook(
      [](const char* call, const char*, void*) {
        if (std::string(call) == "readNames") usleep(60'000);
        return 0;
      },
      nullptr);
  queueKey(Key::Esc);
  countDirectorySizes(left());
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(item("two").level, 0);
  EXPECT_FALSE(shows("Reading Directories"));
  EXPECT_EQ(left().taggedSize, 0);
}

TEST_F(DirectorySizes, ATreePanelBesideIsMadeAnew) {
  panelTrees().tree().makeRoot();
  grow(panelTrees().tree(), leftDir.path());
  panelTrees().tree().loaded = true;
  directoryTree().connect(panelTrees());
  setStyle(1, PanelStyle::Tree);
  ASSERT_EQ(entryNamed(right(), "deep"), nullptr);
  countAt("one");
  EXPECT_NE(entryNamed(right(), "deep"), nullptr);
  EXPECT_NE(savedLines().find("deep\n"), std::string::npos);
  panelTrees().tree().dropRoot();
}

}  // namespace
