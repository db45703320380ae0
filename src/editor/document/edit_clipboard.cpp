#include "editor/document/edit_clipboard.h"

#include <algorithm>

namespace {
constexpr wchar_t NoCharacter = 0x2302;
}

std::wstring clipboardText(const TextSpan& text) {
  std::wstring wide = text.text();
  std::replace_if(
      wide.begin(), wide.end(), [](wchar_t c) { return c <= 0; }, NoCharacter);
  return wide;
}

void EditClipboard::set(const TextSpan& text) {
  held_ = text;
  if (!desktop_) return;
  if (text.needsCodePage()) {
    desktop_->take([wide = clipboardText(text)] { return wide; });
  } else {
    desktop_->take([text] { return clipboardText(text); });
  }
}

void EditClipboard::append(const TextSpan& text, LineEndStyle style) {
  set(get(style).joined(text));
}

TextSpan EditClipboard::get(LineEndStyle style) {
  if (!desktop_ || desktop_->isOurs()) return held_;
  const std::wstring foreign = desktop_->text();
  if (!foreign.empty()) held_ = TextSpan::fromText(foreign, style);
  return held_;
}

EditClipboard& editClipboard() {
  static EditClipboard clipboard;
  return clipboard;
}
