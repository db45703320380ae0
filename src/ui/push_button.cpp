#include "ui/push_button.h"

#include <string>

#include "ui/dialog.h"
#include "ui/plain_elements.h"

namespace {

Westring buttonLabel(const char* label) {
  return dialogLabel(left(Estring(label), PushButton::MaxLabelBytes).data());
}

}  // namespace

PushButton::PushButton(Dialog& dialog, int x, int y, Group newGroup, Key::Code exitCode,
                       const char* label)
    : DialogElement(dialog, x, y, newGroup), label_(buttonLabel(label)), exitCode_(exitCode) {
  hotKey = exitCode;
  if (dialog.defaultExit() == Key::NoKey) dialog.setDefaultExit(exitCode);
}

int PushButton::widthOf(const char* label) {
  return buttonLabel(label).length() + BracketCells;
}

bool PushButton::handleMessage(const Message& message) {
  if (message.kind == MessageKind::Key) {
    if (message.key != Key::Space && message.key != Key::Enter) return false;
    activate();
    return true;
  }
  if (message.kind == MessageKind::Wheel) return false;
  if (!isWithin(message, label_.length() + BracketCells)) return false;
  if (message.kind == MessageKind::LeftPress) dialog_.setFocus(index());
  if (message.kind == MessageKind::LeftRelease) activate();
  return true;
}

void PushButton::activate() {
  dialog_.setExitCode(exitCode_);
}

void PushButton::draw() {
  std::string hotKeys;
  if (hotChar() != 0) hotKeys += hotChar();
  if (dialog_.defaultExit() == exitCode_ && !focused()) hotKeys += "[]";
  const Westring text = L"[ " + label_ + L" ]";
  dialog_.putHotKeys(x(), y(), text.data(), hotKeys.c_str(),
                     focused() ? dialog_.focusAttr() : dialog_.textAttr());
}
