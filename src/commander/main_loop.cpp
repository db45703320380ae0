#include "commander/main_loop.h"

#include <algorithm>
#include <utility>

#include "commander/go_commands.h"
#include "commander/key_bar.h"
#include "commander/key_commands.h"
#include "console/input.h"
#include "console/text_state.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/quick_search.h"
#include "panels/model/directory_tree.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/status_line.h"
#include "shell/prompt.h"
#include "ui/alert.h"
#include "ui/help_window.h"
#include "ui/input_loop.h"

namespace {

constexpr int CursorShape = 15;  // percent of a cell, as in input fields

// An active panel that went off hands over to the other one.
void chooseActiveSide(MainLoop& loop) {
  PanelPair& pair = panelPair();
  if (!bothPanelsOff() && !pair.active().showing) {
    setActiveSide(1 - pair.activeSide);
    markActivePanel();
    loop.repaintCursor = true;
    loop.raise(Redraw::CommandRow);
  } else if (loop.redraw != Redraw::Nothing) {
    markActivePanel();
  }
}

void forgetNameOffset(Panel& panel) {
  if (panel.nameOffsetEntry == panel.currentIndex()) return;
  panel.nameOffset = 0;
  panel.nameOffsetEntry = panel.currentIndex();
}

void drawCommandRow(MainLoop& loop) {
  int row = panelPair().screenLines - 2;
  loop.prompt = commandPrompt();
  int room = panelPair().screenColumns - loop.prompt.length();
  int scroll = loop.line.scrollFor(room);
  BatchScope batch;
  setTextAttr(colourOf(Colour::CommandLine));
  writeWideAt(0, row, loop.prompt.data());
  const Westring& text = loop.line.text();
  Westring visible = left(right(text, text.length() - scroll), room);
  writeWideAt(loop.prompt.length(), row, visible.data());
  clearToEndOfLine();
}

void drawBelowPanels(MainLoop& loop) {
  if (loop.drawnShiftState != lastShiftState()) loop.raise(Redraw::All);
  if (loop.redraw == Redraw::Nothing) return;
  drawCommandRow(loop);
  if (loop.redraw == Redraw::All) {
    drawKeyBar(lastShiftState());
    loop.drawnShiftState = lastShiftState();
    showPathInWindowTitle();
    drawClock();
  }
  loop.redraw = Redraw::Nothing;
}

void placeTextCursor(MainLoop& loop) {
  int room = panelPair().screenColumns - loop.prompt.length();
  int x = loop.prompt.length() + loop.line.cursor() - loop.line.scrollFor(room);
  setTextPos(x, panelPair().screenLines - 2);
}

// The shorter of two waits.
int sooner(int a, int b) {
  if (a == NoLimit || b == NoLimit) return std::max(a, b);
  return std::min(a, b);
}

// Waits for the user; the clock moves on while nothing comes.
Input waitForInput() {
  Input input;
  setCursorShape(CursorShape);
  while (input.kind == Input::Kind::TimeOut) {
    const int clockMs = GlobalOptions::Clock ? msToNextMinute() : NoLimit;
    input = nextInput(sooner(clockMs, directoryTree()->saveWhileWaiting()));
    if (input.kind == Input::Kind::TimeOut && GlobalOptions::Clock) drawClock();
  }
  setCursorShape(0);
  return input;
}

void takeMouse(MainLoop& loop, const MouseMessage& mouse) {
  Key::Code key;
  switch (handlePanelMouse(mouse, loop.mouse, key)) {
    case MouseOutcome::Nothing:
      return;
    case MouseOutcome::Handled:
      break;
    case MouseOutcome::EnterCommand:
      enterCurrent(panelPair().active());
      break;
    case MouseOutcome::OpenMenu:
      loop.pendingKey = Key::F9;
      break;
    case MouseOutcome::RunKey:
      loop.pendingKey = key;
      break;
    case MouseOutcome::EditDirectoryInfo:
      loop.pendingKey = Key::F4;
      break;
  }
  loop.repaintCursor = true;
  loop.raise(Redraw::CommandRow);
}

void tellNotices(MainLoop& loop) {
  for (const StartNotice& notice : std::exchange(loop.notices, {})) {
    alert(notice.text, notice.path, AlertButtons::Ok, AlertColour::Error);
  }
}

void takePending(MainLoop& loop) {
  const Key::Code key = std::exchange(loop.pendingKey, Key::NoKey);
  loop.shiftState = lastShiftState();
  if (key == Key::MouseEvent) return takeMouse(loop, loop.pendingMouse);
  dispatchKey(loop, key);
}

void oneRound(MainLoop& loop) {
  PanelPair& pair = panelPair();
  panelsVisible(Visible::Yes);
  chooseActiveSide(loop);
  Panel& panel = pair.active();
  forgetNameOffset(panel);
  if (loop.repaintCursor) {
    BatchScope batch;
    drawCursor(pair.activeSide, CursorBar::On);
    drawStatusLine(pair.inactive());
    loop.repaintCursor = false;
  }
  drawBelowPanels(loop);
  panel.saved = {panel.top, panel.cursor};
  placeTextCursor(loop);
  tellNotices(loop);

  if (loop.pendingKey != Key::NoKey) return takePending(loop);
  const Input input = waitForInput();
  loop.shiftState = input.mouse.state;
  if (input.kind == Input::Kind::Mouse) return takeMouse(loop, input.mouse);
  if (input.kind == Input::Kind::Key) dispatchKey(loop, input.key);
}

}  // namespace

bool bothPanelsOff() {
  return !panelPair().side[0].showing && !panelPair().side[1].showing;
}

Westring commandPrompt() {
  const PanelPair& pair = panelPair();
  return promptOf(pair.side[pair.commandSide()]);
}

void runMainLoop(MainLoop& loop) {
  const HelpOfCommand help(HelpTopic::Panels);  // of boxes that no key has opened
  whenShiftChangesInSearch(drawKeyBar);
  while (!loop.leaving && !programEnds()) oneRound(loop);
}
