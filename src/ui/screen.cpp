#include "ui/screen.h"

#include "console/console.h"
#include "console/input.h"

int Screen::run() {
  running_ = true;
  while (running_) {
    {
      BatchScope batch;
      draw();
    }
    take(nextInput(waitMs()));
  }
  return result_;
}

void Screen::take(const Input& input) {
  switch (input.kind) {
    case Input::Kind::Key:
      return onKey(input.key, input.mouse.state);
    case Input::Kind::Mouse:
      return onMouse(input.mouse);
    case Input::Kind::Shift:
      return onShift(lastShiftState());
    case Input::Kind::TimeOut:
      return onTimeOut();
    case Input::Kind::End:
      onEnd();
      return leave(ProgramEnds);
  }
}

void Screen::leave(int result) {
  result_ = result;
  running_ = false;
}
