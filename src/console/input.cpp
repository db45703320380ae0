#include "console/input.h"

#include "console/console.h"
#include "console/text_state.h"
#include "foundation/signals.h"

namespace {
int shiftState = 0;

constexpr int LeftButton = 1;
constexpr int RightButton = 2;

Key::Code keyCodeOf(const TEvent& event) {
  const bool ctrl = (event.state & ShiftState::Ctrl) != 0;
  if (!ctrl || !HardwareKey::isDigit(event.hwCode)) return event.key;
  const bool zero = event.hwCode == HardwareKey::LastDigit;
  const int digit = zero ? 0 : event.hwCode - HardwareKey::FirstDigit + 1;
  const bool shifted = (event.state & ShiftState::Shift) != 0;
  return Key::ctrlDigit(digit) | (shifted ? Key::ShiftedKey : Key::NoMark);
}

Key::Code takeKey(const TEvent& event, MouseMessage* mouse) {
  if (mouse) mouse->state = static_cast<int16_t>(event.state);
  // Committed text and the close button come from no key: they say nothing about the modifiers.
  if (event.hwCode != 0 || event.key == Key::ShiftChanged) shiftState = event.state;
  return keyCodeOf(event);
}

// False when the event means nothing to anybody: a third button, a drag without a known button.
bool mouseKindOf(const TEvent& event, MouseKind& kind) {
  if (event.kind == EventKind::Wheel) {
    kind = MouseKind::Wheel;
    return true;
  }
  if (event.button != LeftButton && event.button != RightButton) return false;
  const bool left = event.button == LeftButton;
  switch (event.kind) {
    case EventKind::Press:
      kind = left ? MouseKind::LeftPress : MouseKind::RightPress;
      return true;
    case EventKind::Drag:
      kind = left ? MouseKind::LeftDrag : MouseKind::RightDrag;
      return true;
    case EventKind::Release:
      kind = left ? MouseKind::LeftRelease : MouseKind::RightRelease;
      return true;
    case EventKind::DoubleClick:
      kind = left ? MouseKind::LeftDoubleClick : MouseKind::RightPress;
      return true;
    default:
      return false;
  }
}

Key::Code takeMouse(const TEvent& event, MouseMessage* mouse) {
  if (!mouse) return Key::MouseEvent;
  if (!mouseKindOf(event, mouse->kind)) return Key::NoKey;
  mouse->x = event.x;
  mouse->y = event.y;
  mouse->state = static_cast<int16_t>(event.state);
  mouse->wheel = static_cast<int16_t>(event.wheel);
  return Key::MouseEvent;
}
}  // namespace

Key::Code getKey(MouseMessage* mouse, int timeoutMs) {
  if (!console || programEnds()) return Key::NoKey;
  syncCursor();
  TEvent event;
  const uint32_t timeout = timeoutMs < 0 ? WaitForever : static_cast<uint32_t>(timeoutMs);
  if (!console->readEvent(event, timeout)) return Key::NoKey;
  switch (event.kind) {
    case EventKind::Wake:
      return Key::NoKey;
    case EventKind::Key:
      return takeKey(event, mouse);
    default:
      return takeMouse(event, mouse);
  }
}

bool programEnds() {
  return endRequested() || displayLost();
}

bool keyPending() {
  return console && console->eventCount() > 0;
}

bool escapePressed() {
  if (programEnds()) return true;
  if (!console) return false;
  const auto event = console->events().getKeyOnly();
  return event && event->key == Key::Esc;
}

int lastShiftState() {
  return shiftState;
}
