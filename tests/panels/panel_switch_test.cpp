#include "panels/commands/panel_switch.h"

#include "panel_screen.h"
#include "panels/reader/directory_reader.h"

namespace {

using Names = std::vector<std::string>;

class PanelSwitchTest : public PanelScreenTest {
 protected:
  void show(bool leftShows, bool rightShows) {
    left().showing = leftShows;
    right().showing = rightShows;
  }
  void expectShowing(bool leftShows, bool rightShows) {
    EXPECT_EQ(leftShows, left().showing);
    EXPECT_EQ(rightShows, right().showing);
  }
};

}  // namespace

TEST_F(PanelSwitchTest, SwapTakesEverythingWithThePanel) {
  setActiveSide(0);
  fill(left(), {"..", "one", "two"});
  left().cursor = 2;
  left().path = left().lastPath = L"/left";
  left().previousPath = L"/before";
  left().filter = L"*.c";
  left().sort = SortCode::Size;
  left().quickSearch = L"t";
  left().taggedCount = 1;
  left().depth = 3;
  left().positionStack[3] = {4, 5};
  left().style = PanelStyle::Brief;
  left().subdirectories->addCopy(L"sub");
  left().treeLines.emplace_back().level = 2;
  left().archive = std::make_unique<FakeArchive>(L"/left", Names{}, nullptr);
  fill(right(), {"x"});
  right().path = L"/right";
  swapPanels();
  EXPECT_EQ(1, panelPair().activeSide);
  EXPECT_EQ("two", currentName(right()));
  EXPECT_EQ("/left", bytes(right().path));
  EXPECT_EQ("/left", bytes(right().lastPath));
  EXPECT_EQ("/before", bytes(right().previousPath));
  EXPECT_EQ("*.c", bytes(right().filter));
  EXPECT_EQ(SortCode::Size, right().sort);
  EXPECT_EQ(SortCode::Size, GlobalOptions::RightSort);
  EXPECT_EQ(SortCode::Name, GlobalOptions::LeftSort);
  EXPECT_EQ("t", bytes(right().quickSearch));
  EXPECT_EQ(1, right().taggedCount);
  EXPECT_EQ(3, right().depth);
  EXPECT_EQ(5, right().positionStack[3].cursor);
  EXPECT_EQ(PanelStyle::Brief, right().style);
  EXPECT_EQ(1, right().subdirectories->count());
  EXPECT_EQ(2, right().treeLineAt(0).level);
  EXPECT_TRUE(right().archive);
  EXPECT_EQ((Names{"x"}), listed(left()));
  EXPECT_EQ("/right", bytes(left().path));
  EXPECT_EQ(0, left().subdirectories->count());
  EXPECT_TRUE(left().treeLines.empty());
}

TEST_F(PanelSwitchTest, SwapTwiceIsAsBefore) {
  fill(left(), {"a"});
  fill(right(), {"b"});
  swapPanels();
  swapPanels();
  EXPECT_EQ((Names{"a"}), listed(left()));
  EXPECT_EQ((Names{"b"}), listed(right()));
  EXPECT_EQ(0, panelPair().activeSide);
}

TEST_F(PanelSwitchTest, BothPanelsGoOffAndComeBack) {
  panelsOnOff();
  expectShowing(false, false);
  EXPECT_FALSE(left().keptOff);
  EXPECT_FALSE(right().keptOff);
  panelsOnOff();
  expectShowing(true, true);
}

TEST_F(PanelSwitchTest, APanelThatHadBeenOffStaysOff) {
  show(true, false);
  panelsOnOff();
  expectShowing(false, false);
  EXPECT_FALSE(left().keptOff);
  EXPECT_TRUE(right().keptOff);
  panelsOnOff();
  expectShowing(true, false);

  show(false, true);
  panelsOnOff();
  expectShowing(false, false);
  EXPECT_TRUE(left().keptOff);
  EXPECT_FALSE(right().keptOff);
  panelsOnOff();
  expectShowing(false, true);
}

TEST_F(PanelSwitchTest, TwoPanelsKeptOffBothComeOn) {
  show(false, false);
  left().keptOff = right().keptOff = true;
  panelsOnOff();
  expectShowing(true, true);
  EXPECT_FALSE(left().keptOff);
  EXPECT_FALSE(right().keptOff);
}

TEST_F(PanelSwitchTest, OnePanelGoesOffAndTheOtherTakesTheCursor) {
  setActiveSide(0);
  toggleOnePanel(0);
  expectShowing(false, true);
  EXPECT_TRUE(left().keptOff);
  EXPECT_EQ(1, panelPair().activeSide);
  toggleOnePanel(0);
  expectShowing(true, true);
  EXPECT_EQ(1, panelPair().activeSide);
}

TEST_F(PanelSwitchTest, WithBothOffTheActiveSideStays) {
  setActiveSide(1);
  show(false, true);
  toggleOnePanel(1);
  expectShowing(false, false);
  EXPECT_EQ(1, panelPair().activeSide);
}

TEST_F(PanelSwitchTest, AFilePanelBecomesInfoAndComesBack) {
  toggleInfo(1);
  EXPECT_EQ(PanelType::Info, right().type);
  EXPECT_TRUE(right().showing);
  toggleInfo(1);
  EXPECT_EQ(PanelType::Files, right().type);
  EXPECT_TRUE(right().showing);
}

TEST_F(PanelSwitchTest, InfoReadsWhatWasPostponedWhenItEnds) {
  TempDir dir;
  dir.write("a", "");
  right().path = dir.wide();
  toggleInfo(1);
  readDirectory(right());
  EXPECT_EQ(0, right().count());
  toggleInfo(1);
  EXPECT_EQ((Names{"..", "a"}), listed(right()));
}

TEST_F(PanelSwitchTest, APanelThatWasOffForInfoGoesOffAgain) {
  show(true, false);
  toggleInfo(1);
  EXPECT_TRUE(right().showing);
  EXPECT_EQ(PanelType::Info, right().type);
  toggleInfo(1);
  EXPECT_FALSE(right().showing);
  EXPECT_TRUE(right().keptOff);
  EXPECT_EQ(PanelType::Files, right().type);
  EXPECT_FALSE(right().infoWasOff);
}

TEST_F(PanelSwitchTest, AStyleSetsThePageSizeAndKeepsTheEntry) {
  fillNumbered(left(), 200);
  setStyle(0, PanelStyle::Brief);
  EXPECT_EQ(3 * panelPair().panelRows, left().pageSize);
  left().cursor = left().pageSize - 1;
  const std::string name = currentName(left());
  setStyle(0, PanelStyle::Full);
  EXPECT_EQ(panelPair().panelRows, left().pageSize);
  EXPECT_EQ(name, currentName(left()));
  EXPECT_LT(left().cursor, left().pageSize);
}

TEST_F(PanelSwitchTest, AStyleTurnsAnInfoPanelAndAPanelThatIsOffIntoFiles) {
  right().type = PanelType::Info;
  setStyle(1, right().style);
  EXPECT_EQ(PanelType::Files, right().type);
  show(true, false);
  setStyle(1, PanelStyle::Unix);
  EXPECT_TRUE(right().showing);
}

TEST_F(PanelSwitchTest, TheSameStyleOfAFilePanelChangesNothing) {
  show(true, false);
  setStyle(1, right().style);
  EXPECT_FALSE(right().showing);
}

TEST_F(PanelSwitchTest, OnlyTheTreeStyleChangesTheList) {
  TempDir dir;
  dir.write("a", "");
  RecordingTree tree;
  left().path = dir.wide();
  right().path = L"/right";
  fill(left(), {"old"});
  setStyle(0, PanelStyle::Wide);
  EXPECT_EQ((Names{"old"}), listed(left()));
  setStyle(0, PanelStyle::Tree);
  EXPECT_EQ((Names{"/"}), listed(left()));
  EXPECT_EQ((Names{"fill", "select /right"}), tree.calls);
  setStyle(0, PanelStyle::Full);
  EXPECT_EQ((Names{"..", "a"}), listed(left()));
}
