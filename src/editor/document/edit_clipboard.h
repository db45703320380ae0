#pragma once

#include <functional>
#include <string>

#include "editor/document/text_span.h"

// What the desktop's clipboard does for the editor's. Given by the layer that knows the console.
class DesktopClipboard {
 public:
  virtual ~DesktopClipboard() = default;
  // Takes the clipboard over. `text` is called when somebody wants it, on any thread and as long
  // as the clipboard is ours.
  virtual void take(std::function<std::wstring()> text) = 0;
  virtual bool isOurs() = 0;        // what was taken last hasn't been replaced by another program
  virtual std::wstring text() = 0;  // what another program put there; "" when there is none
};

// What was cut or copied last, for the whole run. Our own text is pasted as it was cut, with its
// bytes and line ends, and goes to the desktop as text only when it is asked for there.
class EditClipboard {
 public:
  // Replaces what is held. An empty span is held as no text.
  void set(const TextSpan& text);
  // Puts `text` behind what a paste would put in, which gets line ends of `style` as for get.
  void append(const TextSpan& text, LineEndStyle style);
  // What a paste puts in: ours, or what another program copied since, with line ends of `style`.
  TextSpan get(LineEndStyle style);

  void setDesktop(DesktopClipboard* desktop) { desktop_ = desktop; }  // null: there is none

 private:
  TextSpan held_;
  DesktopClipboard* desktop_ = nullptr;
};

EditClipboard& editClipboard();

// As another program sees it: LF between the lines, NULs and bytes that are no character as U+2302.
std::wstring clipboardText(const TextSpan& text);
