#include "commander/command_rooms.h"
#include "panels/commands/panel_sort.h"
#include "panels/commands/panel_switch.h"
#include "panels/model/entry_order.h"

namespace {

constexpr int Left = 0, Right = 1;

std::string named(const char* what, int side) {
  return std::string(what) + (side == Left ? " on the left" : " on the right");
}
Key::Code sided(int side, Key::Code left, Key::Code right) {
  return side == Left ? left : right;
}

// ---- styles

Action showing(PanelStyle style) {
  return [style] { setStyle(panelPair().activeSide, style); };
}
Action showing(PanelStyle style, int side) {
  return [style, side] { setStyle(side, style); };
}
std::function<bool()> shows(PanelStyle style, int side) {
  return [style, side] {
    const Panel& panel = panelPair().side[side];
    return panel.isFiles() && panel.style == style;
  };
}

std::vector<Command> activeStyleRows() {
  using enum PanelStyle;
  return {
      {.name = "Brief", .codes = {Key::ShiftAltF1}, .run = showing(Brief), .label = "Brief"},
      {.name = "Full", .codes = {Key::ShiftAltF2}, .run = showing(Full), .label = "Full"},
      {.name = "Wide", .codes = {Key::ShiftAltF3}, .run = showing(Wide), .label = "Wide"},
      {.name = "Brief-wide",
       .codes = {Key::ShiftAltF4},
       .run = showing(BriefWide),
       .label = "BriefW"},
      {.name = "Unix detail", .codes = {Key::ShiftAltF5}, .run = showing(Unix), .label = "Unix"},
  };
}

std::vector<Command> styleRows(int side) {
  using enum PanelStyle;
  return {
      {.name = named("Brief", side),
       .codes = {sided(side, MenuCode::LeftBrief, MenuCode::RightBrief)},
       .run = showing(Brief, side),
       .menu = {"Brief       AlSh-F1", 0},
       .mark = shows(Brief, side)},
      {.name = named("Full", side),
       .codes = {sided(side, MenuCode::LeftFull, MenuCode::RightFull)},
       .run = showing(Full, side),
       .menu = {"Full        AlSh-F2", 0},
       .mark = shows(Full, side)},
      {.name = named("Wide", side),
       .codes = {sided(side, MenuCode::LeftWide, MenuCode::RightWide)},
       .run = showing(Wide, side),
       .menu = {"Wide        AlSh-F3", 0},
       .mark = shows(Wide, side)},
      {.name = named("Brief-wide", side),
       .codes = {sided(side, MenuCode::LeftBriefWide, MenuCode::RightBriefWide)},
       .run = showing(BriefWide, side),
       .menu = {"Brief-Wide  AlSh-F4", 3},
       .mark = shows(BriefWide, side)},
      {.name = named("Unix detail", side),
       .codes = {sided(side, MenuCode::LeftUnix, MenuCode::RightUnix)},
       .run = showing(Unix, side),
       .menu = {"Unix detail AlSh-F5", 8}},
      {.name = named("Tree", side),
       .codes = {sided(side, MenuCode::LeftTree, MenuCode::RightTree)},
       .run = showing(Tree, side),
       .menu = {"Tree", 0},
       .mark = shows(Tree, side)},
  };
}

// ---- sort orders

Action sorting(int code) {
  return [code] { setSort(panelPair().active(), code); };
}
Action sorting(int code, int side) {
  return [code, side] { setSort(panelPair().side[side], code); };
}
std::function<bool()> sorts(int code, int side) {
  return [code, side] { return panelPair().side[side].sort % SortCode::Reverse == code; };
}

void reverse(Panel& panel) {
  setSort(panel, reversedSort(panel.sort));
}
std::function<bool()> isReversed(int side) {
  return [side] { return panelPair().side[side].sort >= SortCode::Reverse; };
}

// With Shift held the keys are unassigned.
std::vector<Command> activeSortRows() {
  using enum When;
  return {
      {.name = "Sort by name",
       .codes = {Key::CtrlF3},
       .when = ShiftUp,
       .run = sorting(SortCode::Name),
       .label = "Name"},
      {.name = "Sort by extension",
       .codes = {Key::CtrlF4},
       .when = ShiftUp,
       .run = sorting(SortCode::Extension),
       .label = "Exten"},
      {.name = "Sort by time",
       .codes = {Key::CtrlF5},
       .when = ShiftUp,
       .run = sorting(SortCode::Time),
       .label = "Time"},
      {.name = "Sort by size",
       .codes = {Key::CtrlF6},
       .when = ShiftUp,
       .run = sorting(SortCode::Size),
       .label = "Size"},
      {.name = "Not sorted",
       .codes = {Key::CtrlF7},
       .when = ShiftUp,
       .run = sorting(SortCode::Unsorted),
       .label = "Unsort"},
      {.name = "Reverse the order",
       .codes = {Key::CtrlF8},
       .when = ShiftUp,
       .run = [] { reverse(panelPair().active()); },
       .label = "Revers"},
  };
}

std::vector<Command> sortRows(int side) {
  return {
      {.name = named("Sort by name", side),
       .codes = {sided(side, MenuCode::LeftName, MenuCode::RightName)},
       .run = sorting(SortCode::Name, side),
       .menu = {"Name        Ctrl-F3", 0},
       .mark = sorts(SortCode::Name, side)},
      {.name = named("Sort by extension", side),
       .codes = {sided(side, MenuCode::LeftExtension, MenuCode::RightExtension)},
       .run = sorting(SortCode::Extension, side),
       .menu = {"Extension   Ctrl-F4", 1},
       .mark = sorts(SortCode::Extension, side)},
      {.name = named("Sort by time", side),
       .codes = {sided(side, MenuCode::LeftTime, MenuCode::RightTime)},
       .run = sorting(SortCode::Time, side),
       .menu = {"Time        Ctrl-F5", 2},
       .mark = sorts(SortCode::Time, side)},
      {.name = named("Sort by size", side),
       .codes = {sided(side, MenuCode::LeftSize, MenuCode::RightSize)},
       .run = sorting(SortCode::Size, side),
       .menu = {"Size        Ctrl-F6", 0},
       .mark = sorts(SortCode::Size, side)},
      {.name = named("Not sorted", side),
       .codes = {sided(side, MenuCode::LeftUnsorted, MenuCode::RightUnsorted)},
       .run = sorting(SortCode::Unsorted, side),
       .menu = {"Unsorted    Ctrl-F7", 0},
       .mark = sorts(SortCode::Unsorted, side)},
      {.name = named("Reverse the order", side),
       .codes = {sided(side, MenuCode::LeftReverse, MenuCode::RightReverse)},
       .run = [side] { reverse(panelPair().side[side]); },
       .menu = {"Reverse     Ctrl-F8", 2},
       .mark = isReversed(side)},
  };
}

}  // namespace

std::vector<Command> lookCommands() {
  return joined({activeStyleRows(), styleRows(Left), styleRows(Right), activeSortRows(),
                 sortRows(Left), sortRows(Right)});
}
