#include "console/key_codes.h"
#include "panel_screen.h"
#include "panels/commands/selection.h"

namespace {

using Names = std::vector<std::string>;

class GroupSelectTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    fill(left(), {"..", "dir/", "a.c", "b.c", "b.h", "descript.ion"});
    fieldHistory(FieldHistory::GroupSelect)->clear();
  }
  void select(int shift = NoShift) { groupSelectDialog(left(), TagMode::Tag, shift); }
  void unselect(int shift = NoShift) { groupSelectDialog(left(), TagMode::Untag, shift); }
  void answer(const std::string& text) {
    queueText(text);
    queueKey(Key::Enter);
  }
  // What the screen showed when the dialog waited for the first key.
  std::string screenOf(TagMode mode, int shift) {
    std::string seen;
    Beside user([&] {
      waitToShow("Alt-D=Dirs");
      waitUntil([] { return console->cursorSize() > 0; });
      seen = screenText();
      queueKey(Key::Esc);
    });
    groupSelectDialog(left(), mode, shift);
    return seen;
  }
};

}  // namespace

TEST_F(GroupSelectTest, BeginsWithAStar) {
  queueKey(Key::Enter);
  select();
  EXPECT_EQ((Names{"a.c", "b.c", "b.h"}), taggedNames(left()));
}

TEST_F(GroupSelectTest, TagsWhatMatches) {
  answer("*.c");
  select();
  EXPECT_EQ((Names{"a.c", "b.c"}), taggedNames(left()));
  EXPECT_EQ(2, left().taggedCount);
}

TEST_F(GroupSelectTest, TheDialogOfSelect) {
  answer("*");
  select();
  expectGoldenText("group_select", screenOf(TagMode::Tag, NoShift));
}

TEST_F(GroupSelectTest, TheDialogOfUnselectTakesDirectories) {
  answer("*");
  select();
  expectGoldenText("group_unselect", screenOf(TagMode::Untag, NoShift));
}

TEST_F(GroupSelectTest, TheExpressionIsRememberedForBothDirections) {
  answer("*.c");
  select();
  queueKey(Key::Enter);
  unselect();
  EXPECT_EQ((Names{}), taggedNames(left()));
}

TEST_F(GroupSelectTest, EscLeavesTagsExpressionAndHistoryAlone) {
  answer("*.h");
  select();
  queueText("*.c");
  queueKey(Key::Esc);
  select();
  EXPECT_EQ((Names{"b.h"}), taggedNames(left()));
  EXPECT_EQ((Names{"*.h"}), stored(*fieldHistory(FieldHistory::GroupSelect)));
  queueKey(Key::Enter);
  unselect();
  EXPECT_EQ((Names{}), taggedNames(left()));
}

TEST_F(GroupSelectTest, AltDTakesDirectoriesAndGoesOnWithTheTextTyped) {
  queueText("d");
  queueKey(Key::AltD, ShiftState::Alt);
  answer("*");
  select();
  EXPECT_EQ((Names{"dir"}), taggedNames(left()));
  EXPECT_EQ((Names{"d*"}), stored(*fieldHistory(FieldHistory::GroupSelect)));
}

TEST_F(GroupSelectTest, AltDTwiceLeavesDirectoriesOut) {
  queueText("*");
  queueKey(Key::AltD, ShiftState::Alt);
  queueKey(Key::AltD, ShiftState::Alt);
  queueKey(Key::Enter);
  select();
  EXPECT_FALSE(entryNamed(left(), "dir")->tagged);
  EXPECT_TRUE(entryNamed(left(), "a.c")->tagged);
}

TEST_F(GroupSelectTest, TheHeadingFollowsAltD) {
  std::string before;
  std::string after;
  Beside user([&] {
    waitToShow("Select the files");
    before = screenText();
    queueKey(Key::AltD, ShiftState::Alt);
    waitToShow("Select the files/directories");
    after = screenText();
    queueKey(Key::Esc);
  });
  select();
  EXPECT_EQ(std::string::npos, before.find("/directories"));
  EXPECT_NE(std::string::npos, after.find("Select the files/directories"));
}

TEST_F(GroupSelectTest, ShiftOrTheOptionTakesDirectories) {
  answer("dir");
  select(ShiftState::Shift);
  EXPECT_EQ((Names{"dir"}), taggedNames(left()));
  answer("dir");
  unselect();
  GlobalOptions::TagDirs = true;
  answer("dir");
  select(ShiftState::Shift);
  EXPECT_EQ((Names{}), taggedNames(left()));
  answer("dir");
  select();
  EXPECT_EQ((Names{"dir"}), taggedNames(left()));
}

TEST_F(GroupSelectTest, ADescriptionFileIsNotTaggedButCanBeCleared) {
  answer("descript.ion");
  select();
  EXPECT_EQ((Names{}), taggedNames(left()));
  toggleTag(left(), 5, TagMode::Tag);
  answer("*");
  unselect();
  EXPECT_EQ((Names{}), taggedNames(left()));
}

TEST_F(GroupSelectTest, TheWholeLanguageOfFiltersIsUnderstood) {
  entryNamed(left(), "b.c")->size = 5000;
  answer("*.c&!%size<4000");
  select();
  EXPECT_EQ((Names{"b.c"}), taggedNames(left()));
}

TEST_F(GroupSelectTest, APanelWithoutAListShowsNoDialog) {
  left().showing = false;
  select();
  left().showing = true;
  left().type = PanelType::Info;
  select();
  left().type = PanelType::Files;
  left().style = PanelStyle::Tree;
  select();
  EXPECT_FALSE(shows("Alt-D"));
}

TEST_F(GroupSelectTest, TheScreenBehindComesBack) {
  console->writeWide(30, 8, L"behind the dialog", 7);
  const std::string before = screenText();
  answer("*.c");
  select();
  EXPECT_EQ(before, screenText());
}
