#include "commander/menu_items.h"

#include <algorithm>
#include <span>

#include "commander/command_table.h"

const char MenuBarText[] = "    Left    Files    Commands    Options    Right  ";

namespace {

constexpr wchar_t Mark = 0x221A;
constexpr wchar_t NoMark = L' ';
constexpr Key::Code Line = Key::NoKey;  // a separator

// Which commands stand in which menu, and in which order.
constexpr Key::Code LeftCodes[] = {MenuCode::LeftBrief,
                                   MenuCode::LeftFull,
                                   MenuCode::LeftWide,
                                   MenuCode::LeftBriefWide,
                                   MenuCode::LeftUnix,
                                   MenuCode::LeftInfo,
                                   MenuCode::LeftTree,
                                   Key::CtrlF1,
                                   Line,
                                   MenuCode::LeftName,
                                   MenuCode::LeftExtension,
                                   MenuCode::LeftTime,
                                   MenuCode::LeftSize,
                                   MenuCode::LeftUnsorted,
                                   MenuCode::LeftReverse,
                                   Line,
                                   MenuCode::LeftReRead,
                                   MenuCode::LeftFilter,
                                   Key::AltF1};
constexpr Key::Code RightCodes[] = {MenuCode::RightBrief,
                                    MenuCode::RightFull,
                                    MenuCode::RightWide,
                                    MenuCode::RightBriefWide,
                                    MenuCode::RightUnix,
                                    MenuCode::RightInfo,
                                    MenuCode::RightTree,
                                    Key::CtrlF2,
                                    Line,
                                    MenuCode::RightName,
                                    MenuCode::RightExtension,
                                    MenuCode::RightTime,
                                    MenuCode::RightSize,
                                    MenuCode::RightUnsorted,
                                    MenuCode::RightReverse,
                                    Line,
                                    MenuCode::RightReRead,
                                    MenuCode::RightFilter,
                                    Key::AltF2};
constexpr Key::Code FilesCodes[] = {Key::ShiftF1,
                                    Key::F2,
                                    Key::F3,
                                    Key::F4,
                                    Key::F5,
                                    Key::F6,
                                    Key::F7,
                                    Key::F8,
                                    Line,
                                    Key::ctrl('a'),
                                    Key::ctrl('c'),
                                    MenuCode::FileDateTime,
                                    Line,
                                    MenuCode::SelectGroup,
                                    MenuCode::UnselectGroup,
                                    MenuCode::InvertSelection,
                                    MenuCode::RestoreSelection,
                                    Line,
                                    Key::F10};
constexpr Key::Code CommandsCodes[] = {Key::AltF10,
                                       Key::AltF7,
                                       Key::AltF8,
                                       Key::AltF9,
                                       Key::AltBackslash,
                                       Key::AltF5,
                                       Line,
                                       Key::ctrl('u'),
                                       Key::ctrl('o'),
                                       Key::ctrl('k'),
                                       Key::ctrl('q'),
                                       Key::ctrl('w'),
                                       Line,
                                       MenuCode::EditAssociations,
                                       MenuCode::EditUserMenu};
constexpr Key::Code OptionsCodes[] = {
    MenuCode::Configuration,  MenuCode::Colours,           MenuCode::Confirmations, Line,
    MenuCode::Hidden,         MenuCode::PathPrompt,        MenuCode::FullScreen,    MenuCode::Clock,
    MenuCode::TagDirectories, MenuCode::ThousandSeparator, MenuCode::RetainCount,   Line,
    MenuCode::SaveSetup};

// The row that stands in the menu for a code.
const Command* rowOf(Key::Code code) {
  const auto rows = commandsOf(code);
  const auto found = std::ranges::find_if(
      rows, [](const Command* command) { return command->menu.text != nullptr; });
  return found == rows.end() ? nullptr : *found;
}

std::vector<menuItem> itemsOf(std::span<const Key::Code> codes) {
  std::vector<menuItem> items;
  for (Key::Code code : codes) {
    const Command* row = code == Line ? nullptr : rowOf(code);
    const MenuText shown = row ? row->menu : MenuText{};
    items.push_back({shown.text, shown.quickLetter, code});
  }
  return items;
}

// Whether the row of an item says that it is on.
bool isMarked(const menuItem& item) {
  const Command* row = item.code == Line ? nullptr : rowOf(item.code);
  return row && row->mark && row->mark();
}

void mark(Menu& menu, int index, int rowIndex) {
  menu.items[index].mark = isMarked(menu.items[rowIndex]) ? Mark : NoMark;
}

void markMenu(Menu& menu) {
  for (int i = 0; i < static_cast<int>(menu.items.size()); ++i) mark(menu, i, i);
}

// The marks from row 4 on stand one row above the item they name: users know them there.
void markPanelMenu(Menu& menu) {
  constexpr int FirstShifted = 4;
  const int last = static_cast<int>(menu.items.size()) - 1;
  for (int i = 0; i < FirstShifted; ++i) mark(menu, i, i);
  for (int i = FirstShifted; i < last; ++i) mark(menu, i, i + 1);
}

}  // namespace

std::vector<Menu>& menus() {
  constexpr int PanelWidth = 21, FilesWidth = 27, CommandsWidth = 30, OptionsWidth = 25;
  static std::vector<Menu> table{
      {"  Left  ", 2, 'l', PanelWidth, HelpTopic::PanelMenu, itemsOf(LeftCodes)},
      {"  Files  ", 10, 'f', FilesWidth, HelpTopic::FilesMenu, itemsOf(FilesCodes)},
      {"  Commands  ", 19, 'c', CommandsWidth, HelpTopic::CommandsMenu, itemsOf(CommandsCodes)},
      {"  Options  ", 31, 'o', OptionsWidth, HelpTopic::OptionsMenu, itemsOf(OptionsCodes)},
      {"  Right  ", 42, 'r', PanelWidth, HelpTopic::PanelMenu, itemsOf(RightCodes)}};
  return table;
}

void refreshMenuMarks() {
  markPanelMenu(menus()[LeftMenu]);
  markPanelMenu(menus()[RightMenu]);
  markMenu(menus()[OptionsMenu]);
}
