#include "tools/history_dialog.h"

#include <algorithm>

#include "console/key_codes.h"
#include "options/colours.h"

namespace {

constexpr int Centred = -1;
constexpr int InTheMiddle = -2;
constexpr int FrameCells = 2;
constexpr int ScreenMargin = 6;  // what the list stays narrower and lower than the screen
constexpr int CellsMore = 2;     // than the longest text has

GridSize listSize(const FnStringStore& texts, int leastWidth) {
  int longest = 0;
  for (int i = 0; i < texts.count(); ++i) longest = std::max(longest, texts.peek(i)->length());
  const int even = longest + longest % 2;
  GridSize size;
  size.columns =
      std::min(std::max(even + CellsMore, leastWidth), console->columns() - ScreenMargin);
  size.rows = std::min(texts.count(), console->rows() - ScreenMargin);
  return size;
}

}  // namespace

HistoryDialog::HistoryDialog(const char* title, FnStringStore& texts, int leastWidth)
    : HistoryDialog(title, texts, listSize(texts, leastWidth)) {}

HistoryDialog::HistoryDialog(const char* title, FnStringStore& texts, GridSize list)
    : Dialog(Centred, InTheMiddle, list.columns + FrameCells, list.rows + FrameCells,
             colourOf(Colour::Messages)),
      selected_(texts.count() - 1) {
  list_ = addList(0, 0, Group::New, list.columns, list.rows, &texts, &selected_, Key::Enter);
  putFrameTitle(title);
}

void HistoryDialog::select(int index) {
  selected_ = index;
  redraw(list_);
}
