#include "ui/dialog_element.h"

#include "console/text_state.h"
#include "ui/dialog.h"

DialogElement::DialogElement(Dialog& dialog, int x, int y, Group newGroup)
    : dialog_(dialog), index_(dialog.elementCount()), x_(x), y_(y) {
  if (newGroup == Group::New || index_ == 0) {
    dialog.setCurrentGroup(index_);
    groupFocus = index_;
  }
  group = dialog.currentGroup();
}

DialogElement::~DialogElement() = default;

bool DialogElement::handleMessage(const Message&) {
  return false;
}

void DialogElement::activate() {
  dialog_.setFocus(index_);
}

void DialogElement::focusNotify(Focus) {
  draw();
}

bool DialogElement::focused() const {
  return dialog_.focus() == index_;
}

char DialogElement::hotChar() const {
  return dialog_.hotCharOf(index_);
}

bool DialogElement::isWithin(const Message& message, int width) const {
  return message.y == y_ && message.x >= x_ && message.x < x_ + width;
}

void DialogElement::putLabel(int x, int y, const Westring& label) {
  const char hotKeys[] = {hotChar(), 0};
  dialog_.putHotKeys(x, y, label.data(), hotKeys, dialog_.textAttr());
}

void DialogElement::showCursor(int x) {
  if (focused()) dialog_.setPos(x, y_);
  setCursorShape(focused() ? DialogCursorSize : 0);
}
