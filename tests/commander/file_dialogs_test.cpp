// The dialogs that ask for one file or for a filter.

#include "commander/command.h"
#include "commander/main_loop_test.h"
#include "commander/seam_log.h"

namespace {

class FileDialogs : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    log.connect();
    leftDir.write("file.txt", "");
    leftDir.write("second", "");
    leftDir.makeDir("sub");
    leftDir.write("sub/inner", "");
    openPanels();
    cursorTo("file.txt");
    loop.redraw = Redraw::All;
  }

  // Only the dialog: what lies around it differs from run to run.
  std::string rowsOf(const std::string& screen, int first, int count) {
    std::string rows;
    size_t at = 0;
    for (int y = 0; y < first + count; ++y) {
      const size_t end = screen.find('\n', at) + 1;
      if (y >= first) rows += screen.substr(at, end - at);
      at = end;
    }
    return rows;
  }
  // Types over the proposed text and ends the dialog.
  void answer(Key::Code key, int state, const std::string& text) {
    queueText(text);
    queueKey(Key::Enter);
    press(key, state);
  }

  SeamLog log;
};

TEST_F(FileDialogs, ViewAsksForTheFile) {
  const std::string screen = dialogScreen("View the file:", [&] { press(Key::ShiftF3, Shift); });
  expectGoldenText("view_the_file", rowsOf(screen, 6, 9));
  EXPECT_TRUE(log.take().empty());
}

TEST_F(FileDialogs, EditAsksForTheFile) {
  const std::string screen = dialogScreen("Edit the file:", [&] { press(Key::ShiftF4, Shift); });
  expectGoldenText("edit_the_file", rowsOf(screen, 6, 9));
  EXPECT_TRUE(log.take().empty());
}

TEST_F(FileDialogs, TheFilterOfEachSideIsAsked) {
  left().filter = L"*.txt";
  std::string screen = dialogScreen("Filter for left panel", [&] { press(MenuCode::LeftFilter); });
  expectGoldenText("filter_left", rowsOf(screen, 5, 8));
  screen = dialogScreen("Filter for right panel", [&] { press(MenuCode::RightFilter); });
  expectGoldenText("filter_right", rowsOf(screen, 5, 8));
}

TEST_F(FileDialogs, TheNameUnderTheCursorIsProposed) {
  queueKey(Key::Enter);
  press(Key::ShiftF3, Shift);
  EXPECT_EQ(log.take(), std::vector<std::string>{"view " + leftDir.path("file.txt")});
}

TEST_F(FileDialogs, AProposedNameStandsForItselfWhateverItsCharacters) {
  for (const std::string name : {"a:b", "back\\slash", "~", "..."}) {
    leftDir.write(name, "");
    press(Key::ctrl('r'));
    cursorTo(name);
    queueKey(Key::Enter);
    press(Key::ShiftF4, Shift);
    EXPECT_EQ(log.take(), std::vector<std::string>{"edit " + leftDir.path(name)});
  }
}

TEST_F(FileDialogs, ATypedNameIsAPathOfThePanel) {
  answer(Key::ShiftF3, Shift, "sub/../sub/inner");
  EXPECT_EQ(log.take(), std::vector<std::string>{"view " + leftDir.path("sub/inner")});
  answer(Key::ShiftF3, Shift, "/etc/passwd");
  EXPECT_EQ(log.take(), std::vector<std::string>{"view /etc/passwd"});
}

TEST_F(FileDialogs, AConfiguredProgramRunsOnTheFile) {
  GlobalOptions::Viewer = L"less";
  GlobalOptions::Editor = L"vi";
  answer(Key::ShiftF3, Shift, "second");
  answer(Key::ShiftF4, Shift, "second");
  const std::string file = " " + leftDir.path("second");
  EXPECT_EQ(log.take(), (std::vector<std::string>{"run less" + file, "run vi" + file}));
}

TEST_F(FileDialogs, WhatWasEditedHereIsSelected) {
  log.editing = [this] { leftDir.write("made", ""); };
  answer(Key::ShiftF4, Shift, "made");
  EXPECT_EQ(currentName(left()), "made");
  log.editing = [this] { leftDir.write("sub/elsewhere", ""); };
  answer(Key::ShiftF4, Shift, "sub/elsewhere");
  EXPECT_EQ(currentName(left()), "made");
}

TEST_F(FileDialogs, ANewFilterIsStoredAndTheListReadAgain) {
  answer(MenuCode::LeftFilter, 0, "*.txt");
  EXPECT_EQ(bytes(left().filter), "*.txt");
  EXPECT_EQ(bytes(GlobalOptions::LeftFilter), "*.txt");
  EXPECT_EQ(entryNamed(left(), "second"), nullptr);
  EXPECT_TRUE(rowText(0, 0, 40).find("?") != std::string::npos);
  EXPECT_EQ(bytes(GlobalOptions::RightFilter), "*");
}

TEST_F(FileDialogs, EscLeavesTheFilter) {
  queueText("*.none");
  queueKey(Key::Esc);
  press(MenuCode::LeftFilter);
  EXPECT_EQ(bytes(left().filter), "*");
  EXPECT_NE(entryNamed(left(), "second"), nullptr);
}

TEST_F(FileDialogs, ANewFilterKeepsTags) {
  press(Key::Insert);
  answer(MenuCode::LeftFilter, 0, "*.txt");
  EXPECT_EQ(taggedNames(left()), std::vector<std::string>{"file.txt"});
}

TEST_F(FileDialogs, AFilterOfATreePanelScansAgain) {
  right().style = PanelStyle::Tree;
  answer(MenuCode::RightFilter, 0, "*.txt");
  EXPECT_TRUE(right().rescanTree);
}

TEST_F(FileDialogs, AnEmptyFilterIsNone) {
  queueKey(Key::Delete);
  answer(MenuCode::LeftFilter, 0, " ");
  EXPECT_NE(entryNamed(left(), "second"), nullptr);
  EXPECT_TRUE(rowText(0, 0, 40).find("?") == std::string::npos);
}

}  // namespace
