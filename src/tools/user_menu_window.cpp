#include "tools/user_menu_window.h"

#include <algorithm>

#include "console/text_state.h"
#include "foundation/fold.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "ui/dialog.h"
#include "ui/list_box.h"

namespace {

constexpr char MainTitle[] = "User  Menu";
constexpr wchar_t SubmenuMark[] = L">";
constexpr int Centred = -1;
constexpr int InTheMiddle = -2;
constexpr int FrameCells = 2;
constexpr int MarginX = 2, MarginY = 8;  // what a list leaves of the screen

Westring shownTitle(const Estring& title) {
  return Westring(L" ") + fromUtf8(title.data()) + L" ";
}

// What the list shows, for a list of this width.
Westring rowOf(const MenuEntry& entry, int keyLength, int width) {
  const Westring text =
      padRight(fromUtf8(entry.key.data()), keyLength + 1) + fromUtf8(entry.title.data());
  return entry.submenu ? padRight(text, width - 1) + SubmenuMark : text;
}

int widthOf(MenuStore& menu, const Westring& title) {
  int width = title.length();
  for (int i = 0; i < menu.count(); ++i) {
    const MenuEntry& entry = *menu.peek(i);
    const int mark = entry.submenu ? 1 : 0;
    width = std::max(width, rowOf(entry, menu.greatestKeyLength, 0).length() + mark);
  }
  return std::min(width, console->columns() - MarginX);
}

// A key that an entry has chooses it.
class MenuList : public ListBoxFnString {
 public:
  MenuList(Dialog& dialog, int width, int rows, FnStringStore& texts, MenuStore& menu,
           int& selected)
      : ListBoxFnString(dialog, 0, 0, Group::New, width, rows, &texts, &selected, Key::Enter),
        menu_(menu),
        selected_(selected) {}

 protected:
  bool handleKey(Key::Code key) override {
    const int item = itemOf(key);
    if (item < 0) return ListBoxFnString::handleKey(key);
    selected_ = item;
    draw();
    return ListBoxFnString::handleKey(Key::Enter);
  }

 private:
  int itemOf(Key::Code key) const {
    const Key::Code code = key.isCharacter() ? foldChar(key.character()) : key;
    for (int item = menu_.count() - 1; item >= 0; --item) {
      if (menu_.peek(item)->keyCode == code) return item;
    }
    return -1;
  }

  MenuStore& menu_;
  int& selected_;
};

struct Rectangle {
  int left, top, right, bottom;
};

class MenuWindow : public Dialog {
 public:
  MenuWindow(MenuStore& menu, const Westring& title, const Rectangle& place)
      : Dialog(place.left, place.top, place.right, place.bottom, colourOf(Colour::Messages)) {
    for (int i = 0; i < menu.count(); ++i) {
      texts_.add(new Westring(rowOf(*menu.peek(i), menu.greatestKeyLength, innerWidth())));
    }
    add(std::make_unique<MenuList>(*this, innerWidth(), innerHeight(), texts_, menu, selected_));
    putCentred(-1, title.data());
  }

  int selected() const { return selected_; }

 private:
  FnStringStore texts_;
  int selected_ = 0;
};

Rectangle rectangleOf(MenuStore& menu, const Westring& title, const Win* parent) {
  const int width = widthOf(menu, title) + FrameCells;
  const int height = std::min(menu.count(), console->rows() - MarginY) + FrameCells;
  if (!parent) return {Centred, InTheMiddle, width, height};
  const int left = std::min(parent->right() + 1, console->columns() - width);
  const int top = std::min(parent->top() + 1, console->rows() - height);
  return {left, top, left + width - 1, top + height - 1};
}

const MenuEntry* choose(MenuStore& menu, const Westring& title, const Win* parent) {
  MenuWindow window(menu, title, rectangleOf(menu, title, parent));
  while (window.run() == Key::Enter) {
    const MenuEntry* entry = menu.peek(window.selected());
    if (!entry->submenu) return entry;
    if (entry->submenu->count() == 0) continue;
    if (const MenuEntry* below = choose(*entry->submenu, shownTitle(entry->title), &window)) {
      return below;
    }
  }
  return nullptr;
}

}  // namespace

const MenuEntry* chooseFromMenu(MenuStore& menu) {
  const TextStateGuard guard;
  return choose(menu, shownTitle(MainTitle), nullptr);
}
