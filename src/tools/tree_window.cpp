#include "tools/tree_window.h"

#include <algorithm>

#include "console/console.h"
#include "console/key_codes.h"
#include "console/text_state.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_rows.h"
#include "ui/help_window.h"

namespace {

constexpr int CommandWidth = 70;
constexpr int RowsAround = 10;  // of the screen that the list leaves
constexpr int TopRow = 2, RowsBelow = 4;
constexpr int ColumnsRight = 5;
constexpr int PathColumn = 1;
constexpr int SearchColumn = 1, FieldColumn = 9, HintColumn = 39;
constexpr int FieldWidth = 20;
constexpr int PathBelow = 1, SearchBelow = 2, LastBelow = 3;  // rows behind the list
constexpr wchar_t Line = 0x2500;
constexpr int CursorShape = 15;
constexpr int WheelSteps = 3;
constexpr Key::Code PlainPlus = '+', PlainMinus = '-';

int widthFor(TreeWindowUse use) {
  return use == TreeWindowUse::Command ? CommandWidth : panelPair().screenColumns / 2 - 2;
}

}  // namespace

void showTreeLines(Panel& panel, CTree& tree) {
  tree.sort();
  panel.entries.clear();
  panel.treeLines = linesOfTree(tree.root());
  panel.treeVersion = tree.version();
  for (const TreeLine& line : panel.treeLines) {
    EntryPtr item(newEntry(line.node->name.data()));
    item->attributes = Attribute::Directory;
    item->sortGroup = SortGroup::Directory;
    panel.entries.add(std::move(item));
  }
}

TreeWindow::TreeWindow(CTree& tree, const Westring& directory, TreeWindowUse use,
                       std::function<bool()> rescan)
    : tree_(tree),
      rescan_(std::move(rescan)),
      width_(widthFor(use)),
      rows_(panelPair().screenLines - RowsAround) {
  list_.style = use == TreeWindowUse::Command ? PanelStyle::DialogTree : PanelStyle::Tree;
  TREENODE* start = tree_.find(directory);
  if (start) showNode(start);
  rebuild(start);
  // From the lower half to the middle, unless the list ends before.
  if (list_.cursor > rows_ / 2) list_.top += list_.cursor - rows_ / 2;
  goTo(std::max(lineOfNode(list_.treeLines, start), 0));
  const PanelPair& pair = panelPair();
  const unsigned char attr = colourOf(Colour::Panel);
  const int right = pair.screenColumns - ColumnsRight;
  window_ = std::make_unique<Win>(right - width_ - 1, TopRow, right, pair.screenLines - RowsBelow,
                                  attr, attr);
  drawFurniture(use == TreeWindowUse::Command ? Hint::Shown : Hint::Hidden);
}

TreeWindow::~TreeWindow() {
  setCursorShape(0);
}

Westring TreeWindow::choose() {
  if (run() != Taken || !node()) return Westring();
  return pathOfNode(node());
}

// ---- the picture

void TreeWindow::drawFurniture(Hint hint) {
  window_->putFrameTitle(" Directory Tree ");
  window_->put(0, rows_, Westring(Line, width_));
  window_->put(SearchColumn, rows_ + SearchBelow, L"Search:");
  if (hint == Hint::Shown) {
    window_->put(HintColumn, rows_ + SearchBelow, L"Ctrl-Enter for next match");
  }
}

void TreeWindow::drawRow(int row) {
  const int index = list_.top + row;
  if (index >= count()) {
    window_->put(0, row, Westring(L' ', width_));
    return;
  }
  const bool highlighted = row == list_.cursor;
  const unsigned char attr = colourOf(highlighted ? Colour::Highlight : Colour::Panel);
  int noOffset = 0;
  window_->put(0, row, rowCells(list_, index, RowLayout(list_.style, width_), 0, attr, noOffset));
}

void TreeWindow::drawFoot() {
  const int width = width_ - 2;
  const Westring path = node() ? pathOfNode(node()) : Westring();
  window_->put(PathColumn, rows_ + PathBelow, padRight(shortenPath(path, width), width));
  window_->put(FieldColumn, rows_ + SearchBelow, padRight(search_, FieldWidth),
               colourOf(Colour::InputFields));
  setTextPos(window_->originX() + FieldColumn + search_.length(),
             window_->originY() + rows_ + SearchBelow);
  setCursorShape(CursorShape);
}

void TreeWindow::draw() {
  for (int row = 0; row < rows_; ++row) drawRow(row);
  drawFoot();
}

// ---- the list

TREENODE* TreeWindow::node() const {
  return list_.treeLineAt(current()).node;
}

// The list anew, with the cursor on that node; without it on the first line.
void TreeWindow::rebuild(const TREENODE* current) {
  showTreeLines(list_, tree_);
  goTo(std::max(lineOfNode(list_.treeLines, current), 0));
}

// Into the view with as little as possible moved; from outside of it to its middle.
void TreeWindow::goTo(int index) {
  const int row = index - list_.top;
  if (row < 0 || row >= rows_) list_.top = index - rows_ / 2;
  list_.top = std::clamp(list_.top, 0, std::max(count() - rows_, 0));
  list_.cursor = index - list_.top;
}

void TreeWindow::show(TREENODE* node) {
  showNode(node);
  rebuild(node);
}

void TreeWindow::moveBy(int step) {
  const int index = std::clamp(current() + step, 0, std::max(count() - 1, 0));
  list_.cursor = index - list_.top;
  if (list_.cursor < 0) list_.top = index;
  if (list_.cursor >= rows_) list_.top = index - rows_ + 1;
  list_.cursor = index - list_.top;
}

void TreeWindow::pageUp() {
  if (list_.top == 0) list_.cursor = 0;
  list_.top = std::max(list_.top - rows_, 0);
}

void TreeWindow::pageDown() {
  const int last = count() - 1;
  if (list_.top + rows_ <= last) {
    list_.top += rows_;
    list_.cursor = std::min(list_.cursor, last - list_.top);
  } else {
    list_.cursor = last - list_.top;
  }
}

void TreeWindow::toSibling(int step) {
  const int level = list_.treeLineAt(current()).level;
  for (int i = current() + step; i >= 0 && i < count(); i += step) {
    const int other = list_.treeLineAt(i).level;
    if (other < level) return;
    if (other == level) return moveBy(i - current());
  }
}

// ---- keys

void TreeWindow::onKey(Key::Code key, int) {
  if (moveByKey(key) || openByKey(key)) return;
  switch (key) {
    case Key::ctrl('r'):
      return rescan();
    case Key::F1:
      return helpWindow()->show(HelpTopic::CommandsMenu);
    case Key::Backspace:
      search_ = dropRight(search_, 1);
      return;
    case Key::CtrlEnter:
    case Key::CtrlScanEnter:
      if (!search_.empty()) searchFrom(current() + 1 < count() ? current() + 1 : 0);
      return;
    case Key::Enter:
      return take();
    case Key::Esc:
      return leave(Left);
    default:
      return type(key);
  }
}

bool TreeWindow::moveByKey(Key::Code key) {
  switch (key) {
    case Key::Up:
    case Key::Down:
      search_ = Westring();
      moveBy(key == Key::Up ? -1 : 1);
      return true;
    case Key::PageUp:
      pageUp();
      return true;
    case Key::PageDown:
      pageDown();
      return true;
    case Key::Home:
      moveBy(-count());
      return true;
    case Key::End:
      moveBy(count());
      return true;
    case Key::AltUp:
    case Key::AltDown:
      toSibling(key == Key::AltUp ? -1 : 1);
      return true;
    default:
      return false;
  }
}

bool TreeWindow::openByKey(Key::Code key) {
  switch (key) {
    case PlainPlus:
    case Key::GrayPlus:
      setBranch(Branch::Open);
      return true;
    case PlainMinus:
    case Key::GrayMinus:
      setBranch(Branch::Closed);
      return true;
    case Key::CtrlGrayPlus:
      setSubtree(Branch::Open);
      return true;
    case Key::CtrlGrayMinus:
      setSubtree(Branch::Closed);
      return true;
    default:
      return false;
  }
}

void TreeWindow::setBranch(Branch branch) {
  TREENODE* opened = node();
  expandNode(opened, branch);
  rebuild(opened);
}

void TreeWindow::setSubtree(Branch branch) {
  TREENODE* opened = node();
  expandSubtree(opened, branch);
  rebuild(opened);
}

void TreeWindow::rescan() {
  const int before = current();
  if (!rescan_) return;
  if (!rescan_() || !tree_.root()) return leave(Left);
  showTreeLines(list_, tree_);
  goTo(before < count() ? before : 0);
}

void TreeWindow::searchFrom(int index) {
  TREENODE* found = findNextByPrefix(tree_.root(), list_.treeLineAt(index).node, search_);
  if (found) show(found);
}

void TreeWindow::type(Key::Code key) {
  if (!key.isText() || search_.length() >= FieldWidth) return;
  search_ += key.character();
  searchFrom(current());
}

// ---- the mouse

bool TreeWindow::isInside(const MouseMessage& mouse) const {
  return window_->contains(mouse.x, mouse.y);
}

void TreeWindow::onMouse(const MouseMessage& mouse) {
  switch (mouse.kind) {
    case MouseKind::LeftPress:
      pressedInside_ = isInside(mouse);
      return press(mouse);
    case MouseKind::LeftDrag:
      return press(mouse);
    case MouseKind::LeftDoubleClick:
      pressedInside_ = isInside(mouse);
      press(mouse);
      if (pressedInside_ && scrollDirection_ == 0) take();
      return;
    case MouseKind::LeftRelease: {
      scrollDirection_ = 0;
      const bool outside = !pressedInside_ && !isInside(mouse);
      pressedInside_ = false;
      return outside ? leave(Left) : void();
    }
    case MouseKind::Wheel:
      search_ = Westring();
      return moveBy(mouse.wheel > 0 ? -WheelSteps : WheelSteps);
    default:
      return;
  }
}

// On a line the cursor goes there, on a border and below the list it scrolls while that lasts.
void TreeWindow::press(const MouseMessage& mouse) {
  scrollDirection_ = 0;
  if (!pressedInside_ || !isInside(mouse)) return;
  const int row = mouse.y - window_->originY();
  if (row < 0) {
    scrollDirection_ = -1;
  } else if (row >= rows_ && row <= rows_ + LastBelow) {
    scrollDirection_ = 1;
  } else if (list_.top + row < count()) {
    search_ = Westring();
    list_.cursor = row;
  }
  scrollStep();
}

void TreeWindow::scrollStep() {
  if (scrollDirection_ == 0) return;
  list_.cursor = scrollDirection_ < 0 ? 0 : std::min(rows_, count() - list_.top) - 1;
  moveBy(scrollDirection_);
}

int TreeWindow::waitMs() const {
  return scrollDirection_ == 0 ? NoLimit : std::max(GlobalOptions::ScrollDelay, 1);
}
