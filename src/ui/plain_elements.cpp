#include "ui/plain_elements.h"

#include "foundation/code_page.h"
#include "ui/dialog.h"

Westring dialogLabel(const char* bytes) {
  return bytes ? fromCodePage(bytes, console->codePage()) : Westring();
}

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

ExitKey::ExitKey(Dialog& dialog, Key::Code key) : DialogElement(dialog, 0, 0, Group::Same) {
  enabled = false;
  hotKey = key;
}

void ExitKey::activate() {
  dialog_.setExitCode(hotKey);
}
