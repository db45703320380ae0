#include "panels/picture/panel_frame.h"

#include <algorithm>

#include "options/colours.h"

namespace {

constexpr wchar_t DoubleLine = 0x2550, DoubleSide = 0x2551;
constexpr wchar_t TopLeft = 0x2554, TopRight = 0x2557, BottomLeft = 0x255A, BottomRight = 0x255D;
constexpr wchar_t TopBoundary = 0x2564, BottomBoundary = 0x2567;
constexpr wchar_t SingleLine = 0x2500, SeparatorLeft = 0x255F, SeparatorRight = 0x2562;
constexpr wchar_t BoundaryAbove = 0x2534, BoundaryBelow = 0x252C, BoundaryBoth = 0x253C;

// One line across a panel window, frame included.
class FrameLine {
 public:
  FrameLine(int width, wchar_t leftEnd, wchar_t line, wchar_t rightEnd)
      : cells_(width + 1, Cell{line, colourOf(Colour::Panel)}) {
    cells_.front().ch = leftEnd;
    cells_[width - 1].ch = rightEnd;
    cells_[width].ch = 0;
  }

  // `x` is relative to the interior.
  wchar_t& at(int x) { return cells_[x + 1].ch; }
  void mark(const std::vector<int>& positions, wchar_t boundary) {
    for (int x : positions) {
      if (x + 2 < static_cast<int>(cells_.size()) - 1) at(x) = boundary;
    }
  }
  void overlay(const FrameTitle& title) {
    const int end = std::min(title.lineEnd, static_cast<int>(cells_.size()) - 1);
    cells_[end].ch = 0;
    for (int i = 0; i < title.text.length() && title.x + i < end; ++i) {
      cells_[title.x + i] = Cell{title.text[i], title.attr};
    }
  }
  void write(const Win& window, int screenRow) {
    console->writeCellString(window.left(), screenRow, cells_.data());
  }

 private:
  std::vector<Cell> cells_;
};

int outerWidth(const Win& window) {
  return window.right() - window.left() + 1;
}

bool hasFullStatusRow(const Panel& panel) {
  return panel.style != PanelStyle::Full && !panel.isTreeStyle();
}

std::vector<int> statusBoundaries(const Panel& panel) {
  if (!hasFullStatusRow(panel)) return {};
  return separatorPositions(layoutColumns(PanelStyle::Full, panel.window->innerWidth()));
}

void drawSeparator(Panel& panel, const RowLayout& layout) {
  const Win& window = *panel.window;
  FrameLine line(outerWidth(window), SeparatorLeft, SingleLine, SeparatorRight);
  const std::vector<int> above = separatorPositions(layout.columns);
  line.mark(above, BoundaryAbove);
  for (int x : statusBoundaries(panel)) {
    const bool both = std::find(above.begin(), above.end(), x) != above.end();
    line.at(x) = both ? BoundaryBoth : BoundaryBelow;
  }
  line.write(window, window.originY() + panelPair().panelRows);
}

void drawBottomBorder(Panel& panel, const std::vector<int>& boundaries) {
  const Win& window = *panel.window;
  FrameLine line(outerWidth(window), BottomLeft, DoubleLine, BottomRight);
  line.mark(boundaries, BottomBoundary);
  line.write(window, window.bottom());
}

void drawSides(const Win& window) {
  const Cell side{DoubleSide, colourOf(Colour::Panel)};
  for (int y = window.top() + 1; y < window.bottom(); ++y) {
    console->fillCell(window.left(), y, 1, side);
    console->fillCell(window.right(), y, 1, side);
  }
}

}  // namespace

void drawTopBorder(Panel& panel, const FrameTitle& title) {
  const Win& window = *panel.window;
  FrameLine line(outerWidth(window), TopLeft, DoubleLine, TopRight);
  if (panel.isFiles()) {
    line.mark(separatorPositions(layoutColumns(panel.style, window.innerWidth())), TopBoundary);
  }
  line.overlay(title);
  line.write(window, window.top());
}

void drawPanelFrame(Panel& panel, const RowLayout& layout) {
  drawSides(*panel.window);
  drawSeparator(panel, layout);
  drawBottomBorder(panel, statusBoundaries(panel));
}

void drawPlainFrame(Panel& panel) {
  drawSides(*panel.window);
  drawBottomBorder(panel, {});
}
