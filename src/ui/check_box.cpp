#include "ui/check_box.h"

#include "ui/dialog.h"
#include "ui/plain_elements.h"

namespace {

constexpr int BoxCells = 3;
constexpr int LabelRightGap = 5;  // from the box's column to a label on its right
constexpr int LabelLeftGap = 2;   // from the end of a label on the left to the box
constexpr wchar_t HalfMark = 0x00B7;
constexpr unsigned char StateCount = 3;

}  // namespace

CheckBox::CheckBox(Dialog& dialog, int x, int y, Group newGroup, bool* value, const char* label,
                   Label side)
    : DialogElement(dialog, x, y, newGroup),
      value_(value),
      label_(dialogLabel(label)),
      side_(side) {}

int CheckBox::labelX() const {
  return side_ == Label::Right ? x() + LabelRightGap : x() - LabelLeftGap - label_.length();
}

bool CheckBox::hits(const Message& message) const {
  if (isWithin(message, BoxCells)) return true;
  return message.y == y() && message.x >= labelX() && message.x < labelX() + label_.length();
}

bool CheckBox::handleMessage(const Message& message) {
  if (message.kind == MessageKind::Key) return handleKey(message.key);
  if (!hits(message)) return false;
  if (message.kind == MessageKind::LeftPress) {
    dialog_.setFocus(index());
    return true;
  }
  if (message.kind == MessageKind::LeftRelease) {
    *value_ = !*value_;
    draw();
    return true;
  }
  return false;
}

// Never handled: the run loop carries on with the key, so that a dialog can give it a meaning
// besides.
bool CheckBox::handleKey(Key::Code key) {
  if (key == Key::Space) {
    *value_ = !*value_;
  } else if (key == Key::Insert) {
    *value_ = true;
  } else if (key == Key::Delete) {
    *value_ = false;
  } else {
    return false;
  }
  draw();
  return false;
}

void CheckBox::activate() {
  dialog_.setFocus(index());
  handleMessage({.kind = MessageKind::Key, .key = Key::Space});
}

void CheckBox::draw() {
  drawBox(*value_ ? L'X' : L' ');
}

void CheckBox::drawBox(wchar_t mark) {
  const wchar_t box[BoxCells + 1] = {L'[', mark, L']', 0};
  dialog_.put(x(), y(), box);
  if (!label_.empty()) putLabel(labelX(), y(), label_);
  showCursor(x() + 1);
}

CheckBox3S::CheckBox3S(Dialog& dialog, int x, int y, Group newGroup, unsigned char* value,
                       const char* label, Label side)
    : CheckBox(dialog, x, y, newGroup, &scratch, label, side), state_(value) {}

bool CheckBox3S::handleMessage(const Message& message) {
  scratch = false;
  const bool handled = CheckBox::handleMessage(message);
  if (scratch) {
    *state_ = static_cast<unsigned char>((*state_ + 1) % StateCount);
    draw();
  }
  return handled;
}

void CheckBox3S::draw() {
  constexpr wchar_t Marks[StateCount] = {L' ', HalfMark, L'X'};
  drawBox(Marks[*state_ % StateCount]);
}
