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

void addRoom(std::vector<Command>& table, Touches touches, std::vector<Command> rows) {
  for (Command& row : rows) {
    row.touches = touches;
    table.push_back(std::move(row));
  }
}

std::vector<Command> makeTable() {
  std::vector<Command> table;
  addRoom(table, Touches::Cursor, listCommands());
  addRoom(table, Touches::CommandRow, lineCommands());
  addRoom(table, Touches::StatusLine, selectionCommands());
  addRoom(table, Touches::Everything, fileCommands());
  addRoom(table, Touches::Everything, panelCommands());
  addRoom(table, Touches::Everything, lookCommands());
  addRoom(table, Touches::Everything, goCommands());
  addRoom(table, Touches::Everything, optionCommands());
  addRoom(table, Touches::Everything, programCommands());
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
