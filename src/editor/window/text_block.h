#pragma once

#include "editor/text/text_place.h"

// What is marked. Without `active` nothing is, and both ends are the anchor of the next block.
struct TextBlock {
  enum class CursorAt { Start, End };

  TextPlace start;  // never behind `end`
  TextPlace end;
  CursorAt cursorAt = CursorAt::End;
  bool active = false;

  bool empty() const { return start == end; }
  TextPlace cursorEnd() const { return cursorAt == CursorAt::End ? end : start; }
  TextPlace fixedEnd() const { return cursorAt == CursorAt::End ? start : end; }
};

// The block between a fixed end and the cursor, whichever comes first.
TextBlock blockBetween(TextPlace fixed, TextPlace cursor);
