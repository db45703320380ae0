// What the main loop puts on the screen: prompt, line, key bar, clock, and the layouts of the
// panels.

#include "commander/command.h"
#include "commander/help_probe.h"
#include "commander/main_loop_test.h"
#include "commander/screen_size.h"
#include "options/colours.h"
#include "panels/commands/change_directory.h"

namespace {

class ScreenLayout : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.write("file", std::string(1234567, 'x'));
    rightDir.write("other", "");
    openPanels();
  }
  std::string lineRow() { return rowText(panelPair().screenLines - 2); }
  std::string keyBar() { return rowText(panelPair().screenLines - 1); }
  static bool beginsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
  }
};

// ---- prompt and line

TEST_F(ScreenLayout, ThePromptIsThePathOfTheActivePanel) {
  screenAfter({});
  EXPECT_TRUE(beginsWith(lineRow(), leftDir.path() + ">")) << lineRow();
  screenAfter({Key::Tab});
  EXPECT_TRUE(beginsWith(lineRow(), rightDir.path() + ">")) << lineRow();
  EXPECT_EQ(attrAt(0, 23), colourOf(Colour::CommandLine));
  EXPECT_EQ(attrAt(79, 23), colourOf(Colour::CommandLine));
}

TEST_F(ScreenLayout, BesideAnInfoOrTreePanelThePromptIsTheOtherPanels) {
  screenAfter({MenuCode::LeftInfo});
  EXPECT_TRUE(beginsWith(lineRow(), rightDir.path() + ">")) << lineRow();
  screenAfter({MenuCode::LeftTree});
  EXPECT_TRUE(beginsWith(lineRow(), rightDir.path() + ">")) << lineRow();
}

TEST_F(ScreenLayout, WithoutPathPromptTwoCharactersAreLeft) {
  screenAfter({MenuCode::PathPrompt});
  EXPECT_TRUE(beginsWith(lineRow(), "/t> ")) << lineRow();
}

TEST_F(ScreenLayout, ALongPathIsShortenedForThePrompt) {
  std::string name = "a-rather-long-directory-name";
  std::string path = name + "/" + name;
  leftDir.makeDir(name);
  leftDir.makeDir(path);
  goToPath(left(), leftDir.wide(path));
  screenAfter({});
  EXPECT_EQ(loop.prompt.length(), 40);
  EXPECT_EQ(bytes(loop.prompt).back(), '>');
}

TEST_F(ScreenLayout, TheLineScrollsToItsCursor) {
  GlobalOptions::PathPrompt = false;  // "/t>"
  const int room = 80 - 3;
  for (int i = 0; i < 200; ++i) queueKey(static_cast<char>('a' + i % 26));
  screenAfterQueued();
  // The cursor stands in the last cell, behind the end of the text.
  EXPECT_EQ(lineRow().substr(0, 3), "/t>");
  EXPECT_EQ(lineRow()[79], ' ');
  EXPECT_EQ(lineRow()[78], 'a' + 199 % 26);
  EXPECT_EQ(lineRow()[3], 'a' + (200 - room + 1) % 26);
  screenAfter({Key::CtrlHome});
  EXPECT_EQ(lineRow()[3], 'a');
  screenAfter({Key::CtrlEnd, Key::AltLeft});
  EXPECT_EQ(lineRow()[78], 'a' + 199 % 26);
}

TEST_F(ScreenLayout, TheTextCursorStandsOnTheLine) {
  for (char c : std::string("abc")) queueKey(c);
  queueKey(Key::AltLeft);
  screenAfterQueued();
  EXPECT_EQ(textState.textY, 23);
  EXPECT_EQ(textState.textX, loop.prompt.length() + 2);
}

TEST_F(ScreenLayout, TheCursorShowsWhileAKeyIsWaitedForAndNotInACommand) {
  int inCommand = -1;
  bool shown = false;
  const HelpProbe help([&](HelpTopic) {
    inCommand = console->cursorSize();
    loop.leaving = true;
  });
  console->setCursorSize(0);
  {
    Beside user([&] {
      shown = waitUntil([] { return console->cursorSize() > 0; });
      queueKey(Key::F1);
    });
    runMainLoop(loop);
  }
  EXPECT_TRUE(shown);
  EXPECT_EQ(inCommand, 0);
}

TEST_F(ScreenLayout, AShorterLineLeavesNothingBehind) {
  for (char c : std::string("abcdef")) queueKey(c);
  queueKey(Key::Esc);
  screenAfterQueued();
  EXPECT_EQ(lineRow().find('a', loop.prompt.length()), std::string::npos);
}

// ---- key bar

TEST_F(ScreenLayout, TheKeyBarFollowsTheModifiers) {
  screenAfter({});
  EXPECT_TRUE(beginsWith(keyBar(), "1Help  ")) << keyBar();
  const struct {
    int state;
    const char* label;
  } rows[] = {{ShiftState::Alt, "8Histry"},
              {ShiftState::Ctrl, "8Revers"},
              {ShiftState::Shift, "8DelOne"},
              {ShiftState::Shift | ShiftState::Alt, "8DirHst"},
              {ShiftState::Shift | ShiftState::Ctrl, "5SymLnk"}};
  for (const auto& row : rows) {
    // The picture is taken when F1 comes, which is a key of the same modifiers here.
    queueKey(Key::ShiftChanged, row.state);
    const HelpProbe help([&](HelpTopic) { loop.leaving = true; });
    queueKey(Key::F1, row.state);
    loop.leaving = false;
    runMainLoop(loop);
    EXPECT_NE(keyBar().find(row.label), std::string::npos) << keyBar();
  }
}

TEST_F(ScreenLayout, TheKeyBarFollowsTheModifiersInAQuickSearchToo) {
  bool alt = false, plain = false;
  const HelpProbe help([&](HelpTopic) { loop.leaving = true; });
  {
    Beside user([&] {
      queueKey(Key::ShiftChanged, ShiftState::Alt);
      queueKey(Key::alt('f'), ShiftState::Alt);
      alt = waitToShow("Search: f") && waitToShow("8Histry");
      queueKey(Key::ShiftChanged, 0);
      plain = waitToShow("8Delete") && shows("Search: f");
      queueKey(Key::F1);
    });
    runMainLoop(loop);
  }
  EXPECT_TRUE(alt);
  EXPECT_TRUE(plain);
}

// ---- clock

TEST_F(ScreenLayout, TheClockStandsInTheTopRightCornerWhileItIsOn) {
  const std::string corner = rowText(74, 0, 6);
  screenAfter({MenuCode::Clock});
  EXPECT_NE(rowText(74, 0, 6), corner);
  EXPECT_EQ(attrAt(74, 0), colourOf(Colour::Clock));
  screenAfter({MenuCode::Clock});
  EXPECT_EQ(rowText(74, 0, 6), corner);
}

TEST_F(ScreenLayout, TheClockStaysWhenItsPanelGoesOff) {
  screenAfter({MenuCode::Clock, Key::CtrlF2});
  EXPECT_EQ(attrAt(74, 0), colourOf(Colour::Clock));
  EXPECT_EQ(rowText(76, 0, 1), ":");
  screenAfter({Key::ctrl('o')});
  EXPECT_EQ(rowText(76, 0, 1), ":");
  screenAfter({MenuCode::Clock});
  EXPECT_EQ(rowText(74, 0, 6), "      ");
}

// ---- layouts

TEST_F(ScreenLayout, FullScreenOffLeavesTheLowerHalfToTheConsole) {
  screenAfter({Key::ctrl('o')});
  console->writeTty("\nfirst line\nsecond line\nthird line");
  screenAfter({Key::ctrl('o'), MenuCode::FullScreen});
  EXPECT_EQ(panelPair().panelRows, 11);
  EXPECT_EQ(rowText(0, 14, 1), "\u255A");
  for (int y = 15; y < 23; ++y) EXPECT_EQ(attrAt(40, y), 7) << y;
  EXPECT_TRUE(beginsWith(lineRow(), leftDir.path() + ">"));
  screenAfter({MenuCode::FullScreen});
  EXPECT_EQ(panelPair().panelRows, 19);
  EXPECT_EQ(rowText(0, 22, 1), "\u255A");
}

TEST_F(ScreenLayout, TheCursorStaysOnItsEntryWhenThePanelsShrink) {
  for (int i = 0; i < 40; ++i) leftDir.write("many" + std::to_string(100 + i), "");
  press(Key::ctrl('r'));
  cursorTo("many116");
  screenAfter({MenuCode::FullScreen});
  EXPECT_EQ(currentName(left()), "many116");
  EXPECT_LT(left().cursor, 11);
  EXPECT_TRUE(shows("many116"));
}

TEST_F(ScreenLayout, BothPanelsOffShowTheConsole) {
  screenAfter({Key::ctrl('o')});
  for (int y = 0; y < 23; ++y) {
    EXPECT_EQ(rowText(y), std::string(80, ' ')) << y;
    EXPECT_EQ(attrAt(0, y), 7) << y;
  }
  EXPECT_TRUE(beginsWith(lineRow(), leftDir.path() + ">"));
  screenAfter({Key::ctrl('o')});
  EXPECT_TRUE(shows("other"));
}

TEST_F(ScreenLayout, PostponedReadsRunWhenThePanelsComeBack) {
  screenAfter({Key::ctrl('o')});
  leftDir.write("meanwhile", "");
  screenAfter({Key::ctrl('h'), Key::ctrl('o')});
  EXPECT_TRUE(shows("meanwhile"));
}

TEST_F(ScreenLayout, ThousandSeparatorRedrawsTheSizes) {
  screenAfter({});
  EXPECT_TRUE(shows(" 1234567"));
  screenAfter({MenuCode::ThousandSeparator});
  EXPECT_FALSE(shows(" 1234567"));
  screenAfter({MenuCode::ThousandSeparator});
  EXPECT_TRUE(shows(" 1234567"));
}

// ---- sizes

TEST_F(ScreenLayout, AltF9AndShiftAltF9ChangeTheScreen) {
  press(Key::CtrlF2);
  screenAfter({Key::AltF9});
  EXPECT_EQ(console->rows(), 50);
  EXPECT_EQ(panelPair().panelRows, 44);
  EXPECT_TRUE(left().showing);
  EXPECT_FALSE(right().showing);
  EXPECT_TRUE(beginsWith(rowText(49), "1Help"));
  screenAfter({Key::ShiftAltF9});
  EXPECT_EQ(console->columns(), 132);
  EXPECT_EQ(attrAt(131, 49), colourOf(Colour::MenuBar));
  screenAfter({Key::AltF9, Key::ShiftAltF9});
  EXPECT_EQ(console->rows(), 25);
  EXPECT_EQ(console->columns(), 80);
}

TEST_F(ScreenLayout, AWindowOf100ColumnsBecomes80) {
  console->setGeometry(100, 25, Estring(), 0);
  fetchScreenSize();
  screenAfter({Key::ShiftAltF9});
  EXPECT_EQ(console->columns(), 80);
}

TEST_F(ScreenLayout, TheClockComesBackAfterAChangeOfSize) {
  screenAfter({MenuCode::Clock, Key::ShiftAltF9});
  EXPECT_EQ(attrAt(131, 0), colourOf(Colour::Clock));
}

TEST_F(ScreenLayout, ConfiguredSizesAreKeptWithinWhatPanelsNeed) {
  const struct {
    int lines, columns, resultLines, resultColumns;
  } rows[] = {{0, 0, 25, 80},      {0, 60, 25, 80},  {6, 0, 25, 80},     {30, 100, 30, 100},
              {251, 132, 25, 132}, {-5, -5, 25, 80}, {250, 80, 250, 80}, {25, 100000, 25, 80}};
  for (const auto& row : rows) {
    console->setGeometry(80, 25, Estring(), 0);
    GlobalOptions::Lines = row.lines;
    GlobalOptions::Columns = row.columns;
    applyScreenOptions();
    EXPECT_EQ(panelPair().screenLines, row.resultLines) << row.lines;
    EXPECT_EQ(panelPair().screenColumns, row.resultColumns) << row.columns;
    EXPECT_EQ(GlobalOptions::Columns, row.columns);
  }
}

TEST_F(ScreenLayout, AnotherFontIsTaken) {
  const int before = console->cellWidth();
  GlobalOptions::FontSize = 24;
  applyScreenOptions();
  EXPECT_GT(console->cellWidth(), before);
  GlobalOptions::FontSize = -3;
  applyScreenOptions();
  EXPECT_GE(console->cellWidth(), 1);
}

}  // namespace
