#include "commander/command_table.h"

#include <algorithm>
#include <unordered_map>

#include "commander/command_rooms.h"
#include "options/options.h"
#include "panels/commands/navigation.h"

namespace {

struct Condition {
  When one;
  bool (*holds)(const MainLoop& loop);
};

Panel& active() {
  return panelPair().active();
}

bool held(const MainLoop& loop, int modifier) {
  return (loop.shiftState & modifier) != 0;
}

constexpr Condition Conditions[] = {
    {When::PanelsOn, [](const MainLoop&) { return !bothPanelsOff(); }},
    {When::Files, [](const MainLoop&) { return active().isFiles(); }},
    {When::Entry, [](const MainLoop&) { return active().currentEntry() != nullptr; }},
    {When::NoArchive, [](const MainLoop&) { return active().archive == nullptr; }},
    {When::Columns, [](const MainLoop&) { return isMultiColumn(active()); }},
    {When::Searching, [](const MainLoop&) { return !active().quickSearch.empty(); }},
    {When::LineEmpty, [](const MainLoop& loop) { return loop.line.empty(); }},
    {When::TextBeforeCursor, [](const MainLoop& loop) { return loop.line.cursor() > 0; }},
    {When::ShiftHeld, [](const MainLoop& loop) { return held(loop, ShiftState::Shift); }},
    {When::ShiftUp, [](const MainLoop& loop) { return !held(loop, ShiftState::Shift); }},
    {When::CtrlHeld, [](const MainLoop& loop) { return held(loop, ShiftState::Ctrl); }},
    {When::AltHeld, [](const MainLoop& loop) { return held(loop, ShiftState::Alt); }},
    {When::EscTakesPanels, [](const MainLoop&) { return GlobalOptions::EscPanelSwitch; }},
    {When::StarIsText, [](const MainLoop&) { return GlobalOptions::DisableInvert; }},
};

// What all rows of a room have that don't say otherwise.
struct RoomDefaults {
  Touches touches;
  HelpTopic help;
};

void addRoom(std::vector<Command>& table, const RoomDefaults& room, std::vector<Command> rows) {
  for (Command& row : rows) {
    row.touches = room.touches;
    if (row.help == HelpTopic::None) row.help = room.help;
    table.push_back(std::move(row));
  }
}

std::vector<Command> makeTable() {
  using enum HelpTopic;
  std::vector<Command> table;
  addRoom(table, {Touches::Cursor, Panels}, listCommands());
  addRoom(table, {Touches::CommandRow, CommandsMenu}, lineCommands());
  addRoom(table, {Touches::StatusLine, Panels}, selectionCommands());
  addRoom(table, {Touches::Everything, FilesMenu}, fileCommands());
  addRoom(table, {Touches::Everything, Panels}, panelCommands());
  addRoom(table, {Touches::Everything, Panels}, lookCommands());
  addRoom(table, {Touches::Everything, CommandsMenu}, goCommands());
  addRoom(table, {Touches::Everything, OptionsMenu}, optionCommands());
  addRoom(table, {Touches::Everything, CommandsMenu}, programCommands());
  return table;
}

using RowsByCode = std::unordered_map<Key::Code, std::vector<const Command*>>;

RowsByCode rowsByCode() {
  RowsByCode rows;
  for (const Command& command : commandTable()) {
    for (Key::Code code : command.codes) rows[code].push_back(&command);
  }
  return rows;
}

}  // namespace

std::vector<Command> joined(std::initializer_list<std::vector<Command>> parts) {
  std::vector<Command> rows;
  for (const auto& part : parts) rows.insert(rows.end(), part.begin(), part.end());
  return rows;
}

const std::vector<Command>& commandTable() {
  static const std::vector<Command> table = makeTable();
  return table;
}

std::span<const Command* const> commandsOf(Key::Code code) {
  static const RowsByCode rows = rowsByCode();
  const auto found = rows.find(code);
  if (found == rows.end()) return {};
  return found->second;
}

bool holds(When conditions, const MainLoop& loop) {
  return std::ranges::all_of(Conditions, [&](const Condition& condition) {
    return !includes(conditions, condition.one) || condition.holds(loop);
  });
}
