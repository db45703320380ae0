#include "console/text_state.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "console/console.h"
#include "options/colours.h"

TextState textState;

namespace {
int lengthAfter(int x, size_t length) {
  constexpr size_t Far = 1 << 20;  // beyond any screen; keeps the sum inside an int
  return x + static_cast<int>(std::min(length, Far));
}
}  // namespace

void writeBytesAt(int x, int y, const char* text) {
  if (console) console->writeBytes(x, y, text, textState.textAttr);
  textState.textY = y;
  textState.textX = lengthAfter(x, strlen(text));
}

void writeWideAt(int x, int y, const wchar_t* text) {
  if (console) console->writeWide(x, y, text, textState.textAttr);
  textState.textY = y;
  textState.textX = lengthAfter(x, wcslen(text));
}

void clearToEndOfLine() {
  if (!console) return;
  const int x = textState.textX;
  console->fillCell(x, textState.textY, console->columns() - x, Cell{L' ', textState.textAttr});
}

void setTextPos(int x, int y) {
  textState.textX = x;
  textState.textY = y;
}

void setTextAttr(unsigned char attr) {
  textState.textAttr = attr;
}

void syncCursor() {
  if (console) console->setCursorPos(textState.textX, textState.textY);
}

void printLine(const char* utf8Text) {
  if (!console) return;
  BatchScope batch;
  console->writeTty(utf8Text);
  console->writeTty("\r\n");
}

void setCursorShape(int percent) {
  textState.cursorShape = percent;
  if (console) console->setCursorSize(percent);
}

void restoreTextState(const TextState& saved) {
  textState = saved;
  if (console) console->setCursorSize(saved.cursorShape);
}

namespace {
void colourNumbers(std::vector<Cell>& line, int field, int width) {
  const int start = field * width;
  const int from = field == 0 ? start : start - 1;
  const int to = field == KeyBarFields - 1 ? start + 2 : start + 1;
  for (int x = std::max(from, 0); x < to && x < static_cast<int>(line.size()); ++x) {
    line[static_cast<size_t>(x)].attr = colourOf(Colour::CommandLine);
  }
}
}  // namespace

void drawKeyBarLine(const char* const labels[KeyBarFields]) {
  if (!console) return;
  const GridSize size = console->getSize();
  const int width = size.columns / KeyBarFields;
  const int end = width * KeyBarFields;
  std::vector<Cell> line(static_cast<size_t>(size.columns), Cell{L' ', colourOf(Colour::MenuBar)});
  for (int field = 0; field < KeyBarFields; ++field) {
    colourNumbers(line, field, width);
    int x = field * width;
    for (const char* p = labels[field]; *p != 0 && x < end; ++p, ++x) {
      line[static_cast<size_t>(x)].ch = static_cast<signed char>(*p);
    }
  }
  line.push_back(Cell{0, 0});
  console->writeCellString(0, size.rows - 1, line.data());
}
