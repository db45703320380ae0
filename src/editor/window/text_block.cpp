#include "editor/window/text_block.h"

TextBlock blockBetween(TextPlace fixed, TextPlace cursor) {
  TextBlock block;
  block.active = true;
  if (cursor < fixed) {
    block.start = cursor;
    block.end = fixed;
    block.cursorAt = TextBlock::CursorAt::Start;
  } else {
    block.start = fixed;
    block.end = cursor;
  }
  return block;
}
