#include "commander/key_commands.h"

#include <algorithm>

#include "commander/command_table.h"
#include "panels/commands/quick_search.h"
#include "panels/picture/status_line.h"

namespace {

// Text for the command line: false when the code is no character.
bool takeCharacter(MainLoop& loop, Key::Code key) {
  if (!key.isText()) return false;
  loop.line.insert(key.character());
  loop.raise(Redraw::CommandRow);
  return true;
}

void takeBarOff(MainLoop& loop) {
  drawCursor(panelPair().activeSide, CursorBar::Off);
  loop.repaintCursor = true;
}

// A code of no command: an Alt character starts the quick search.
void takeUnclaimed(MainLoop& loop, Key::Code key) {
  takeBarOff(loop);
  const Key::Code character = hotKeyChar(key);
  if (character == key || !character.isText()) return;
  loop.pendingKey = quickSearchStep(panelPair().active(), character, 1, loop.pendingMouse);
}

void drawTouched(MainLoop& loop, Touches touches, Panel& panel) {
  if (touches == Touches::CommandRow) loop.raise(Redraw::CommandRow);
  if (touches == Touches::Everything) loop.raise(Redraw::All);
  if (touches == Touches::StatusLine && panel.quickSearch.empty()) drawStatusLine(panel);
}

}  // namespace

void dispatchKey(MainLoop& loop, Key::Code key) {
  const auto rows = commandsOf(key);
  if (rows.empty()) return takeCharacter(loop, key) ? void() : takeUnclaimed(loop, key);
  const auto found = std::ranges::find_if(
      rows, [&](const Command* command) { return holds(command->when, loop); });
  const bool runs = found != rows.end();
  const Command& command = runs ? **found : *rows.back();
  Panel& panel = panelPair().active();
  loop.key = key;
  if (command.touches != Touches::CommandRow) {
    if (command.bar == CursorBar::Off) drawCursor(panelPair().activeSide, CursorBar::Off);
    loop.repaintCursor = true;
  }
  if (runs) {
    const HelpOfCommand help(command.help);
    command.run(loop, command);
  }
  drawTouched(loop, command.touches, panel);
}
