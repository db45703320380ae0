#include "ui/static_text.h"

StaticText::StaticText(Dialog& dialog, int x, int y, const Westring& text, unsigned char attr)
    : DialogElement(dialog, x, y, Group::Same), text_(text), attr_(attr) {
  enabled = false;
}

void StaticText::draw() {
  if (x() < 0) {
    dialog_.putCentred(y(), text_.data(), attr_);
  } else {
    dialog_.put(x(), y(), text_, attr_);
  }
}
