#pragma once

#include "foundation/westring.h"

// The process-wide text state: where and how plain writes go. Application thread.
struct TextState {
  unsigned char textAttr = 7;
  int textX = 0;
  int textY = 0;
  int cursorShape = 0;  // percentage last given to the cursor
};

extern TextState textState;

void writeBytesAt(int x, int y, const char* text);  // in textAttr; the position follows the text
void writeWideAt(int x, int y, const wchar_t* text);
void clearToEndOfLine();
void setTextPos(int x, int y);
void setTextAttr(unsigned char attr);
void syncCursor();  // before each wait for a key
void printLine(const char* utf8Text);
void setCursorShape(int percent);
void restoreTextState(const TextState& saved);

// Restores attribute, position and cursor shape at the end of the scope.
class TextStateGuard {
 public:
  TextStateGuard() : saved_(textState) {}
  ~TextStateGuard() { restoreTextState(saved_); }
  TextStateGuard(const TextStateGuard&) = delete;
  TextStateGuard& operator=(const TextStateGuard&) = delete;

 private:
  TextState saved_;
};

inline constexpr int KeyBarFields = 10;
// Ten labels, each beginning with its key number, on the last screen row.
void drawKeyBarLine(const char* const labels[KeyBarFields]);
