#include "ui/list_box.h"

#include <thread>

#include "foundation/signals.h"
#include "options/colours.h"
#include "support/wait_until.h"
#include "ui/colour_selector.h"
#include "ui/ui_test.h"

namespace {

constexpr int ListX = 3, ListY = 2, ListWidth = 12;

// A dialog whose first element is a list of "item 0", "item 1" and so on.
class ListDialog : public TestDialog {
 public:
  ListDialog(int count, int rows, int start = 0, Key::Code exitOnEnter = ListExit::DialogDefault)
      : selected(start), rows_(rows) {
    for (int i = 0; i < count; ++i) append(i);
    addList(ListX, ListY, Group::New, ListWidth, rows, &items, &selected, exitOnEnter);
  }

  void append(int number) { items.add(new Westring(nameOf(number).c_str())); }
  static std::wstring nameOf(int number) { return L"item " + std::to_wstring(number); }
  const ListBoxBase& list() const { return static_cast<const ListBoxBase&>(*element(0)); }

  // The number shown on a row, -1 for a blank one.
  int itemOn(int row) const {
    std::wstring text;
    for (const Cell& cell : cells(row)) text += cell.ch;
    EXPECT_EQ(text.size(), size_t{ListWidth});
    if (text == std::wstring(ListWidth, L' ')) return -1;
    const int number = std::stoi(text.substr(5));
    const std::wstring name = nameOf(number);
    EXPECT_EQ(text, name + std::wstring(ListWidth - name.size(), L' '));
    return number;
  }
  // The row in the cursor colour, -1 for none.
  int cursorRow() const {
    int found = -1;
    for (int row = 0; row < rows_; ++row) {
      if (cells(row)[0].attr == colourOf(Colour::Highlight)) found = row;
    }
    return found;
  }
  // Whether the name on the first row ends so; for another thread while the list is drawn.
  bool firstEndsWith(wchar_t digit) const {
    return console->getCells(screenX() + 5, screenY(0), 1, 1)[0].ch == digit;
  }
  int screenX() const { return originX() + ListX; }
  int screenY(int row) const { return originY() + ListY + row; }

  FnStringStore items;
  int selected;

 private:
  std::vector<Cell> cells(int row) const {
    return console->getCells(screenX(), screenY(row), ListWidth, 1);
  }
  int rows_;
};

class ListBoxTest : public UiTest {
 protected:
  static void expectAt(const ListDialog& dialog, int top, int row) {
    EXPECT_EQ(dialog.list().topItem(), top);
    EXPECT_EQ(dialog.list().cursorRow(), row);
    EXPECT_EQ(dialog.selected, top + row);
    EXPECT_EQ(dialog.itemOn(0), top);
    EXPECT_EQ(dialog.cursorRow(), row);
  }
};

}  // namespace

TEST_F(ListBoxTest, AShortListKeepsItsTopAndLeavesRowsBlank) {
  ListDialog dialog(3, 6);
  dialog.runKeys({Key::Down, Key::Down, Key::Down});
  expectAt(dialog, 0, 2);
  for (int row = 0; row < 6; ++row) EXPECT_EQ(dialog.itemOn(row), row < 3 ? row : -1) << row;
}

TEST_F(ListBoxTest, ASelectionPastTheEndShowsTheLastEntry) {
  ListDialog dialog(3, 6, 10);
  dialog.runQueued();
  EXPECT_EQ(dialog.selected, 2);
  expectAt(dialog, 0, 2);
}

TEST_F(ListBoxTest, ASelectionBelowZeroIsTheFirstEntry) {
  ListDialog dialog(3, 6, -5);
  EXPECT_EQ(dialog.selected, 0);
}

TEST_F(ListBoxTest, TheListOpensWithTheSelectionOnItsLastRow) {
  ListDialog dialog(100, 10, 42);
  dialog.runQueued();
  expectAt(dialog, 33, 9);
}

TEST_F(ListBoxTest, AnEmptyListShowsBlanksAndSelectsZero) {
  ListDialog dialog(0, 4, 3);
  EXPECT_EQ(dialog.selected, 0);
  dialog.runKeys({Key::Down, Key::Up, Key::End, Key::Home, Key::PageDown, Key::PageUp});
  EXPECT_EQ(dialog.selected, 0);
  for (int row = 0; row < 4; ++row) EXPECT_EQ(dialog.itemOn(row), -1);
}

TEST_F(ListBoxTest, UpAndDownStopAtTheEndsAndCarryThePageAlong) {
  ListDialog dialog(5, 3);
  dialog.runKeys({Key::Up});
  expectAt(dialog, 0, 0);
  dialog.runKeys({Key::Down, Key::Down});
  expectAt(dialog, 0, 2);
  dialog.runKeys({Key::Down});
  expectAt(dialog, 1, 2);
  dialog.runKeys({Key::Down, Key::Down, Key::Down});
  expectAt(dialog, 2, 2);
  dialog.runKeys({Key::Up, Key::Up});
  expectAt(dialog, 2, 0);
  dialog.runKeys({Key::Up});
  expectAt(dialog, 1, 0);
}

TEST_F(ListBoxTest, EndIsTheLastEntryOnTheLastRow) {
  ListDialog dialog(100, 10);
  dialog.runKeys({Key::End});
  expectAt(dialog, 90, 9);
  EXPECT_EQ(dialog.itemOn(9), 99);
  dialog.runKeys({Key::Home});
  expectAt(dialog, 0, 0);
}

TEST_F(ListBoxTest, PagesKeepTheCursorsRow) {
  ListDialog dialog(100, 10, 3);
  dialog.runKeys({Key::PageDown});
  expectAt(dialog, 10, 3);
  dialog.runKeys({Key::PageDown, Key::PageUp});
  expectAt(dialog, 10, 3);
  dialog.runKeys({Key::PageUp});
  expectAt(dialog, 0, 3);
  dialog.runKeys({Key::PageUp});
  expectAt(dialog, 0, 0);
}

TEST_F(ListBoxTest, ThePageDownNearTheEndLeavesNoBlankRows) {
  ListDialog dialog(25, 10);
  dialog.runKeys({Key::PageDown, Key::PageDown});
  expectAt(dialog, 15, 5);
  dialog.runKeys({Key::PageDown});
  expectAt(dialog, 15, 9);
  EXPECT_EQ(dialog.itemOn(9), 24);
}

TEST_F(ListBoxTest, PageDownInAShortListGoesToItsLastEntry) {
  ListDialog dialog(3, 6);
  dialog.runKeys({Key::PageDown});
  expectAt(dialog, 0, 2);
}

TEST_F(ListBoxTest, TheCursorColourNeedsTheFocus) {
  ListDialog dialog(5, 3);
  dialog.addButton(1, 10, Group::New, 'g', "Go");
  dialog.runQueued();
  EXPECT_EQ(dialog.cursorRow(), 0);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(dialog.cursorRow(), -1);
  EXPECT_EQ(attrInside(dialog, ListX, ListY), colourOf(Colour::Panel));
}

TEST_F(ListBoxTest, EnterEndsWithTheListsCodeOrTheDialogsDefault) {
  {
    ListDialog dialog(5, 3, 0, 'M');
    queueKey(Key::Enter);
    EXPECT_EQ(dialog.run(), Key::Code('M'));
  }
  {
    ListDialog dialog(5, 3);
    queueKey(Key::Enter);
    EXPECT_EQ(dialog.run(), Key::Enter);
  }
  ListDialog dialog(5, 3);
  dialog.addButton(1, 10, Group::New, 'g', "Go");
  queueKey(Key::Enter);
  EXPECT_EQ(dialog.run(), 'g');
}

TEST_F(ListBoxTest, AnyUnusedKeyEndsAListThatAsksForIt) {
  for (Key::Code key : {Key::Code('x'), Key::F5, Key::Esc, Key::Tab, Key::Left, Key::Code('0')}) {
    ListDialog dialog(5, 3, 0, ListExit::AnyKey);
    queueKeys({Key::Down, key});
    EXPECT_EQ(dialog.run(), key) << key;
    EXPECT_EQ(dialog.selected, 1);
  }
}

TEST_F(ListBoxTest, UnusedKeysGoOnToTheDialogOtherwise) {
  ListDialog dialog(5, 3);
  dialog.addButton(1, 10, Group::New, 'g', "Go");
  queueKey('g');
  EXPECT_EQ(dialog.run(), 'g');
}

TEST_F(ListBoxTest, AClickMovesTheCursorAndTakesTheFocus) {
  ListDialog dialog(20, 6);
  dialog.addButton(1, 12, Group::New, 'g', "Go");
  dialog.runKeys({Key::Tab});
  queueClick(dialog.screenX() + 2, dialog.screenY(4));
  dialog.runQueued();
  EXPECT_EQ(dialog.focus(), 0);
  expectAt(dialog, 0, 4);
}

TEST_F(ListBoxTest, AClickOnABlankRowSelectsTheLastEntryAndEndsThere) {
  for (Key::Code exitOnEnter : {ListExit::AnyKey, ListExit::DialogDefault, Key::Code('M')}) {
    ListDialog dialog(3, 6, 0, exitOnEnter);
    const int x = dialog.screenX(), y = dialog.screenY(5);
    queueClick(x, y);
    queueMouse(EventKind::DoubleClick, x, y);
    queueKey(Key::Esc);
    EXPECT_EQ(dialog.run(), Key::Esc) << exitOnEnter;
    EXPECT_EQ(dialog.selected, 2);
  }
}

TEST_F(ListBoxTest, ADoubleClickIsEnter) {
  const struct {
    Key::Code exitOnEnter;
    Key::Code code;
  } rows[] = {{Key::Code('M'), Key::Code('M')}, {ListExit::DialogDefault, 'g'}};
  for (const auto& row : rows) {
    ListDialog dialog(5, 3, 0, row.exitOnEnter);
    dialog.addButton(1, 10, Group::New, 'g', "Go");
    const int x = dialog.screenX(), y = dialog.screenY(2);
    queueClick(x, y);
    queueMouse(EventKind::DoubleClick, x, y);
    EXPECT_EQ(dialog.run(), row.code);
    EXPECT_EQ(dialog.selected, 2);
  }
}

TEST_F(ListBoxTest, ASingleClickEndsOnlyAListThatAsksForIt) {
  {
    ListDialog dialog(5, 3, 0, ListExit::AnyKey);
    queueClick(dialog.screenX(), dialog.screenY(1));
    EXPECT_EQ(dialog.run(), Key::Enter);
    EXPECT_EQ(dialog.selected, 1);
  }
  ListDialog dialog(5, 3, 0, 'M');
  queueClick(dialog.screenX(), dialog.screenY(1));
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
}

TEST_F(ListBoxTest, ADisabledListTakesNoMouse) {
  ListDialog dialog(5, 3);
  dialog.element(0)->enabled = false;
  const Message press{MessageKind::LeftPress, Key::NoKey, ListX, ListY + 1};
  EXPECT_FALSE(dialog.sendMessage(0, press));
  EXPECT_FALSE(dialog.sendMessage(0, {.kind = MessageKind::Wheel, .value = -1}));
  EXPECT_EQ(dialog.selected, 0);
}

TEST_F(ListBoxTest, ClicksBesideTheListAreNotItsOwn) {
  ListDialog dialog(20, 6);
  for (auto [x, y] : {std::pair{ListX - 1, ListY}, std::pair{ListX + ListWidth, ListY},
                      std::pair{ListX, ListY + 7}, std::pair{ListX - 1, ListY - 1}}) {
    EXPECT_FALSE(dialog.sendMessage(0, {MessageKind::LeftPress, Key::NoKey, x, y}))
        << x << "," << y;
  }
  EXPECT_FALSE(dialog.sendMessage(0, {MessageKind::LeftRelease, Key::NoKey, ListX, ListY - 1}));
  EXPECT_FALSE(dialog.sendMessage(0, {MessageKind::LeftDoubleClick, Key::NoKey, ListX, ListY + 6}));
  EXPECT_FALSE(dialog.sendMessage(0, {MessageKind::RightPress, Key::NoKey, ListX, ListY}));
  EXPECT_EQ(dialog.selected, 0);
}

TEST_F(ListBoxTest, TheWheelMovesThreeRows) {
  ListDialog dialog(20, 6);
  queueWheel(-1);
  dialog.runQueued();
  expectAt(dialog, 0, 3);
  queueWheel(-1);
  dialog.runQueued();
  expectAt(dialog, 1, 5);
  queueWheel(1);
  queueWheel(1);
  queueWheel(1);
  dialog.runQueued();
  expectAt(dialog, 0, 0);
}

TEST_F(ListBoxTest, TheWheelTurnsTheFocusedList) {
  ListDialog dialog(20, 6);
  FnStringStore others;
  for (int i = 0; i < 9; ++i) others.add(new Westring(L"other"));
  int other = 0;
  dialog.addList(30, ListY, Group::New, 10, 6, &others, &other, ListExit::DialogDefault);
  dialog.runKeys({Key::Tab});
  queueWheel(-1);
  dialog.runQueued();
  EXPECT_EQ(other, 3);
  EXPECT_EQ(dialog.selected, 0);
}

TEST_F(ListBoxTest, APressBelowTheListScrollsToTheEndWhileNothingElseHappens) {
  ListDialog dialog(12, 6);
  EXPECT_TRUE(dialog.sendMessage(0, {MessageKind::LeftPress, Key::NoKey, ListX, ListY + 6}));
  expectAt(dialog, 6, 5);
  EXPECT_TRUE(dialog.sendMessage(0, {MessageKind::LeftDrag, Key::NoKey, ListX, ListY - 1}));
  expectAt(dialog, 0, 0);
}

TEST_F(ListBoxTest, AutoScrollStopsAtTheNextEvent) {
  ListDialog dialog(100, 6);
  queueKey(Key::Esc);
  EXPECT_TRUE(dialog.sendMessage(0, {MessageKind::LeftPress, Key::NoKey, ListX, ListY + 6}));
  expectAt(dialog, 0, 5);
  drainEvents();
}

TEST_F(ListBoxTest, AutoScrollWaitsForTheConfiguredTime) {
  GlobalOptions::ScrollDelay = 40;
  ListDialog dialog(10, 6);
  const double start = clockSeconds();
  dialog.sendMessage(0, {MessageKind::LeftPress, Key::NoKey, ListX, ListY + 6});
  EXPECT_GE(clockSeconds() - start, 4 * 0.040 * 0.9);
  expectAt(dialog, 4, 5);
}

TEST_F(ListBoxTest, AutoScrollEndsAsSoonAsAnEventComesAndTheDialogTakesIt) {
  GlobalOptions::ScrollDelay = 600000;
  ListDialog dialog(100, 6);
  queueMouse(EventKind::Press, dialog.screenX(), dialog.screenY(6));
  std::thread beside([&] {
    waitUntil([&] { return dialog.firstEndsWith(L'1'); });
    queueKey(Key::Home);
    queueKey(Key::Esc);
  });
  EXPECT_EQ(dialog.run(), Key::Esc);
  beside.join();
  expectAt(dialog, 0, 0);
}

TEST_F(ListBoxTest, AutoScrollEndsWithTheProgram) {
  EndWatcher watcher([] { console->events().wake(); });
  GlobalOptions::ScrollDelay = 600000;
  ListDialog dialog(100, 6);
  queueMouse(EventKind::Press, dialog.screenX(), dialog.screenY(6));
  std::thread beside([&] {
    waitUntil([&] { return dialog.firstEndsWith(L'1'); });
    requestEnd();
  });
  EXPECT_EQ(dialog.run(), Dialog::ProgramEnds);
  beside.join();
  forgetEndRequest();
  expectAt(dialog, 1, 5);
}

TEST_F(ListBoxTest, AutoScrollInAShortListGoesToItsLastEntry) {
  ListDialog dialog(3, 6);
  dialog.sendMessage(0, {MessageKind::LeftPress, Key::NoKey, ListX, ListY + 6});
  expectAt(dialog, 0, 2);
  ListDialog none(0, 6);
  EXPECT_TRUE(none.sendMessage(0, {MessageKind::LeftPress, Key::NoKey, ListX, ListY + 6}));
  EXPECT_EQ(none.selected, 0);
}

TEST_F(ListBoxTest, AListThatShrinksBelowTheSelectionSelectsItsLastEntry) {
  ListDialog dialog(20, 6, 15);
  dialog.items.clear();
  for (int i = 0; i < 3; ++i) dialog.append(i);
  EXPECT_TRUE(dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = 3}));
  EXPECT_EQ(dialog.selected, 2);
  EXPECT_EQ(dialog.list().itemCount(), 3);
  dialog.runQueued();
  EXPECT_EQ(dialog.itemOn(dialog.cursorRow()), 2);
}

TEST_F(ListBoxTest, AListThatShrinksOnThePageIsRepaintedWhole) {
  ListDialog dialog(20, 6, 1);
  dialog.items.clear();
  for (int i = 0; i < 3; ++i) dialog.append(i);
  dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = 3});
  EXPECT_EQ(dialog.selected, 1);
  for (int row = 0; row < 6; ++row) EXPECT_EQ(dialog.itemOn(row), row < 3 ? row : -1) << row;
}

TEST_F(ListBoxTest, NewEntriesBelowThePageRepaintTheCursorOnly) {
  ListDialog dialog(6, 6);
  console->fillCell(dialog.screenX(), dialog.screenY(3), ListWidth, Cell{L'?', 7});
  dialog.append(6);
  dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = 7});
  EXPECT_EQ(charAt(dialog.screenX(), dialog.screenY(3)), L'?');
  dialog.runKeys({Key::End});
  expectAt(dialog, 1, 5);
}

TEST_F(ListBoxTest, NewEntriesOnThePageRepaintIt) {
  ListDialog dialog(4, 6);
  dialog.append(4);
  dialog.sendMessage(0, {.kind = MessageKind::ListLength, .value = 5});
  EXPECT_EQ(dialog.itemOn(4), 4);
  EXPECT_EQ(dialog.itemOn(5), -1);
}

TEST_F(ListBoxTest, ChangedContentsAreRepaintedWhole) {
  ListDialog dialog(6, 6);
  *dialog.items.peek(3) = L"item 33";
  dialog.redraw(0);
  EXPECT_EQ(dialog.itemOn(3), 3);
  dialog.sendMessage(0, {.kind = MessageKind::ListContent});
  EXPECT_EQ(dialog.itemOn(3), 33);
}

TEST_F(ListBoxTest, AMoveWithinThePageRepaintsTwoRows) {
  ListDialog dialog(20, 6, 2);
  dialog.runQueued();
  for (int row : {1, 2, 3}) {
    console->fillCell(dialog.screenX(), dialog.screenY(row), ListWidth, Cell{L'?', 7});
  }
  dialog.runKeys({Key::Down});
  EXPECT_EQ(charAt(dialog.screenX(), dialog.screenY(1)), L'?');
  EXPECT_EQ(dialog.itemOn(2), 2);
  EXPECT_EQ(dialog.itemOn(3), 3);
}

TEST_F(ListBoxTest, AnotherThreadMayFeedAnOpenList) {
  constexpr int Entries = 300;
  FnStringStore items;
  for (int i = 0; i < Entries; ++i) items.add(new Westring(ListDialog::nameOf(i).c_str()));
  FnStringStore none;
  int selected = 0;
  TestDialog dialog;
  const int list = dialog.addList(ListX, ListY, Group::New, ListWidth, 6, &items, &selected,
                                  ListExit::DialogDefault);
  dialog.sendMessage(list, {.kind = MessageKind::ListLength, .value = 0});
  std::thread worker([&dialog, list] {
    for (int i = 1; i <= Entries; ++i)
      dialog.sendMessage(list, {.kind = MessageKind::ListLength, .value = i});
  });
  for (int i = 0; i < 100; ++i) queueKey(i % 2 == 0 ? Key::Down : Key::Up);
  dialog.runQueued();
  worker.join();
  dialog.runKeys({Key::End});
  EXPECT_EQ(selected, Entries - 1);
}

TEST_F(ListBoxTest, StringsComeFromArraysAndStoresInTheirEncodings) {
  TestDialog dialog;
  int a = 0, b = 0, c = 0;
  const char* const array[] = {"\x84-array-is-cut", "two"};
  EstringStore bytes;
  bytes.add(new Estring("\x81-bytes"));
  FnStringStore wide;
  wide.add(new Westring(L"\u0416-wide"));
  EXPECT_EQ(dialog.addList(1, 0, Group::New, 8, 3, array, 2, &a, ListExit::DialogDefault), 0);
  EXPECT_EQ(dialog.addList(1, 4, Group::New, 8, 3, &bytes, &b, ListExit::DialogDefault), 1);
  EXPECT_EQ(dialog.addList(1, 8, Group::New, 8, 3, &wide, &c, ListExit::DialogDefault), 2);
  EXPECT_EQ(inside(dialog, 1, 0, 10), L"\u00E4-array-  ");
  EXPECT_EQ(inside(dialog, 1, 1, 10), L"two       ");
  EXPECT_EQ(inside(dialog, 1, 4, 10), L"\u00FC-bytes   ");
  EXPECT_EQ(inside(dialog, 1, 8, 10), L"\u0416-wide    ");
  EXPECT_EQ(dialog.element(0)->type(), ElementType::ListBox);
}

TEST_F(ListBoxTest, DrawingLeavesTheStoresCursorAlone) {
  ListDialog dialog(20, 6);
  dialog.items.setCurrent(7);
  dialog.runKeys({Key::End, Key::Home, Key::Down});
  EXPECT_EQ(dialog.items.current(), 7);
}

namespace {

class SelectorDialog : public TestDialog {
 public:
  explicit SelectorDialog(int start = 0) : selected(start) {
    static const char* const names[] = {"Panel", "Menu", "Clock"};
    addColourSelector(1, 1, Group::New, 10, 4, names, 3, attributes, &selected,
                      ListExit::DialogDefault);
  }
  unsigned char attributes[3] = {0x1F, 0x07, 0x30};
  int selected;
};

class ColourSelectorTest : public UiTest {};

}  // namespace

TEST_F(ColourSelectorTest, EachEntryShowsItselfAndTheSelectedOneIsMarked) {
  SelectorDialog dialog;
  dialog.runKeys({Key::Down});
  EXPECT_EQ(inside(dialog, 0, 1, 12), L" Panel      ");
  EXPECT_EQ(inside(dialog, 0, 2, 12), L">Menu      <");
  EXPECT_EQ(inside(dialog, 0, 3, 12), L" Clock      ");
  EXPECT_EQ(inside(dialog, 0, 4, 12), L"            ");
  EXPECT_EQ(attrInside(dialog, 1, 1), 0x1F);
  EXPECT_EQ(attrInside(dialog, 1, 2), 0x07);
  EXPECT_EQ(attrInside(dialog, 10, 3), 0x30);
  EXPECT_EQ(attrInside(dialog, 0, 2), Grey);
}

TEST_F(ColourSelectorTest, LettersStepTheColourOfTheSelectedEntry) {
  SelectorDialog dialog;
  dialog.runKeys({'f'});
  EXPECT_EQ(dialog.attributes[0], 0x10);
  EXPECT_EQ(attrInside(dialog, 1, 1), 0x10);
  dialog.runKeys({Key::Down, 'B'});
  EXPECT_EQ(dialog.attributes[1], 0xF7);
  EXPECT_EQ(attrInside(dialog, 1, 2), 0xF7);
  dialog.runKeys({'b', 'F'});
  EXPECT_EQ(dialog.attributes[1], 0x06);
  EXPECT_EQ(dialog.attributes[0], 0x10);
  EXPECT_EQ(dialog.attributes[2], 0x30);
}

TEST_F(ColourSelectorTest, AnEmptySelectorTakesTheLettersAndChangesNothing) {
  TestDialog dialog;
  int selected = 0;
  dialog.addColourSelector(1, 1, Group::New, 10, 4, nullptr, 0, nullptr, &selected,
                           ListExit::DialogDefault);
  EXPECT_EQ(dialog.runKeys({'f', 'B', Key::Down}), TestDialog::Stop);
  EXPECT_EQ(dialog.element(0)->type(), ElementType::ColourSelector);
}
