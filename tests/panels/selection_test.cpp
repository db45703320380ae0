#include "panels/commands/selection.h"

#include "console/key_codes.h"
#include "panel_fixture.h"

namespace {

using Names = std::vector<std::string>;

class SelectionTest : public PanelTest {
 protected:
  SelectionTest() : panel(left()) { fill(panel, {"..", "dir/", "a", "bb", "descript.ion"}); }

  Panel& panel;
};

}  // namespace

TEST_F(SelectionTest, ATagCountsTheEntryAndItsSize) {
  toggleTag(panel, 2, TagMode::Flip);
  toggleTag(panel, 3, TagMode::Tag);
  EXPECT_EQ((Names{"a", "bb"}), taggedNames(panel));
  EXPECT_EQ(2, panel.taggedCount);
  EXPECT_EQ(3, panel.taggedSize);
  toggleTag(panel, 2, TagMode::Flip);
  EXPECT_EQ(1, panel.taggedCount);
  EXPECT_EQ(2, panel.taggedSize);
}

TEST_F(SelectionTest, ATaggedEntryIsNotTaggedTwice) {
  toggleTag(panel, 2, TagMode::Tag);
  toggleTag(panel, 2, TagMode::Tag);
  EXPECT_EQ(1, panel.taggedCount);
  toggleTag(panel, 3, TagMode::Untag);
  EXPECT_EQ(1, panel.taggedCount);
}

TEST_F(SelectionTest, TheParentIsNeverTagged) {
  toggleTag(panel, 0, TagMode::Flip);
  selectAll(panel, TagMode::Tag, ShiftState::Shift);
  EXPECT_FALSE(panel.entries[0]->tagged);
}

TEST_F(SelectionTest, IndexesOutsideTheListMeanNothing) {
  toggleTag(panel, -1, TagMode::Tag);
  toggleTag(panel, 5, TagMode::Tag);
  EXPECT_EQ(0, panel.taggedCount);
}

TEST_F(SelectionTest, InfoAndTreePanelsTagNothing) {
  panel.type = PanelType::Info;
  toggleTag(panel, 2, TagMode::Tag);
  selectAll(panel, TagMode::Tag, NoShift);
  panel.type = PanelType::Files;
  panel.style = PanelStyle::Tree;
  toggleTag(panel, 2, TagMode::Tag);
  selectAll(panel, TagMode::Tag, NoShift);
  panel.entries[2]->wasTagged = 1;
  restoreSelection(panel);
  EXPECT_EQ(0, panel.taggedCount);
}

TEST_F(SelectionTest, InATreeTheGroupCommandsOpenAndCloseLines) {
  RecordingTree tree;
  panel.style = PanelStyle::Tree;
  selectAll(panel, TagMode::Tag, NoShift);
  selectAll(panel, TagMode::Untag, NoShift);
  selectAll(panel, TagMode::Flip, NoShift);
  groupSelectDialog(panel, TagMode::Tag, NoShift);
  groupSelectDialog(panel, TagMode::Untag, NoShift);
  EXPECT_EQ((Names{"expand", "collapse", "expand line", "collapse line"}), tree.calls);
  panel.showing = false;
  selectAll(panel, TagMode::Tag, NoShift);
  EXPECT_EQ(4u, tree.calls.size());
}

TEST_F(SelectionTest, AGroupOfAPanelThatIsOffIsIgnored) {
  panel.showing = false;
  selectAll(panel, TagMode::Tag, NoShift);
  EXPECT_EQ(0, panel.taggedCount);
}

TEST_F(SelectionTest, SelectAllSkipsDirectoriesUnlessOptionAndShiftDiffer) {
  struct Row {
    bool tagDirs;
    int shift;
    bool tagged;
  } rows[] = {{false, 0, false},
              {false, ShiftState::Shift, true},
              {true, 0, true},
              {true, ShiftState::Shift, false}};
  for (const Row& row : rows) {
    GlobalOptions::TagDirs = row.tagDirs;
    selectAll(panel, TagMode::Untag, NoShift);
    selectAll(panel, TagMode::Tag, row.shift);
    EXPECT_EQ(row.tagged, entryNamed(panel, "dir")->tagged != 0) << row.tagDirs << row.shift;
    EXPECT_TRUE(entryNamed(panel, "a")->tagged);
  }
}

TEST_F(SelectionTest, UnselectAllTakesDirectoriesWithIt) {
  GlobalOptions::TagDirs = false;
  toggleTag(panel, 1, TagMode::Tag);
  selectAll(panel, TagMode::Untag, NoShift);
  EXPECT_EQ(0, panel.taggedCount);
}

TEST_F(SelectionTest, InvertSkipsDirectoriesAndWithShiftInvertsThemToo) {
  GlobalOptions::TagDirs = false;
  toggleTag(panel, 2, TagMode::Tag);
  selectAll(panel, TagMode::Flip, NoShift);
  EXPECT_EQ((Names{"bb"}), taggedNames(panel));
  selectAll(panel, TagMode::Flip, ShiftState::Shift);
  EXPECT_EQ((Names{"dir", "a"}), taggedNames(panel));
}

TEST_F(SelectionTest, DescriptionFilesAreLeftAloneInAnyCase) {
  fill(panel, {"DESCRIPT.ION", "ea data. sf", "WP ROOT. SF", "descript.ion2"});
  selectAll(panel, TagMode::Tag, NoShift);
  EXPECT_EQ((Names{"descript.ion2"}), taggedNames(panel));
  selectAll(panel, TagMode::Flip, NoShift);
  EXPECT_EQ((Names{}), taggedNames(panel));
  toggleTag(panel, 0, TagMode::Tag);
  EXPECT_EQ((Names{"DESCRIPT.ION"}), taggedNames(panel));
  selectAll(panel, TagMode::Untag, NoShift);
  EXPECT_EQ((Names{}), taggedNames(panel));
}

TEST_F(SelectionTest, RestoreTakesTheTagsThatWereUsed) {
  entryNamed(panel, "a")->wasTagged = 1;
  toggleTag(panel, 3, TagMode::Tag);
  restoreSelection(panel);
  EXPECT_EQ((Names{"a"}), taggedNames(panel));
  EXPECT_EQ(1, panel.taggedCount);
  EXPECT_EQ(1, panel.taggedSize);
}

TEST_F(SelectionTest, SizesBeyondHalfTheRangeDoNotBreakTheSum) {
  panel.entries[2]->size = ~uint64_t{0};
  panel.entries[3]->size = ~uint64_t{0} >> 1;
  toggleTag(panel, 2, TagMode::Tag);
  toggleTag(panel, 3, TagMode::Tag);
  toggleTag(panel, 2, TagMode::Untag);
  toggleTag(panel, 3, TagMode::Untag);
  EXPECT_EQ(0, panel.taggedSize);
  for (int index : {2, 3}) {
    panel.entries[index]->size = uint64_t{1} << 63;
    toggleTag(panel, index, TagMode::Tag);
    toggleTag(panel, index, TagMode::Untag);
  }
  for (int index : {2, 3}) {
    panel.entries[index]->size = uint64_t{5} << 60;
    toggleTag(panel, index, TagMode::Tag);
  }
  EXPECT_EQ(uint64_t{10} << 60, static_cast<uint64_t>(panel.taggedSize));
}
