#include "ui/radio_button.h"

#include "ui/dialog.h"
#include "ui/plain_elements.h"

namespace {
constexpr int ButtonCells = 3;
constexpr int LabelGap = 4;
constexpr wchar_t Bullet = 0x2022;
}  // namespace

RadioButton::RadioButton(Dialog& dialog, int x, int y, Group newGroup, int* value, int myValue,
                         const char* label)
    : DialogElement(dialog, x, y, newGroup),
      value_(value),
      myValue_(myValue),
      label_(dialogLabel(label)) {
  if (*value == myValue && group != index()) dialog.element(group)->groupFocus = index();
}

bool RadioButton::handleMessage(const Message& message) {
  if (message.kind != MessageKind::LeftPress || !isWithin(message, ButtonCells)) return false;
  dialog_.setFocus(index());
  return true;
}

void RadioButton::focusNotify(Focus focus) {
  if (focus == Focus::Gained) *value_ = myValue_;
  draw();
}

void RadioButton::draw() {
  const wchar_t button[ButtonCells + 1] = {L'(', *value_ == myValue_ ? Bullet : L' ', L')', 0};
  dialog_.put(x(), y(), button);
  putLabel(x() + LabelGap, y(), label_);
  showCursor(x() + 1);
}
