#include "ui/input_loop.h"

#include "console/input.h"

namespace {

Input::Kind kindOf(Key::Code key) {
  switch (key) {
    case Key::NoKey:
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
  input.key = programEnds() ? Key::NoKey : getKey(&input.mouse, waitMs);
  input.kind = programEnds() ? Input::Kind::End : kindOf(input.key);
  return input;
}
