#include "console/clipboard.h"

#include "console/console.h"
#include "foundation/code_page.h"

void clipboardSetText(const Westring& text) {
  if (console) console->setClipboardText(text);
}

void clipboardSetText(const char* text) {
  if (console) console->setClipboardText(fromCodePage(text, console->codePage()));
}

Westring clipboardGetText() {
  return console ? console->getClipboardText() : Westring();
}

void clipboardSetLines(const FnStringStore& lines) {
  clipboardSetText(joinLines(lines));
}

void clipboardGetLines(FnStringStore& lines) {
  lines.clear();
  const Westring text = clipboardGetText();
  if (!text.empty()) splitLines(text, lines);
}
