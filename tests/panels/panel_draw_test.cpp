#include "panels/picture/panel_draw.h"

#include "drawn_panels.h"
#include "foundation/text_format.h"
#include "panels/commands/navigation.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/selection.h"
#include "panels/one_path_tree.h"
#include "panels/picture/panel_colours.h"
#include "panels/picture/panel_rows.h"
#include "panels/picture/panel_window.h"

class PanelDrawTest : public DrawnPanelsTest {
 protected:
  // Something of each kind that a row can show.
  void addOneOfEach(Panel& panel) {
    addDirectory(panel, "..");
    addDirectory(panel, "directory");
    entry& hidden = addDirectory(panel, ".hidden-directory");
    hidden.attributes |= Attribute::Hidden;
    entry& counted = addDirectory(panel, "counted");
    counted.level = 1;
    counted.size = 4711;
    entry& linked = addLink(panel, "dirlink", L"/usr/share");
    linked.attributes |= Attribute::Directory;
    addLink(panel, "filelink", L"a");
    addLink(panel, "a-link-with-a-long-name", L"target");
    addFile(panel, ".hidden", 12).attributes |= Attribute::Hidden;
    addLink(panel, ".hlink", L"t").attributes |= Attribute::Hidden;
    addFile(panel, "exactly13char", 1);
    addFile(panel, "one-more-than-13", 22);
    addFile(panel, "long-with-extension.txt", 333);
    addFile(panel, "long-with.extension-too-long", 4444);
    addFile(panel, "big", 99999999);
    addFile(panel, "bigger", 100000000);
    addFile(panel, "huge", uint64_t{8} << 60).mode = 07777;
    entry& owned = addFile(panel, "owned", 5);
    owned.mode = 04751;
    owned.owner = 4294900000U;
    owned.group = 4294900001U;
    addFile(panel, "wide \xE4\xB8\xAD\xE6\x96\x87", 6).mode = 01666;
    addFile(panel,
            "raw\xFF"
            "byte\n",
            7)
        .mode = 0;
    for (int i = 0; i < 30; ++i) addFile(panel, "file" + std::to_string(i), 1000U * i);
    tag(panel, 9);
    tag(panel, 1);
  }
  void expectStyle(PanelStyle style, const std::string& name) {
    addOneOfEach(left());
    left().style = style;
    left().taggedCount = 0;  // the status line shows the current entry
    open();
    expectGoldenText(name, panelText(0) + "\n" + panelColours(0));
  }
  // Cells and colours of both panels' rows.
  std::vector<Cell> panelCells() const { return console->getCells(0, 0, 80, 23); }
};

// The styles.

TEST_F(PanelDrawTest, BriefStyle) {
  expectStyle(PanelStyle::Brief, "style_brief");
}

TEST_F(PanelDrawTest, FullStyle) {
  expectStyle(PanelStyle::Full, "style_full");
}

TEST_F(PanelDrawTest, WideStyle) {
  expectStyle(PanelStyle::Wide, "style_wide");
}

TEST_F(PanelDrawTest, BriefWideStyle) {
  expectStyle(PanelStyle::BriefWide, "style_briefwide");
}

TEST_F(PanelDrawTest, UnixStyle) {
  expectStyle(PanelStyle::Unix, "style_unix");
}

TEST_F(PanelDrawTest, TreeStyle) {
  const OnePathTree tree(L"/");
  struct Line {
    const char* name;
    int depth;
    uint64_t branches;
  };
  for (const Line& line : {Line{"/", 0, 0},
                           {"bin", 1, 1},
                           {"usr", 1, 1},
                           {"lib", 2, 3},
                           {"share", 2, 1},
                           {"doc", 3, 1},
                           {"var", 1, 0}}) {
    addDirectory(left(), line.name);
    left().treeLines.push_back({nullptr, line.depth, line.branches});
  }
  left().style = PanelStyle::Tree;
  open();
  expectGoldenText("style_tree", panelText(0) + "\n" + panelColours(0));
}

TEST_F(PanelDrawTest, StylesOnAWiderScreen) {
  addOneOfEach(left());
  addOneOfEach(right());
  setScreen(132, 30);
  left().style = PanelStyle::Full;
  right().style = PanelStyle::Unix;
  left().taggedCount = right().taggedCount = 0;
  open();
  expectGolden("styles_132");
  left().style = PanelStyle::Brief;
  right().style = PanelStyle::Wide;
  open();
  expectGolden("styles_132_brief_wide");
}

TEST_F(PanelDrawTest, AnEmptyListShowsTheColumnsAlone) {
  left().style = PanelStyle::Full;
  right().style = PanelStyle::Brief;
  open();
  expectGolden("empty_lists");
}

TEST_F(PanelDrawTest, GroupedSizesInAColumn) {
  GlobalOptions::ThousandSep = true;
  addFile(left(), "fits", 999999);
  addFile(left(), "kilo", 1234567);
  addFile(left(), "mega", 1234567890);
  open();
  EXPECT_EQ(rowText(1, 1, 22), "fits         │ 999,999");
  EXPECT_EQ(rowText(1, 2, 22), "kilo         │  1,205K");
  EXPECT_EQ(rowText(1, 3, 22), "mega         │  1,177M");
}

TEST_F(PanelDrawTest, WithoutVisibleExtensionsNamesAreCutAtTheirEnd) {
  GlobalOptions::KeepExtVisible = false;
  addFile(left(), "long-with-extension.txt");
  open();
  EXPECT_EQ(rowText(1, 1, 13), "long-with-ex►");
  GlobalOptions::KeepExtVisible = true;
  drawPanel(left());
  EXPECT_EQ(rowText(1, 1, 13), "long-wit►.txt");
}

TEST_F(PanelDrawTest, HalfAScreenOfPanelsHasFewerRows) {
  GlobalOptions::FullScreen = false;
  fetchScreenSize();
  addNumbered(left(), 60);
  left().style = PanelStyle::Brief;
  open();
  EXPECT_EQ(left().pageSize, 33);
  EXPECT_EQ(rowText(1, 11, 17), "f010        │f021");
  EXPECT_EQ(rowText(0, 14, 2), "╚═");
  for (int y = 15; y < 25; ++y) EXPECT_EQ(rowText(y), std::string(80, ' ')) << y;
}

TEST_F(PanelDrawTest, ThePanelsTakeHalfOfAnOddScreenEach) {
  setScreen(81, 25);
  open();
  EXPECT_EQ(rowText(39, 0, 2), "╗╔");
  EXPECT_EQ(rowText(79, 22, 2), "╝ ");
}

// Links, suffixes and name offsets.

TEST_F(PanelDrawTest, TheMarkOfALinkHasTheTaggedColourOnTheRows) {
  addFile(left(), "first");
  addLink(left(), "ln", L"target");
  open();
  EXPECT_EQ(rowText(1, 2, 13), "ln » target @");
  const int mark = (colourOf(Colour::Tagged) & 0x0F) | (colourOf(Colour::Panel) & 0xF0);
  EXPECT_EQ(attrAt(4, 2), mark);
  moveCursor(left(), 1);
  drawCursor(0, CursorBar::On);
  EXPECT_EQ(attrAt(4, 2), (colourOf(Colour::Tagged) & 0x0F) | (colourOf(Colour::Highlight) & 0xF0));
  EXPECT_EQ(attrAt(3, 2), colourOf(Colour::Highlight));
}

TEST_F(PanelDrawTest, TheSeparatorsTakeTheirBackgroundFromTheRow) {
  addFile(left(), "first");
  open();
  EXPECT_EQ(cellAt(14, 1).ch, L'\x2502');
  EXPECT_EQ(attrAt(14, 1), (colourOf(Colour::Panel) & 0x0F) | (colourOf(Colour::Highlight) & 0xF0));
  EXPECT_EQ(attrAt(14, 2), colourOf(Colour::Panel));
}

TEST_F(PanelDrawTest, ANameScrollsUntilItsEndStandsAtTheColumnsEnd) {
  addFile(left(), "abcdefghijklmnopqrstuvwxyz");
  GlobalOptions::KeepExtVisible = false;
  open();
  left().nameOffsetEntry = 0;
  left().nameOffset = 3;
  drawCursor(0, CursorBar::On);
  EXPECT_EQ(rowText(1, 1, 13), "defghijklmno►");
  left().nameOffset = 13;
  drawCursor(0, CursorBar::On);
  EXPECT_EQ(rowText(1, 1, 13), "nopqrstuvwxyz");
  EXPECT_EQ(left().nameOffset, 13);
  left().nameOffset = 20;
  drawCursor(0, CursorBar::On);
  EXPECT_EQ(rowText(1, 1, 13), "nopqrstuvwxyz");
  EXPECT_EQ(left().nameOffset, 13);
}

TEST_F(PanelDrawTest, AnOffsetOfAnotherEntryDoesNotScroll) {
  addFile(left(), "abcdefghijklmnopqrstuvwxyz");
  open();
  left().nameOffsetEntry = 3;
  left().nameOffset = 5;
  drawCursor(0, CursorBar::On);
  EXPECT_EQ(rowText(1, 1, 13), "abcdefghijkl►");
  EXPECT_EQ(left().nameOffset, 5);
}

TEST_F(PanelDrawTest, AShortNameTakesNoOffset) {
  addFile(left(), "short");
  open();
  left().nameOffsetEntry = 0;
  left().nameOffset = 4;
  drawCursor(0, CursorBar::On);
  EXPECT_EQ(rowText(1, 1, 13), "short        ");
  EXPECT_EQ(left().nameOffset, 0);
}

TEST_F(PanelDrawTest, AColumnWithoutWidthShowsNoSuffix) {
  entry& item = addLink(left(), ".l", L"x");
  item.attributes |= Attribute::Hidden;
  int offset = 0;
  const auto text = [&](int width) {
    const CellString cells = nameColumn(left(), item, width, 7, offset);
    std::wstring result;
    for (int i = 0; i < cells.length(); ++i) result += cells[i].ch;
    return result;
  };
  EXPECT_EQ(text(0), L"");
  EXPECT_EQ(text(1), L"@");
  EXPECT_EQ(text(2), L"@\x2591");
  EXPECT_EQ(text(3), L"\x10@\x2591");
  EXPECT_EQ(text(9), L".l \xBB x @\x2591");
}

// Colours.

TEST_F(PanelDrawTest, NaturalColoursAreThoseOfTheKind) {
  EXPECT_EQ(naturalColour(addFile(left(), "file")), colourOf(Colour::Panel));
  EXPECT_EQ(naturalColour(addDirectory(left(), "sub")), colourOf(Colour::Directories));
  tag(left(), 0);
  tag(left(), 1);
  EXPECT_EQ(naturalColour(*left().entries[0]), colourOf(Colour::Tagged));
  EXPECT_EQ(naturalColour(*left().entries[1]), colourOf(Colour::Tagged));
}

TEST_F(PanelDrawTest, BarColoursAreThoseOfTheKind) {
  EXPECT_EQ(barColour(addFile(left(), "file")), colourOf(Colour::Highlight));
  EXPECT_EQ(barColour(addDirectory(left(), "sub")), colourOf(Colour::DirectoryHigh));
  tag(left(), 0);
  tag(left(), 1);
  EXPECT_EQ(barColour(*left().entries[0]), colourOf(Colour::HighlightTagged));
  EXPECT_EQ(barColour(*left().entries[1]), colourOf(Colour::HighlightTagged));
}

TEST_F(PanelDrawTest, ColourSectionsChangeFilesAndDirectoriesApart) {
  associationSets().fileColours.addPair(L"*.c", L"bright red");
  associationSets().fileColours.addPair(L"*", L"white on black");
  associationSets().directoryColours.addPair(L"s*", L"bright white");
  EXPECT_EQ(naturalColour(addFile(left(), "main.c")), 0x1C);
  EXPECT_EQ(naturalColour(addFile(left(), "main.h")), 0x07);
  EXPECT_EQ(naturalColour(addDirectory(left(), "src.c")),
            (colourOf(Colour::Directories) & 0xF0) | 0x0F);
  EXPECT_EQ(naturalColour(addDirectory(left(), "x.c")), colourOf(Colour::Directories));
}

TEST_F(PanelDrawTest, TaggedWinsOverTheColourSectionsAndTheBarIgnoresThem) {
  associationSets().fileColours.addPair(L"*", L"bright red");
  addFile(left(), "main.c");
  addFile(left(), "other.c");
  tag(left(), 1);
  EXPECT_EQ(naturalColour(*left().entries[1]), colourOf(Colour::Tagged));
  EXPECT_EQ(barColour(*left().entries[0]), colourOf(Colour::Highlight));
  left().taggedCount = 0;
  open();
  EXPECT_EQ(attrAt(1, 1), colourOf(Colour::Highlight));
  drawCursor(0, CursorBar::Off);
  EXPECT_EQ(attrAt(1, 1), 0x1C);
  EXPECT_EQ(attrAt(1, 2), colourOf(Colour::Tagged));
}

TEST_F(PanelDrawTest, TheBarStandsInTheActivePanelOnly) {
  addNumbered(left(), 3);
  addNumbered(right(), 3);
  open();
  drawCursor(1, CursorBar::On);
  EXPECT_EQ(attrAt(1, 1), colourOf(Colour::Highlight));
  EXPECT_EQ(attrAt(41, 1), colourOf(Colour::Panel));
}

TEST_F(PanelDrawTest, InBriefStyleTheBarCoversItsColumnOnly) {
  addNumbered(left(), 60);
  left().style = PanelStyle::Brief;
  left().cursor = 20;
  open();
  EXPECT_EQ(attrAt(13, 2), colourOf(Colour::Panel));
  for (int x = 14; x < 26; ++x) EXPECT_EQ(attrAt(x, 2), colourOf(Colour::Highlight)) << x;
  EXPECT_EQ(attrAt(26, 2), colourOf(Colour::Panel));
}

// When it isn't drawn, and what a draw puts right.

TEST_F(PanelDrawTest, APanelWithoutAWindowIsDrawnLater) {
  drawPanel(left());
  EXPECT_TRUE(left().needsDraw);
  openPanelWindow(0);
  EXPECT_FALSE(left().needsDraw);
  left().window->hide();
  const std::string before = screenText();
  addNumbered(left(), 3);
  drawPanel(left());
  EXPECT_TRUE(left().needsDraw);
  EXPECT_EQ(screenText(), before);
  panelsVisible(Visible::Yes);
  EXPECT_FALSE(left().needsDraw);
  EXPECT_EQ(rowText(1, 1, 4), "f000");
}

TEST_F(PanelDrawTest, ACursorBeyondThePageMovesThePage) {
  addNumbered(left(), 50);
  open();
  left().cursor = 25;
  drawPanel(left());
  EXPECT_EQ(left().top, 7);
  EXPECT_EQ(left().cursor, 18);
  EXPECT_EQ(rowText(1, 1, 4), "f007");
}

TEST_F(PanelDrawTest, ACursorBeyondTheListGoesToTheLastEntry) {
  addNumbered(left(), 5);
  open();
  left().cursor = 12;
  drawPanel(left());
  EXPECT_EQ(left().currentIndex(), 4);
  EXPECT_EQ(statusText(0).substr(0, 4), "f004");
}

TEST_F(PanelDrawTest, DrawEntryLeavesWhatIsNotOnThePageAlone) {
  addNumbered(left(), 50);
  open();
  const std::string before = screenText();
  drawEntry(left(), 30);
  drawEntry(left(), 100);
  drawEntry(left(), -1);
  EXPECT_EQ(screenText(), before);
}

// What a step costs.

class PanelPaintTest : public PanelDrawTest {
 protected:
  // Paints that `action` and completing the picture take.
  template <class Action>
  unsigned long paintsOf(Action action) {
    console->completePainting();
    const unsigned long before = console->paintCount();
    action();
    console->completePainting();
    return console->paintCount() - before;
  }
  // The rows whose cells differ afterwards.
  template <class Action>
  std::vector<int> rowsChangedBy(Action action) {
    const std::vector<Cell> before = console->getCells(0, 0, 80, 25);
    action();
    const std::vector<Cell> after = console->getCells(0, 0, 80, 25);
    std::vector<int> rows;
    for (int y = 0; y < 25; ++y) {
      if (!std::equal(before.begin() + y * 80, before.begin() + (y + 1) * 80,
                      after.begin() + y * 80)) {
        rows.push_back(y);
      }
    }
    return rows;
  }
  void cursorDown() {
    drawCursor(0, CursorBar::Off);
    moveCursor(left(), 1);
    drawCursor(0, CursorBar::On);
  }
};

TEST_F(PanelPaintTest, ACursorMoveChangesTwoRowsAndTheStatusLine) {
  addNumbered(left(), 100);
  open();
  EXPECT_EQ(rowsChangedBy([this] { cursorDown(); }), (std::vector<int>{1, 2, 21}));
}

TEST_F(PanelPaintTest, ACursorMoveIsAFewPaintsWhateverTheListsLength) {
  for (int count : {50, 20000}) {
    left().entries.clear();
    left().cursor = 3;
    addNumbered(left(), count);
    open();
    EXPECT_LE(paintsOf([this] { cursorDown(); }), 6u) << count;
  }
}

TEST_F(PanelPaintTest, AFullDrawIsASinglePaint) {
  addNumbered(left(), 100);
  open();
  left().top = 40;
  EXPECT_EQ(paintsOf([this] { drawPanel(left()); }), 1u);
}

TEST_F(PanelPaintTest, ABarThatStandsAlreadyPaintsNothing) {
  addNumbered(left(), 100);
  open();
  EXPECT_EQ(paintsOf([] { drawCursor(0, CursorBar::On); }), 0u);
}

TEST_F(PanelPaintTest, ScrollingByARowGivesThePictureOfARedrawInEveryStyle) {
  for (PanelStyle style : {PanelStyle::Brief, PanelStyle::Full, PanelStyle::Wide,
                           PanelStyle::BriefWide, PanelStyle::Unix}) {
    left().entries.clear();
    addNumbered(left(), 200);
    left().style = style;
    left().top = 0;
    updatePageSize(left());
    left().cursor = left().pageSize - 1;
    open();
    for (int step : {1, 1, 1, -1}) {
      drawCursor(0, CursorBar::Off);
      if (step < 0) left().cursor = 0;
      moveCursor(left(), step);
      drawCursor(0, CursorBar::On);
      const std::vector<Cell> scrolled = panelCells();
      drawPanel(left());
      drawCursor(0, CursorBar::On);
      ASSERT_EQ(panelCells(), scrolled) << static_cast<int>(style) << " " << step;
    }
  }
}

TEST_F(PanelPaintTest, ScrollingByARowTouchesTheRowsOfTheListAlone) {
  addNumbered(left(), 100);
  addNumbered(right(), 100);
  open();
  left().cursor = 18;
  drawCursor(0, CursorBar::On);
  const std::vector<Cell> other = console->getCells(40, 0, 40, 23);
  const std::vector<Cell> frame = console->getCells(0, 20, 40, 1);
  cursorDown();
  EXPECT_EQ(console->getCells(40, 0, 40, 23), other);
  EXPECT_EQ(console->getCells(0, 20, 40, 1), frame);
  EXPECT_EQ(rowText(1, 19, 4), "f019");
}
