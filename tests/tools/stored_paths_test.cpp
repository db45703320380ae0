// The window of the stored directories.

#include "tools/stored_paths.h"

#include "console/key_codes.h"
#include "foundation/utf8.h"
#include "options/options.h"
#include "panels/commands/change_directory.h"
#include "panels/panel_screen.h"

namespace {

using GlobalOptions::directoryShortcuts;

class StoredPathsTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    goToPath(left(), dir.wide());
    goToPath(right(), dir.wide());
  }
  bool open(std::initializer_list<Key::Code> keys) {
    for (Key::Code key : keys) queueKey(key);
    const bool changed = storedPaths(left());
    EXPECT_EQ(console->eventCount(), 0) << "keys that nobody took";
    drainEvents();
    return changed;
  }
  std::string screenOf(const std::string& text) {
    std::string picture;
    Beside user([&] {
      if (waitToShow(text)) picture = screenText();
      queueKey(Key::Esc);
      queueKey(Key::Esc);
    });
    storedPaths(left());
    return picture;
  }
  static std::string slot(int number) { return bytes(directoryShortcuts[number]); }

  TempDir dir;
};

TEST_F(StoredPathsTest, TenSlotsShowTheirPathsOrThatTheyAreEmpty) {
  directoryShortcuts[1] = L"/usr/share";
  directoryShortcuts[9] = L"/a/directory/with/a/longer/path";
  expectGoldenText("stored_paths", screenOf("Stored Paths"));
  drainEvents();
  for (Westring& path : directoryShortcuts) path = L"";
  expectGoldenText("stored_paths_empty", screenOf("Stored Paths"));
  drainEvents();
  directoryShortcuts[0] = L"/" + Westring(L'x', 60) + L"/" + Westring(L'y', 60);
  expectGoldenText("stored_paths_long", screenOf("Stored Paths"));
}

TEST_F(StoredPathsTest, ADigitGoesToItsSlot) {
  directoryShortcuts[7] = L"/usr";
  EXPECT_TRUE(open({'7'}));
  EXPECT_EQ(bytes(left().path), "/usr");
  EXPECT_EQ(left().currentIndex(), 0);
  EXPECT_EQ(left().depth, -1);
}

TEST_F(StoredPathsTest, EnterGoesToTheSlotAtTheCursor) {
  directoryShortcuts[2] = L"/usr";
  EXPECT_TRUE(open({Key::Down, Key::Down, Key::Enter}));
  EXPECT_EQ(bytes(left().path), "/usr");
}

TEST_F(StoredPathsTest, AnEmptySlotLeavesTheWindowOpen) {
  EXPECT_FALSE(open({'3', Key::Enter, Key::Esc}));
  EXPECT_EQ(bytes(left().path), dir.path());
}

TEST_F(StoredPathsTest, InsertStoresAndDeleteEmptiesTheSlotAtTheCursor) {
  EXPECT_FALSE(
      open({Key::Down, Key::Insert, Key::Down, Key::Insert, Key::Up, Key::Delete, Key::Esc}));
  EXPECT_EQ(slot(1), "");
  EXPECT_EQ(slot(2), dir.path());
}

TEST_F(StoredPathsTest, AStoredPathMayBeginAtHomeAndHoldVariables) {
  dir.makeDir("inside");
  setenv("HOME", dir.path().c_str(), 1);
  directoryShortcuts[1] = L"~/inside";
  EXPECT_TRUE(open({'1'}));
  EXPECT_EQ(bytes(left().path), dir.path("inside"));
}

TEST_F(StoredPathsTest, AMissingDirectoryIsToldAndTheWindowCloses) {
  directoryShortcuts[4] = L"/no/such/place";
  std::string box;
  Beside user([&] {
    if (waitToShow("Invalid directory")) box = screenText();
    queueKey(Key::Enter);
  });
  queueKey('4');
  EXPECT_FALSE(storedPaths(left()));
  EXPECT_NE(box.find("/no/such/place"), std::string::npos) << box;
  EXPECT_EQ(bytes(left().path), dir.path());
}

TEST_F(StoredPathsTest, BesideATreeTheOtherPanelGoes) {
  left().style = PanelStyle::Tree;
  directoryShortcuts[5] = L"/usr";
  EXPECT_TRUE(open({'5'}));
  EXPECT_EQ(bytes(left().path), dir.path());
  EXPECT_EQ(bytes(right().path), "/usr");
}

}  // namespace
