#include "panels/commands/quick_search.h"

#include <algorithm>
#include <cwchar>

#include "console/console.h"
#include "console/input.h"
#include "console/text_state.h"
#include "foundation/fold.h"
#include "options/options.h"
#include "panels/commands/navigation.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/status_line.h"
#include "ui/input_loop.h"

namespace {

constexpr int MaxSearchLength = 511;
constexpr int SearchLabelWidth = 8;    // "Search: " in the status line
constexpr int SearchCursorShape = 15;  // percent of the cell
constexpr wchar_t LastCharacter = 65534;

void (*showShiftState)(int shiftState) = nullptr;

bool isSearchCharacter(Key::Code key) {
  return key.isText() && !key.has(Key::WideCharacter) && key.character() <= LastCharacter;
}

bool beginsWith(const wchar_t* name, const wchar_t* text, int length) {
  return wcsnlen(name, static_cast<size_t>(length)) == static_cast<size_t>(length) &&
         compareNoCaseN(name, text, length) == 0;
}

bool currentMatches(const Panel& panel) {
  const entry* current = panel.currentEntry();
  return current &&
         beginsWith(current->name(), panel.quickSearch.data(), panel.quickSearch.length());
}

void moveTo(Panel& panel, int index) {
  if (index >= 0) moveCursor(panel, index - panel.currentIndex());
}

void dropLast(Panel& panel) {
  panel.quickSearch = dropRight(panel.quickSearch, 1);
}

// Adds a character if some entry begins with the longer text, and goes there.
void extend(Panel& panel, wchar_t character) {
  if (!currentMatches(panel)) panel.quickSearch = Westring();
  if (panel.quickSearch.length() >= MaxSearchLength) return;
  panel.quickSearch += character;
  const int found = findByPrefix(panel, panel.quickSearch, panel.currentIndex(), 1);
  if (found < 0) {
    dropLast(panel);
  } else {
    moveTo(panel, found);
  }
}

void stepOn(Panel& panel, int direction) {
  if (!currentMatches(panel)) panel.quickSearch = Westring();
  const int next = panel.currentIndex() + direction;
  moveTo(panel, findByPrefix(panel, panel.quickSearch, next, direction));
}

void searchByKey(Panel& panel, Key::Code key, int direction) {
  if (isSearchCharacter(key)) {
    extend(panel, key.character());
  } else {
    stepOn(panel, direction);
  }
}

void showCursorBehindText(const Panel& panel) {
  if (!isDrawable(panel)) return;
  const Win& window = *panel.window;
  const int column =
      std::min(panel.quickSearch.length() + SearchLabelWidth, window.innerWidth() - 1);
  setTextPos(window.originX() + column, window.originY() + panelPair().panelRows + 1);
  setCursorShape(SearchCursorShape);
}

// What the search looks at: a key, the mouse but for the end of a click, the end of the program.
bool concernsSearch(const Input& input) {
  if (input.kind != Input::Kind::Mouse) {
    return input.kind == Input::Kind::Key || input.kind == Input::Kind::End;
  }
  return input.mouse.kind != MouseKind::LeftRelease && input.mouse.kind != MouseKind::RightRelease;
}

Input readSearchInput(const Panel& panel) {
  TextStateGuard guard;
  showCursorBehindText(panel);
  Input input;
  do {
    input = nextInput();
    if (input.kind == Input::Kind::Shift && showShiftState) showShiftState(lastShiftState());
  } while (!concernsSearch(input));
  return input;
}

bool isShiftTab(Key::Code key) {
  return key == Key::ShiftTab || (key == Key::Tab && lastShiftState() & ShiftState::Shift);
}

// False when the key ends the search.
bool takeSearchKey(Panel& panel, Key::Code key) {
  const Key::Code character = hotKeyChar(key);
  if (key == Key::AltUp || key == Key::AltDown) {
    stepOn(panel, key == Key::AltUp ? -1 : 1);
  } else if (key == Key::Backspace || key == Key::AltBackspace) {
    dropLast(panel);
  } else if (isShiftTab(key)) {
    completeSearch(panel);
  } else if (isSearchCharacter(character)) {
    extend(panel, character.character());
  } else {
    return false;
  }
  return true;
}

// The search keeps the keyboard until a key ends it or its text is gone.
Key::Code holdKeyboard(Panel& panel, MouseMessage& mouse) {
  const int side = panelPair().sideOf(panel);
  Key::Code pending;
  while (pending == Key::NoKey && !panel.quickSearch.empty()) {
    drawCursor(side, CursorBar::On);
    const Input input = readSearchInput(panel);
    drawCursor(side, CursorBar::Off);
    if (input.kind == Input::Kind::End) break;
    mouse = input.mouse;
    if (!takeSearchKey(panel, input.key)) pending = input.key;
  }
  panel.quickSearch = Westring();
  drawStatusLine(panel);
  return pending == Key::Esc ? Key::NoKey : pending;
}

}  // namespace

int findByPrefix(const Panel& panel, const Westring& text, int from, int direction) {
  const int count = panel.count();
  const int length = text.length();
  if (count == 0) return -1;
  int index = from;
  for (int looked = 0; looked < count; ++looked, index += direction) {
    if (index >= count) index = 0;
    if (index < 0) index = count - 1;
    if (beginsWith(panel.entries[index]->name(), text.data(), length)) return index;
  }
  return -1;
}

void whenShiftChangesInSearch(void (*show)(int shiftState)) {
  showShiftState = show;
}

Key::Code quickSearchStep(Panel& panel, Key::Code key, int direction) {
  MouseMessage unused;
  return quickSearchStep(panel, key, direction, unused);
}

Key::Code quickSearchStep(Panel& panel, Key::Code key, int direction, MouseMessage& mouse) {
  if (panel.count() == 0 || !panel.showing || !panel.isFiles()) return Key::NoKey;
  searchByKey(panel, hotKeyChar(key), direction);
  if (GlobalOptions::StickyAlt && console) return holdKeyboard(panel, mouse);
  drawStatusLine(panel);
  return Key::NoKey;
}

void removeLastSearchCharacter(Panel& panel) {
  if (panel.quickSearch.empty()) return;
  dropLast(panel);
  drawStatusLine(panel);
}

void completeSearch(Panel& panel) {
  const int typed = panel.quickSearch.length();
  if (typed == 0 || !currentMatches(panel)) return;
  const wchar_t* candidate = panel.currentEntry()->name();
  int length = std::min(static_cast<int>(wcslen(candidate)), MaxSearchLength);
  for (const entry* item : panel.entries) {
    const wchar_t* name = item->name();
    if (!beginsWith(name, panel.quickSearch.data(), typed)) continue;
    int same = typed;
    while (same < length && name[same] != 0 && foldChar(name[same]) == foldChar(candidate[same])) {
      ++same;
    }
    length = same;
  }
  panel.quickSearch = left(Westring(candidate), length);
  drawStatusLine(panel);
}
