#include "commander/menu_items.h"

#include "commander/menu_codes.h"
#include "console/key_codes.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"

const char MenuBarText[] = "    Left    Files    Commands    Options    Right  ";

namespace {

constexpr wchar_t Mark = 0x221A;
constexpr wchar_t NoMark = L' ';
constexpr menuItem Separator{nullptr, 0, 0};

std::vector<menuItem> leftItems() {
  using namespace MenuCode;
  return {{"Brief       AlSh-F1", 0, LeftBrief},
          {"Full        AlSh-F2", 0, LeftFull},
          {"Wide        AlSh-F3", 0, LeftWide},
          {"Brief-Wide  AlSh-F4", 3, LeftBriefWide},
          {"Unix detail AlSh-F5", 8, LeftUnix},
          {"Info        Ctrl-L", 0, LeftInfo},
          {"Tree", 0, LeftTree},
          {"On/Off      Ctrl-F1", 0, Key::CtrlF1},
          Separator,
          {"Name        Ctrl-F3", 0, LeftName},
          {"Extension   Ctrl-F4", 1, LeftExtension},
          {"Time        Ctrl-F5", 2, LeftTime},
          {"Size        Ctrl-F6", 0, LeftSize},
          {"Unsorted    Ctrl-F7", 0, LeftUnsorted},
          {"Reverse     Ctrl-F8", 2, LeftReverse},
          Separator,
          {"Re-Read     Ctrl-R", 0, LeftReRead},
          {"Filter", 2, LeftFilter},
          {"Drive       Alt-F1", 0, Key::AltF1}};
}

std::vector<menuItem> rightItems() {
  using namespace MenuCode;
  constexpr int codes[] = {
      RightBrief,   RightFull, RightWide,   RightBriefWide, RightUnix, RightInfo, RightTree,
      Key::CtrlF2,  0,         RightName,   RightExtension, RightTime, RightSize, RightUnsorted,
      RightReverse, 0,         RightReRead, RightFilter,    Key::AltF2};
  std::vector<menuItem> items = leftItems();
  for (size_t i = 0; i < items.size(); ++i) items[i].code = codes[i];
  items[7].text = "On/Off      Ctrl-F2";
  items.back().text = "Drive       Alt-F2";
  return items;
}

std::vector<menuItem> filesItems() {
  return {{"Manual       Shift-F1", 5, Key::ShiftF1},
          {"User Menu          F2", 0, Key::F2},
          {"View               F3", 0, Key::F3},
          {"Edit               F4", 0, Key::F4},
          {"Copy               F5", 0, Key::F5},
          {"Rename or Move     F6", 0, Key::F6},
          {"Make Directory     F7", 0, Key::F7},
          {"Delete             F8", 0, Key::F8},
          Separator,
          {"File Attributes    Ctrl-A", 5, Key::ctrl('a')},
          {"File Case          Ctrl-C", 0, Key::ctrl('c')},
          {"File Date/Time", 10, MenuCode::FileDateTime},
          Separator,
          {"Select Group       Grey +", 7, MenuCode::SelectGroup},
          {"Unselect Group     Grey -", 1, MenuCode::UnselectGroup},
          {"Invert Sel'n       Grey *", 0, MenuCode::InvertSelection},
          {"Restore Sel'n  Alt-Grey +", 2, MenuCode::RestoreSelection},
          Separator,
          {"Quit               F10", 0, Key::F10}};
}

std::vector<menuItem> commandsItems() {
  return {{"Tree                 Alt-F10", 0, Key::AltF10},
          {"File Find            Alt-F7", 0, Key::AltF7},
          {"History              Alt-F8", 0, Key::AltF8},
          {"EGA Lines            Alt-F9", 0, Key::AltF9},
          {"Directory History    Alt-\\", 1, Key::AltBackslash},
          {"Stored Paths         Alt-F5", 7, Key::AltF5},
          Separator,
          {"Swap Panels          Ctrl-U", 0, Key::ctrl('u')},
          {"Panels On/Off        Ctrl-O", 2, Key::ctrl('o')},
          {"Compare Directories  Ctrl-K", 0, Key::ctrl('k')},
          {"Calculate Dir Size   Ctrl-Q", 10, Key::ctrl('q')},
          {"Open Explorer Window Ctrl-W", 0, Key::ctrl('w')},
          Separator,
          {"Edit Associations", 5, MenuCode::EditAssociations},
          {"Edit User Menu", 10, MenuCode::EditUserMenu}};
}

std::vector<menuItem> optionsItems() {
  return {{"Configuration", 0, MenuCode::Configuration},
          {"Colours", 1, MenuCode::Colours},
          {"Confirmations", 2, MenuCode::Confirmations},
          Separator,
          {"Hidden Files    Ctrl-H", 0, MenuCode::Hidden},
          {"Path Prompt", 0, MenuCode::PathPrompt},
          {"Full Screen", 0, MenuCode::FullScreen},
          {"Clock", 1, MenuCode::Clock},
          {"Tag Directories", 0, MenuCode::TagDirectories},
          {"Thousand Separator", 3, MenuCode::ThousandSeparator},
          {"Retain Dir Count", 0, MenuCode::RetainCount},
          Separator,
          {"Save Setup      Shft-F9", 0, MenuCode::SaveSetup}};
}

// The marks from row 4 on stand one row above the item they name: users know them there.
void markPanelMenu(Menu& menu, const Panel& panel) {
  constexpr int InfoMark = 4, TreeMark = 5, FirstSortMark = 8, ReverseMark = 13;
  for (menuItem& item : menu.items) item.mark = NoMark;
  auto set = [&](int index, bool on) { menu.items[index].mark = on ? Mark : NoMark; };
  bool files = panel.isFiles();
  set(0, files && panel.style == PanelStyle::Brief);
  set(1, files && panel.style == PanelStyle::Full);
  set(2, files && panel.style == PanelStyle::Wide);
  set(3, files && panel.style == PanelStyle::BriefWide);
  set(InfoMark, !files);
  set(TreeMark, files && panel.style == PanelStyle::Tree);
  set(FirstSortMark + panel.sort % SortCode::Reverse, true);
  set(ReverseMark, panel.sort >= SortCode::Reverse);
}

void markOptions(Menu& menu) {
  using namespace GlobalOptions;
  const bool states[] = {::GlobalOptions::Hidden,
                         ::GlobalOptions::PathPrompt,
                         FullScreen,
                         Clock,
                         TagDirs,
                         ThousandSep,
                         ::GlobalOptions::RetainCount};
  constexpr int FirstOption = 4;
  for (size_t i = 0; i < std::size(states); ++i) {
    menu.items[FirstOption + i].mark = states[i] ? Mark : NoMark;
  }
}

}  // namespace

std::vector<Menu>& menus() {
  constexpr int PanelWidth = 21, FilesWidth = 27, CommandsWidth = 30, OptionsWidth = 25;
  static std::vector<Menu> table{{"  Left  ", 2, 'l', PanelWidth, leftItems()},
                                 {"  Files  ", 10, 'f', FilesWidth, filesItems()},
                                 {"  Commands  ", 19, 'c', CommandsWidth, commandsItems()},
                                 {"  Options  ", 31, 'o', OptionsWidth, optionsItems()},
                                 {"  Right  ", 42, 'r', PanelWidth, rightItems()}};
  return table;
}

void refreshMenuMarks() {
  markPanelMenu(menus()[LeftMenu], panelPair().side[0]);
  markPanelMenu(menus()[RightMenu], panelPair().side[1]);
  markOptions(menus()[OptionsMenu]);
}
