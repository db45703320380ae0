#include "commander/menu_bar.h"

#include <memory>

#include "commander/menu_items.h"
#include "console/key_codes.h"
#include "console/text_state.h"
#include "foundation/fold.h"
#include "options/colours.h"
#include "ui/help_window.h"
#include "ui/input_loop.h"
#include "ui/win.h"

namespace {

constexpr int LastLetter = 0xFF;
constexpr wchar_t SeparatorLine = 0x2500;

// Where the menu was when it was left; a reopened menu starts there.
struct MenuPlace {
  int sideMenuIndex = LeftMenu;
  int item = 0;
  bool open = false;
};
MenuPlace place;

// One run of the bar.
class MenuBar {
 public:
  MenuBar() : bar_(0, 0, console->columns() - 1, 0, colourOf(Colour::MenuBar), NoFrame) {}

  Key::Code run();

 private:
  Menu& menu() { return menus()[place.sideMenuIndex]; }
  void drawTitles();
  void openDropDown();
  void closeDropDown();
  void drawItems();
  void drawItem(int index);
  void goToMenu(int index);
  void stepItem(int step);
  void selectItem(int index);
  void takeKey(Key::Code key);
  void takeLetter(Key::Code key);
  void enter();
  void takeMouse(const MouseMessage& mouse);
  void pressTitle(int index);
  int titleAt(int x, int y) const;
  int itemAt(int x, int y) const;
  void leave(Key::Code code) {
    result_ = code;
    done_ = true;
  }

  Win bar_;
  std::unique_ptr<Win> dropDown_;
  bool pressedItem_ = false;
  bool done_ = false;
  Key::Code result_;
};

Key::Code MenuBar::run() {
  setCursorShape(0);
  drawTitles();
  if (place.open) openDropDown();
  while (!done_) {
    const Input input = nextInput();
    if (input.kind == Input::Kind::Key) takeKey(input.key);
    if (input.kind == Input::Kind::Mouse) takeMouse(input.mouse);
    if (input.kind == Input::Kind::End) leave(Key::NoKey);
  }
  dropDown_.reset();
  return result_;
}

void MenuBar::drawTitles() {
  BatchScope batch;
  bar_.clear();
  bar_.put(0, 0, MenuBarText);
  bar_.put(menu().column, 0, menu().title, colourOf(Colour::MenuHighlight));
}

void MenuBar::openDropDown() {
  BatchScope batch;
  dropDown_.reset();
  place.open = true;
  int count = static_cast<int>(menu().items.size());
  int attr = colourOf(Colour::Menu);
  dropDown_ = std::make_unique<Win>(menu().column, 1, menu().column + menu().width + 1, count + 2,
                                    attr, attr);
  drawItems();
}

void MenuBar::closeDropDown() {
  place.open = false;
  dropDown_.reset();
}

void MenuBar::drawItems() {
  BatchScope batch;
  for (int i = 0; i < static_cast<int>(menu().items.size()); ++i) drawItem(i);
}

void MenuBar::drawItem(int index) {
  const menuItem& item = menu().items[index];
  bool chosen = index == place.item;
  unsigned char attr = colourOf(chosen ? Colour::MenuHighlight : Colour::Menu);
  unsigned char background = attr & 0xF0;
  wchar_t mark[] = {item.mark, 0};
  if (item.isSeparator()) {
    unsigned char lineAttr = colourOf(Colour::MenuBar);
    dropDown_->put(0, index, Westring(SeparatorLine, menu().width), lineAttr);
    if (item.mark != L' ') dropDown_->put(0, index, mark, lineAttr);
    return;
  }
  if (item.code == Key::NoKey) attr = background | (colourOf(Colour::DisabledMenu) & 0x0F);
  dropDown_->put(0, index, Westring(L' ', menu().width), attr);
  dropDown_->put(0, index, mark, attr);
  dropDown_->put(1, index, Westring(item.text), attr);
  if (item.code == Key::NoKey) return;
  wchar_t quick[] = {static_cast<wchar_t>(item.text[item.quickLetter]), 0};
  dropDown_->put(1 + item.quickLetter, index, quick,
                 background | (colourOf(Colour::MenuQuickKey) & 0x0F));
}

void MenuBar::goToMenu(int index) {
  bool open = place.open;
  dropDown_.reset();
  place.sideMenuIndex = (index + MenuCount) % MenuCount;
  place.item = 0;
  drawTitles();
  if (open) openDropDown();
}

void MenuBar::selectItem(int index) {
  int old = place.item;
  place.item = index;
  BatchScope batch;
  drawItem(old);
  drawItem(index);
}

void MenuBar::stepItem(int step) {
  int count = static_cast<int>(menu().items.size());
  int index = place.item;
  do {
    index = (index + step + count) % count;
  } while (menu().items[index].isSeparator());
  selectItem(index);
}

void MenuBar::enter() {
  if (place.open) {
    leave(menu().items[place.item].code);
  } else {
    openDropDown();
  }
}

void MenuBar::takeKey(Key::Code key) {
  switch (key) {
    case Key::Left:
      return goToMenu(place.sideMenuIndex - 1);
    case Key::Right:
      return goToMenu(place.sideMenuIndex + 1);
    case Key::Enter:
      return enter();
    case Key::Down:
      return place.open ? stepItem(1) : openDropDown();
    case Key::Up:
      return place.open ? stepItem(-1) : void();
    case Key::Home:
      return place.open ? selectItem(0) : void();
    case Key::End:
      return place.open ? selectItem(static_cast<int>(menu().items.size()) - 1) : void();
    case Key::Esc:
      return place.open ? closeDropDown() : leave(Key::NoKey);
    case Key::F10:
      return leave(Key::NoKey);
    case Key::F1:
      return helpWindow()->show(menu().help);
    default:
      takeLetter(hotKeyChar(key));
  }
}

void MenuBar::takeLetter(Key::Code key) {
  if (key.value() <= Key::Space.value() || key.value() > LastLetter) return;
  const int letter = lowerAscii(key.value());
  if (!place.open) {
    for (int i = 0; i < MenuCount; ++i) {
      if (menus()[i].hotLetter != letter) continue;
      goToMenu(i);
      return openDropDown();
    }
    return;
  }
  for (int i = 0; i < static_cast<int>(menu().items.size()); ++i) {
    const menuItem& item = menu().items[i];
    if (item.isSeparator() || lowerAscii(item.text[item.quickLetter]) != letter) continue;
    selectItem(i);
    if (item.code != Key::NoKey) leave(item.code);
    return;
  }
}

int MenuBar::titleAt(int x, int y) const {
  if (y != 0) return -1;
  for (int i = 0; i < MenuCount; ++i) {
    const Menu& title = menus()[i];
    int width = Estring(title.title).length();
    if (x >= title.column && x < title.column + width) return i;
  }
  return -1;
}

int MenuBar::itemAt(int x, int y) const {
  if (!dropDown_) return -1;
  bool inside = x > dropDown_->left() && x < dropDown_->right() && y > dropDown_->top() &&
                y < dropDown_->bottom();
  int index = y - dropDown_->originY();
  return inside && !menus()[place.sideMenuIndex].items[index].isSeparator() ? index : -1;
}

void MenuBar::pressTitle(int index) {
  if (index != place.sideMenuIndex) {
    goToMenu(index);
  } else if (place.open) {
    closeDropDown();
  } else {
    openDropDown();
  }
}

void MenuBar::takeMouse(const MouseMessage& mouse) {
  int item = itemAt(mouse.x, mouse.y);
  int title = titleAt(mouse.x, mouse.y);
  switch (mouse.kind) {
    case MouseKind::LeftPress:
    case MouseKind::RightPress:
      pressedItem_ = item >= 0;
      if (item >= 0) return selectItem(item);
      if (title >= 0) return pressTitle(title);
      if (dropDown_ && dropDown_->contains(mouse.x, mouse.y)) return;
      return place.open ? closeDropDown() : leave(Key::NoKey);
    case MouseKind::LeftDrag:
    case MouseKind::RightDrag:
      if (pressedItem_ && item >= 0 && item != place.item) selectItem(item);
      return;
    case MouseKind::LeftRelease:
    case MouseKind::RightRelease:
      if (pressedItem_ && item >= 0 && item == place.item) enter();
      pressedItem_ = false;
      return;
    case MouseKind::LeftDoubleClick:  // its second press came as a press before it
    case MouseKind::Wheel:
      return;
  }
}

}  // namespace

Key::Code pullDownMenu(int side, MenuStart start) {
  if (start == MenuStart::Fresh) {
    place = MenuPlace{};
    place.sideMenuIndex = side == 0 ? LeftMenu : RightMenu;
  }
  refreshMenuMarks();
  TextStateGuard text;
  return MenuBar().run();
}
