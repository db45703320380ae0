#include "ui/win.h"

#include <algorithm>
#include <cwctype>
#include <string>
#include <string_view>

#include "console/text_state.h"
#include "foundation/code_page.h"
#include "foundation/fold.h"
#include "options/options.h"

namespace {

constexpr int ShadowColumns = 2;
constexpr unsigned char ForegroundMask = 0x0F;
constexpr unsigned char BrightBit = 8;
constexpr unsigned char BackgroundMask = 0xF0;
constexpr unsigned char WhiteBackground = 0x70;
constexpr unsigned char HotForeground = 14;
constexpr unsigned char HotOnHotForeground = 15;

constexpr wchar_t FrameTopLeft = 0x2554, FrameTopRight = 0x2557, FrameBottomLeft = 0x255A,
                  FrameBottomRight = 0x255D, FrameHorizontal = 0x2550, FrameVertical = 0x2551;

unsigned char hotAttr(unsigned char attr) {
  unsigned char foreground = attr & ForegroundMask;
  unsigned char background = attr & BackgroundMask;
  if (background == WhiteBackground) return attr ^ 1;
  return background | (foreground == HotForeground ? HotOnHotForeground : HotForeground);
}

Westring consoleText(const char* bytes) {
  return fromCodePage(bytes, console->codePage());
}

wchar_t consoleChar(unsigned char byte) {
  const char bytes[2] = {static_cast<char>(byte), 0};
  return consoleText(bytes)[0];
}

std::vector<Cell> cellsOf(const wchar_t* text, int length, unsigned char attr) {
  std::vector<Cell> cells(length + 1);
  for (int i = 0; i < length; ++i) cells[i] = {text[i], attr};
  cells[length].ch = 0;
  return cells;
}

int cellLength(const Cell* cells) {
  int length = 0;
  while (cells[length].ch != 0) ++length;
  return length;
}

int textLength(const wchar_t* text) {
  return static_cast<int>(wcslen(text));
}

// How much of a text a row takes: all of it, or what stands before the last space that fits.
size_t wrappedLength(const wchar_t* text, size_t width) {
  const size_t length = wcsnlen(text, width + 1);
  if (length <= width) return length;
  const size_t space = std::wstring_view(text, length).rfind(L' ');
  return space == std::wstring_view::npos ? width : space;
}

}  // namespace

unsigned char shadowAttr(unsigned char attr) {
  unsigned char foreground = attr & ForegroundMask;
  return foreground >= BrightBit ? foreground - BrightBit : BrightBit;
}

Win::Win(int left, int top, int right, int bottom, int attr, int frameAttr, Shadow shadow) {
  BatchScope batch;
  place(left, top, right, bottom);
  const GridSize screen = console->getSize();
  hasShadow_ = GlobalOptions::Shadows && frameAttr >= 0 && shadow == Shadow::Allowed &&
               bottom_ + 1 < screen.rows && right_ + ShadowColumns < screen.columns;
  originX_ = left_;
  originY_ = top_;
  saved_ = console->getCells(left_, top_, savedWidth(), savedHeight());
  if (attr < 0) {
    attr_ = textState.textAttr;
  } else {
    attr_ = static_cast<unsigned char>(attr);
    clear();
  }
  if (hasShadow_) drawShadow();
  hasFrame_ = frameAttr >= 0;
  if (hasFrame_) {
    drawFrame(static_cast<unsigned char>(frameAttr));
    ++originX_;
    ++originY_;
  }
}

Win::~Win() {
  if (!hidden_ && console) {
    console->putCells(left_, top_, savedWidth(), savedHeight(), saved_.data());
  }
}

void Win::place(int left, int top, int right, int bottom) {
  const GridSize screen = console->getSize();
  const int width = std::clamp(left < 0 ? right : right - left + 1, 1, screen.columns);
  const int height = std::clamp(top < 0 ? bottom : bottom - top + 1, 1, screen.rows);
  left_ = left < 0 ? (screen.columns - width) / 2 : std::min(left, screen.columns - width);
  top_ = top < 0 ? (height - screen.rows) / top : std::min(top, screen.rows - height);
  right_ = left_ + width - 1;
  bottom_ = top_ + height - 1;
}

void Win::drawShadow() {
  auto darken = [](int x, int y, int w, int h) {
    if (w < 1 || h < 1) return;
    std::vector<Cell> cells = console->getCells(x, y, w, h);
    for (Cell& cell : cells) cell.attr = shadowAttr(cell.attr);
    console->putCells(x, y, w, h, cells.data());
  };
  darken(left_ + ShadowColumns, bottom_ + 1, right_ - left_ + 1, 1);
  darken(right_ + 1, top_ + 1, ShadowColumns, bottom_ - top_);
}

void Win::drawFrame(unsigned char attr) {
  const int width = right_ - left_ + 1;
  std::vector<Cell> row(width, Cell{FrameHorizontal, attr});
  row.front().ch = FrameTopLeft;
  row.back().ch = FrameTopRight;
  console->putCells(left_, top_, width, 1, row.data());
  row.front().ch = FrameBottomLeft;
  row.back().ch = FrameBottomRight;
  console->putCells(left_, bottom_, width, 1, row.data());
  const int sideRows = bottom_ - top_ - 1;
  if (sideRows < 1) return;
  const std::vector<Cell> side(sideRows, Cell{FrameVertical, attr});
  console->putCells(left_, top_ + 1, 1, sideRows, side.data());
  console->putCells(right_, top_ + 1, 1, sideRows, side.data());
}

void Win::putCells(int x, int y, const Cell* cells) {
  const int length = cellLength(cells);
  const int from = std::clamp(-x, 0, length);
  const int to = std::clamp(innerWidth() - x, from, length);
  const int row = originY_ + y;
  if (from < to && row >= top_ && row <= bottom_) {
    if (to == length) {
      console->writeCellString(originX_ + x + from, row, cells + from);
    } else {
      std::vector<Cell> visible(cells + from, cells + to);
      visible.push_back(Cell{0, 0});
      console->writeCellString(originX_ + x + from, row, visible.data());
    }
  }
  curX_ = x + length;
  curY_ = y;
}

void Win::putCells(const Cell* cells) {
  putCells(curX_, curY_, cells);
}

void Win::put(int x, int y, const wchar_t* text, int attr) {
  const unsigned char used = attr < 0 ? attr_ : static_cast<unsigned char>(attr);
  putCells(x, y, cellsOf(text, textLength(text), used).data());
}

void Win::put(int x, int y, const Westring& text, int attr) {
  put(x, y, text.data(), attr);
}

void Win::put(int x, int y, const char* text, int attr) {
  put(x, y, consoleText(text), attr);
  setTextPos(originX_ + curX_, originY_ + curY_);
}

void Win::put(const wchar_t* text, int attr) {
  put(curX_, curY_, text, attr);
}

void Win::put(const char* text, int attr) {
  put(curX_, curY_, text, attr);
}

void Win::put(int x, int y, const CellString& text) {
  std::vector<Cell> cells(text.data(), text.data() + text.length());
  cells.push_back(Cell{0, 0});
  putCells(x, y, cells.data());
}

int Win::centredColumn(int length) const {
  return (right_ + 1 - left_ - length + (left_ - originX_) * 2) / 2;
}

void Win::putCentred(int y, const wchar_t* text, int attr) {
  put(centredColumn(textLength(text)), y, text, attr);
}

void Win::putCentred(int y, const char* text, int attr) {
  put(centredColumn(consoleText(text).length()), y, text, attr);
}

void Win::putWrapped(int x, int y, const wchar_t* text) {
  for (int row = y; *text != 0; ++row, x = 0) {
    const size_t length = wrappedLength(text, static_cast<size_t>(std::max(innerWidth() - x, 1)));
    put(x, row, std::wstring(text, length).c_str());
    text += length;
    while (*text != 0 && std::iswspace(static_cast<wint_t>(*text))) ++text;
  }
}

void Win::putWrapped(int x, int y, const char* utf8Text) {
  putWrapped(x, y, Westring(utf8Text).data());
}

void Win::putHotKeys(int x, int y, const char* text, const char* hotKeys, int attr) {
  put(x, y, text, attr);
  highlight(x, y, consoleText(text), hotKeys, attr);
}

void Win::putHotKeys(int x, int y, const wchar_t* text, const char* hotKeys, int attr) {
  put(x, y, text, attr);
  highlight(x, y, Westring(text), hotKeys, attr);
}

void Win::highlight(int x, int y, const Westring& text, const char* hotKeys, int attr) {
  const unsigned char used = attr < 0 ? attr_ : static_cast<unsigned char>(attr);
  const int row = originY_ + y;
  if (row < top_ || row > bottom_) return;
  for (const char* p = hotKeys; *p != 0; ++p) {
    const unsigned char key = static_cast<unsigned char>(*p);
    int at = text.find(consoleChar(upperAscii(key)));
    if (at < 0) at = text.find(consoleChar(lowerAscii(key)));
    if (at < 0 || x + at < 0 || x + at >= innerWidth()) continue;
    console->fillAttr(originX_ + x + at, row, 1, hotAttr(used));
  }
}

void Win::clear() {
  clear(0, 0);
}

void Win::clear(int topRows, int bottomRows) {
  const int rows = innerHeight() - topRows - bottomRows;
  if (rows < 1 || innerWidth() < 1) return;
  console->fillBlank(originX_, originY_ + topRows, innerWidth(), rows, attr_);
}

void Win::clearToEndOfLine(int attr) {
  const int from = std::max(curX_, 0);
  const unsigned char used = attr < 0 ? attr_ : static_cast<unsigned char>(attr);
  console->fillCell(originX_ + from, originY_ + curY_, innerWidth() - from, Cell{L' ', used});
}

void Win::scroll(int x, int y, int w, int h, int n) {
  if (n > 0) {
    console->scrollUp(originX_ + x, originY_ + y, w, h, n, attr_);
  } else if (n < 0) {
    console->scrollDown(originX_ + x, originY_ + y, w, h, -n, attr_);
  }
}

void Win::setPos(int x, int y) {
  curX_ = x;
  curY_ = y;
  setTextPos(originX_ + x, originY_ + y);
}

void Win::hide() {
  if (!hidden_) exchangeWithScreen();
}

void Win::unhide() {
  if (hidden_) exchangeWithScreen();
}

void Win::exchangeWithScreen() {
  std::vector<Cell> shown = console->getCells(left_, top_, savedWidth(), savedHeight());
  console->putCells(left_, top_, savedWidth(), savedHeight(), saved_.data());
  saved_ = std::move(shown);
  hidden_ = !hidden_;
}

bool Win::contains(int screenX, int screenY) const {
  return screenX >= left_ && screenX <= right_ && screenY >= top_ && screenY <= bottom_;
}

void Win::putFrameTitle(const char* text) {
  putCentred(top_ - originY_, text);
}
