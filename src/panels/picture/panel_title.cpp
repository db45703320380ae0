#include "panels/picture/panel_title.h"

#include <algorithm>

#include "foundation/names.h"
#include "foundation/text_format.h"
#include "language/filter_expression.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_clock.h"
#include "panels/picture/panel_frame.h"

namespace {

constexpr int TitleMargin = 4;  // corners and blanks around the text
constexpr int Room12Hours = 5, Room24Hours = 6;
constexpr int HalfDay = 12;
constexpr int WindowTitleWidth = 50;
constexpr char ProductName[] = "Tandem Deck V";
constexpr char TitlePrefix[] = "TD/X: ";

bool clockStandsOver(const Panel& panel) {
  return GlobalOptions::Clock && panelPair().sideOf(panel) == 1;
}

Westring titleText(const Panel& panel) {
  if (!panel.isFiles()) return L" INFO ";
  if (panel.isTreeStyle()) return L" TREE ";
  Westring path = shownPath(panel);
  if (!filtersNothing(panel.filter.data())) path = addSlash(path) + L"?";
  int width = panelPair().panelWidth() - TitleMargin;
  if (clockStandsOver(panel))
    width -= GlobalOptions::TimeMode == HalfDay ? Room12Hours : Room24Hours;
  return L" " + shortenPath(path, width) + L" ";
}

unsigned char titleColour(const Panel& panel, bool active) {
  if (active) return colourOf(panel.archive ? Colour::HighlightTagged : Colour::Highlight);
  return colourOf(panel.archive ? Colour::Tagged : Colour::Panel);
}

}  // namespace

void drawTitle(Panel& panel) {
  if (!isDrawable(panel)) return;
  const bool active = &panel == &panelPair().active();
  const Westring text = titleText(panel);
  const int width = panelPair().panelWidth();
  const bool clock = clockStandsOver(panel);
  const int end = clock ? width - ClockWidth : width - 1;
  const int x = std::max(1, std::min(width / 2 - (text.length() + 1) / 2, end - text.length()));
  drawTopBorder(panel, {text, x, titleColour(panel, active), clock ? end : width});
  if (panelPair().sideOf(panel) == 1) drawClock();
}

void markActivePanel() {
  PanelPair& pair = panelPair();
  for (Panel& panel : pair.side) drawTitle(panel);
  showPathInWindowTitle();
}

void removeClock() {
  if (!console || GlobalOptions::Clock) return;
  Panel& right = panelPair().side[1];
  if (isDrawable(right)) return drawTitle(right);
  console->fillBlank(clockColumn(), 0, ClockWidth, 1, console->defaultAttr());
}

void setWindowTitle(const Westring* text) {
  if (!console) return;
  if (!text) {
    console->setTitle(Westring(ProductName) + Westring(TD_VERSION));
  } else if (text->empty()) {
    console->setTitle(Westring());
  } else {
    console->setTitle(Westring(TitlePrefix) + *text);
  }
}

void showPathInWindowTitle() {
  const Westring path = shortenPath(shownPath(panelPair().active()), WindowTitleWidth);
  if (!path.empty()) setWindowTitle(&path);
}
