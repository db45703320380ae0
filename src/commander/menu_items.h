#pragma once

#include <vector>

#include "console/key_codes.h"
#include "ui/help_window.h"

// One line of a pull-down menu. No text is a separator; text with NoKey is disabled.
struct menuItem {
  const char* text;
  int quickLetter;  // index in the text
  Key::Code code;
  wchar_t mark = L' ';

  bool isSeparator() const { return text == nullptr; }
};

struct Menu {
  const char* title;  // with its own padding, as drawn when it is chosen
  int column;
  char hotLetter;
  int width;  // of the drop-down's interior
  HelpTopic help;
  std::vector<menuItem> items;
};

inline constexpr int MenuCount = 5;
inline constexpr int LeftMenu = 0, FilesMenu = 1, CommandsMenu = 2, OptionsMenu = 3, RightMenu = 4;
extern const char MenuBarText[];

// The five menus in bar order; their items come from the rows of the command table. Application
// thread.
std::vector<Menu>& menus();
// Sets the marks of the panel menus and of the options by the present state.
void refreshMenuMarks();
