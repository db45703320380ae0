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
  Westring text;
  for (int i = 0; i < lines.count(); ++i) {
    if (i > 0) text += L'\n';
    text += *lines.peek(i);
  }
  clipboardSetText(text);
}

void clipboardGetLines(FnStringStore& lines) {
  lines.clear();
  const Westring text = clipboardGetText();
  if (text.empty()) return;
  const wchar_t* start = text.data();
  for (;;) {
    const wchar_t* end = start;
    while (*end != 0 && *end != L'\n') ++end;
    auto line = std::make_unique<Westring>();
    for (const wchar_t* p = start; p < end; ++p) *line += *p;
    lines.add(line.release());
    if (*end == 0) return;
    start = end + 1;
  }
}
