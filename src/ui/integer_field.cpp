#include "ui/integer_field.h"

#include <algorithm>
#include <climits>
#include <cwchar>
#include <string>

namespace {

Westring decimal(int value) {
  return Westring(std::to_wstring(value).c_str());
}

bool isRefused(Key::Code key) {
  const bool printable = key.isText() && key != Key::CtrlBackspace;
  return printable && (key.character() < L'0' || key.character() > L'9');
}

}  // namespace

int parseInteger(const Westring& text) {
  const long value = std::wcstol(text.data(), nullptr, 10);
  return static_cast<int>(std::clamp(value, long{INT_MIN}, long{INT_MAX}));
}

IntegerField::IntegerField(Dialog& dialog, int x, int y, Group newGroup, int* value, int width,
                           KeepFormat keepFormat, FieldHistory history)
    : IntegerText{decimal(*value)},
      StringField(dialog, x, y, newGroup, &digits, width, std::min(width, MostDigits), history),
      value_(value),
      keepFormat_(keepFormat) {}

bool IntegerField::handleMessage(const Message& message) {
  if (message.kind == MessageKind::Key && isRefused(message.key)) return false;
  const bool handled = StringField::handleMessage(message);
  if (handled) *value_ = parseInteger(*text_);
  return handled;
}

void IntegerField::draw() {
  const bool outdated = *value_ != parseInteger(*text_);
  if (keepFormat_ == KeepFormat::No || outdated) {
    const Westring fromValue = decimal(*value_);
    if (*text_ != fromValue) setText(fromValue);
  }
  StringField::draw();
}
