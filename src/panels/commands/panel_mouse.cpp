#include "panels/commands/panel_mouse.h"

#include <algorithm>
#include <chrono>

#include "console/input.h"
#include "console/text_state.h"
#include "foundation/threads.h"
#include "options/options.h"
#include "panels/commands/navigation.h"
#include "panels/commands/selection.h"
#include "panels/picture/panel_columns.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"

namespace {

constexpr int WheelSteps = 3;
constexpr int FirstFileRow = 1;
constexpr int RowsBelowFiles = 3;   // separator, status line, bottom border
constexpr int ShortestPassMs = 16;  // no use in scrolling faster than the screen is painted
constexpr int LookMs = 10;          // how often a longer wait looks for the next event

bool isPress(MouseKind kind) {
  return kind == MouseKind::LeftPress || kind == MouseKind::RightPress;
}
bool isDrag(MouseKind kind) {
  return kind == MouseKind::LeftDrag || kind == MouseKind::RightDrag;
}
bool isRelease(MouseKind kind) {
  return kind == MouseKind::LeftRelease || kind == MouseKind::RightRelease;
}

MouseButton buttonOf(MouseKind kind) {
  const bool right = kind == MouseKind::RightPress || kind == MouseKind::RightDrag ||
                     kind == MouseKind::RightRelease;
  return right ? MouseButton::Right : MouseButton::Left;
}

bool isFileRow(int y) {
  return y >= FirstFileRow && y <= panelPair().panelRows;
}

// -1 and 1: the row scrolls up or down; 0: it doesn't scroll.
int scrollDirection(int y) {
  const int rows = panelPair().panelRows;
  if (y == 0) return -1;
  return y > rows && y <= rows + RowsBelowFiles ? 1 : 0;
}

int sideAt(int x) {
  return x < panelPair().panelWidth() ? 0 : 1;
}

bool hasList(const Panel& panel) {
  return panel.showing && panel.isFiles();
}

int pageColumn(const Panel& panel, int x) {
  const int width = panelPair().panelWidth();
  if (panel.style == PanelStyle::BriefWide) return x >= width / 2 ? 1 : 0;
  if (panel.style != PanelStyle::Brief) return 0;
  const int column = pageColumns(panel.style) * (x - 1) / (width - 2);
  return x == width - 1 ? column - 1 : column;  // the right border belongs to the last column
}

void showBar() {
  drawCursor(panelPair().activeSide, CursorBar::On);
}

void hideBar() {
  drawCursor(panelPair().activeSide, CursorBar::Off);
}

void wheel(int direction) {
  Panel& panel = panelPair().active();
  if (!hasList(panel)) return;
  BatchScope batch;
  hideBar();
  panel.quickSearch = Westring();
  for (int i = 0; i < WheelSteps; ++i) moveCursor(panel, direction < 0 ? 1 : -1);
  showBar();
}

// The bar stays hidden after a move: who calls shows it when all is drawn.
void moveTo(Panel& panel, int index) {
  if (index == panel.currentIndex()) return;
  hideBar();
  panel.cursor = index - panel.top;
  panel.quickSearch = Westring();
}

void startTagging(Panel& panel, int index, PanelMouseState& state) {
  state.lastTagged = index;
  toggleTag(panel, index, TagMode::Flip);
  state.tagDirection = panel.entries[index]->tagged ? 1 : -1;
}

// Tags on from where the drag stood. One that began where no entry is starts at the first it meets.
void tagOnTo(Panel& panel, int index, PanelMouseState& state) {
  if (state.lastTagged < 0) return startTagging(panel, index, state);
  const TagMode mode = state.tagDirection > 0 ? TagMode::Tag : TagMode::Untag;
  int at = std::min(state.lastTagged, panel.count() - 1);
  const int step = index > at ? 1 : -1;
  while (at != index) {
    at += step;
    toggleTag(panel, at, mode);
  }
  state.lastTagged = index;
}

// How long a pass lasts before the next one may begin.
std::chrono::milliseconds passTime(bool scrolled) {
  const int delay = GlobalOptions::ScrollDelay;
  if (delay <= 0) return std::chrono::milliseconds(ShortestPassMs);
  return std::chrono::milliseconds(scrolled ? delay : 0);
}

bool somethingCame() {
  return keyPending() || displayLost();
}

// False when an event came before the time did.
bool waitForPass(std::chrono::steady_clock::time_point due) {
  using namespace std::chrono;
  for (bool complete = false; steady_clock::now() < due; complete = true) {
    if (somethingCame()) return false;
    if (!complete) console->completePainting();
    const auto rest = duration_cast<milliseconds>(due - steady_clock::now()).count() + 1;
    sleepMs(static_cast<uint32_t>(std::clamp<long long>(rest, 0, LookMs)));
  }
  return true;
}

// One step; false at the end of the list.
bool scrollOnce(Panel& panel, int step, MouseKind kind, PanelMouseState& state) {
  const int before = panel.currentIndex();
  BatchScope batch;
  hideBar();
  moveCursor(panel, step);
  panel.quickSearch = Westring();
  const bool moved = panel.currentIndex() != before;
  if (moved && kind == MouseKind::RightDrag) tagOnTo(panel, panel.currentIndex(), state);
  showBar();
  return moved;
}

void autoScroll(int step, MouseKind kind, PanelMouseState& state) {
  Panel& panel = panelPair().active();
  if (!hasList(panel) || panel.count() == 0) return;
  state.scrollKind = kind;
  // The pointer's small movements in the row come here again and again: they don't make it faster.
  while (waitForPass(state.nextPass)) {
    const int top = panel.top;
    if (!scrollOnce(panel, step, kind, state)) return;
    state.nextPass = std::chrono::steady_clock::now() + passTime(panel.top != top);
    if (somethingCame()) return;
  }
}

void activate(int side, PanelMouseState& state) {
  hideBar();
  setActiveSide(side);
  markActivePanel();
  state.lastTagged = panelPair().active().currentIndex();
}

MouseOutcome actOnEntry(Panel& panel, int index, MouseKind kind, PanelMouseState& state) {
  if (kind == MouseKind::RightPress) state.lastTagged = -1;
  if (index < 0) return MouseOutcome::Handled;
  moveTo(panel, index);
  if (kind == MouseKind::RightPress) startTagging(panel, index, state);
  if (kind == MouseKind::RightDrag) tagOnTo(panel, index, state);
  if (kind != MouseKind::LeftDoubleClick) return MouseOutcome::Handled;
  // What comes next finds another list: the release that is still to come means nothing there.
  state.dragSide = -1;
  return MouseOutcome::EnterCommand;
}

MouseOutcome pressOnPanel(const MouseMessage& event, PanelMouseState& state) {
  PanelPair& pair = panelPair();
  const int side = sideAt(event.x);
  Panel& panel = pair.side[side];
  if (!panel.showing || event.x >= 2 * pair.panelWidth()) return MouseOutcome::Nothing;
  BatchScope batch;
  if (side != pair.activeSide) activate(side, state);
  MouseOutcome outcome = MouseOutcome::Handled;
  if (panel.isFiles()) {
    state.dragSide = side;
    state.dragButton = buttonOf(event.kind);
    outcome = actOnEntry(panel, entryAt(side, event.x, event.y), event.kind, state);
  } else if (event.kind == MouseKind::LeftDoubleClick && event.y > panel.infoRows) {
    outcome = MouseOutcome::EditDirectoryInfo;
  }
  showBar();
  return outcome;
}

// Stays with the panel where the press began, wherever the pointer is.
MouseOutcome dragOnPanel(const MouseMessage& event, PanelMouseState& state) {
  const int side = state.dragSide;
  Panel& panel = panelPair().side[side];
  const int left = side * panelPair().panelWidth();
  const int x = std::clamp(event.x, left, left + panelPair().panelWidth() - 1);
  BatchScope batch;
  const MouseOutcome outcome = actOnEntry(panel, entryAt(side, x, event.y), event.kind, state);
  showBar();
  return outcome;
}

MouseOutcome release(const MouseMessage& event, PanelMouseState& state) {
  if (state.dragSide < 0) return MouseOutcome::Nothing;
  const int step = scrollDirection(event.y);
  if (buttonOf(event.kind) != state.dragButton) {
    if (step != 0) autoScroll(step, state.scrollKind, state);
    return MouseOutcome::Handled;
  }
  if (isFileRow(event.y)) dragOnPanel(event, state);
  state.dragSide = -1;
  return MouseOutcome::Handled;
}

MouseOutcome pressToScroll(const MouseMessage& event, PanelMouseState& state) {
  const PanelPair& pair = panelPair();
  if (!pair.side[sideAt(event.x)].showing) return MouseOutcome::Nothing;
  state.dragSide = pair.activeSide;
  state.dragButton = buttonOf(event.kind);
  state.lastTagged = -1;
  state.nextPass = {};
  autoScroll(scrollDirection(event.y), event.kind, state);
  return MouseOutcome::Handled;
}

MouseOutcome onKeyBar(const MouseMessage& event, PanelMouseState& state, Key::Code& key) {
  if (!isPress(event.kind) && !isRelease(event.kind)) return MouseOutcome::Nothing;
  const Key::Code pointed = keyBarKeyAt(event.x, event.state, buttonOf(event.kind));
  if (isPress(event.kind)) {
    state.pressedKey = pointed;
    return MouseOutcome::Handled;
  }
  const bool same = pointed != Key::NoKey && pointed == state.pressedKey;
  state.pressedKey = Key::NoKey;
  state.dragSide = -1;
  if (!same) return MouseOutcome::Nothing;
  key = pointed;
  return MouseOutcome::RunKey;
}

MouseOutcome drag(const MouseMessage& event, PanelMouseState& state) {
  if (state.dragSide != panelPair().activeSide || !hasList(panelPair().active())) {
    state.dragSide = -1;
    return MouseOutcome::Nothing;
  }
  if (isFileRow(event.y)) {
    state.nextPass = {};
    return dragOnPanel(event, state);
  }
  const int step = scrollDirection(event.y);
  if (step == 0) return MouseOutcome::Nothing;
  autoScroll(step, event.kind, state);
  return MouseOutcome::Handled;
}

MouseOutcome press(const MouseMessage& event, PanelMouseState& state) {
  state.dragSide = -1;
  if (event.y == 0 && event.kind == MouseKind::RightPress) return MouseOutcome::OpenMenu;
  if (isFileRow(event.y)) return pressOnPanel(event, state);
  return scrollDirection(event.y) != 0 ? pressToScroll(event, state) : MouseOutcome::Nothing;
}

}  // namespace

MouseOutcome handlePanelMouse(const MouseMessage& event, PanelMouseState& state, Key::Code& key) {
  if (event.kind == MouseKind::Wheel) {
    wheel(event.wheel);
    return MouseOutcome::Handled;
  }
  if (event.y == panelPair().screenLines - 1) return onKeyBar(event, state, key);
  if (isDrag(event.kind)) return drag(event, state);
  state.pressedKey = Key::NoKey;
  return isRelease(event.kind) ? release(event, state) : press(event, state);
}

int entryAt(int side, int x, int y) {
  const PanelPair& pair = panelPair();
  const Panel& panel = pair.side[side];
  const int inPanel = x - side * pair.panelWidth();
  if (!hasList(panel) || !isFileRow(y) || inPanel < 0 || inPanel >= pair.panelWidth()) return -1;
  const int index = panel.top + pageColumn(panel, inPanel) * pair.panelRows + y - FirstFileRow;
  return index < panel.count() ? index : -1;
}

Key::Code keyBarKeyAt(int x, int shiftState, MouseButton button) {
  const int field = std::max(panelPair().screenColumns / KeyBarFields, 1);
  const int index = std::clamp((x + 1) / field, 0, KeyBarFields - 1);
  return functionKey(index + 1, button == MouseButton::Right ? ShiftState::Alt : shiftState);
}
