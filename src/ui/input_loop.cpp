#include "ui/input_loop.h"

#include "console/input.h"

namespace {

Input::Kind kindOf(int key) {
  switch (key) {
    case 0:
      return Input::Kind::TimeOut;
    case Key::MouseEvent:
      return Input::Kind::Mouse;
    case Key::ShiftChanged:
      return Input::Kind::Shift;
    default:
      return Input::Kind::Key;
  }
}

}  // namespace

Input nextInput(int waitMs) {
  Input input;
  input.key = programEnds() ? 0 : getKey(&input.mouse, waitMs);
  input.kind = programEnds() ? Input::Kind::End : kindOf(input.key);
  return input;
}
