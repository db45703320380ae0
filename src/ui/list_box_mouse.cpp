#include <algorithm>

#include "options/options.h"
#include "ui/dialog.h"
#include "ui/input_loop.h"
#include "ui/list_box.h"

namespace {

constexpr int WheelRows = 3;
constexpr int ShortestPassMs = 16;  // no use in scrolling faster than the screen is painted

}  // namespace

bool ListBoxBase::wheel(int direction) {
  moveTo(selectedItem() + (direction < 0 ? WheelRows : -WheelRows));
  storeAndDraw();
  return true;
}

bool ListBoxBase::handleMouse(const Message& message) {
  if (message.kind < MessageKind::LeftPress || message.kind > MessageKind::LeftDrag) return false;
  if (message.x < x() || message.x >= x() + width_) return false;
  if (message.y >= y() && message.y < y() + rows_) {
    clicked(message);
    return true;
  }
  const bool above = message.y == y() - 1;
  const bool below = message.y == y() + rows_;
  const bool holdsButton =
      message.kind == MessageKind::LeftPress || message.kind == MessageKind::LeftDrag;
  if (!holdsButton || (!above && !below)) return false;
  dialog_.setFocus(index());
  autoScroll(below ? 1 : -1);
  return true;
}

void ListBoxBase::clicked(const Message& message) {
  dialog_.setFocus(index());
  const int item = topItem_ + message.y - y();
  moveTo(item);
  storeAndDraw();
  if (item >= itemCount_) return;
  const bool ends = message.kind == MessageKind::LeftDoubleClick ||
                    (message.kind == MessageKind::LeftRelease && exitOnEnter_ == ListExit::AnyKey);
  if (ends) enter();
}

// Runs while the button is held beyond the first or last row: whatever the user does next ends it.
void ListBoxBase::autoScroll(int step) {
  const int visible = std::min(rows_, itemCount_ - topItem_);
  const int delay = GlobalOptions::ScrollDelay > 0 ? GlobalOptions::ScrollDelay : ShortestPassMs;
  cursorRow_ = step > 0 ? std::max(visible - 1, 0) : 0;
  storeAndDraw();
  for (int waitMs = 0;; waitMs = delay) {
    const Input input = nextInput(waitMs);
    if (input.kind != Input::Kind::TimeOut) return dialog_.giveBack(input);
    const bool atEnd = step > 0 ? topItem_ + rows_ >= itemCount_ : topItem_ == 0;
    if (atEnd) return;
    topItem_ += step;
    storeAndDraw();
  }
}
