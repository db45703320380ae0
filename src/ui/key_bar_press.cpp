#include "ui/key_bar_press.h"

#include <algorithm>

#include "console/console.h"
#include "console/text_state.h"

namespace {

bool isPress(MouseKind kind) {
  return kind == MouseKind::LeftPress || kind == MouseKind::RightPress ||
         kind == MouseKind::LeftDoubleClick;
}

bool isRelease(MouseKind kind) {
  return kind == MouseKind::LeftRelease || kind == MouseKind::RightRelease;
}

bool isRight(MouseKind kind) {
  return kind == MouseKind::RightPress || kind == MouseKind::RightRelease;
}

Key::Code keyUnder(const MouseMessage& event) {
  const bool alt = (event.state & ShiftState::Alt) != 0;
  const int others = event.state & (ShiftState::Mask & ~ShiftState::Alt);
  return keyBarKeyOf(event.x, others | (alt || isRight(event.kind) ? ShiftState::Shift : 0));
}

}  // namespace

bool KeyBarPress::take(const MouseMessage& event, Key::Code& key) {
  key = Key::NoKey;
  const bool onBar = event.kind != MouseKind::Wheel && event.y == console->rows() - 1;
  if (isPress(event.kind)) pressed_ = onBar ? keyUnder(event) : Key::NoKey;
  if (!isRelease(event.kind)) return onBar;
  if (onBar && keyUnder(event) == pressed_) key = pressed_;
  pressed_ = Key::NoKey;
  return onBar;
}

Key::Code keyBarKeyOf(int x, int shiftState) {
  const int field = std::max(console->columns() / KeyBarFields, 1);
  return functionKey(std::clamp((x + 1) / field, 0, KeyBarFields - 1) + 1, shiftState);
}
