#include "panels/picture/status_line.h"

#include "foundation/status.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_rows.h"

namespace {

constexpr wchar_t SearchLabel[] = L"Search: ";
constexpr int TaggedMargin = 2;

CellString plainLine(const Westring& text, Colour colour) {
  return CellString(text.data(), colourOf(colour));
}

CellString searchLine(const Panel& panel, int width) {
  const int room = width - Westring(SearchLabel).length();
  return plainLine(SearchLabel + right(panel.quickSearch, room), Colour::Tagged);
}

CellString taggedLine(const Panel& panel, int width) {
  Westring rest =
      L" bytes in " + groupDigits(static_cast<uint64_t>(panel.taggedCount)) + L" selected file";
  if (panel.taggedCount > 1) rest += L's';
  const Westring size =
      formatSize(static_cast<uint64_t>(panel.taggedSize), width - TaggedMargin - rest.length());
  const Westring text = trim(size) + rest;
  return plainLine(Westring(L' ', (width - text.length()) / 2) + text, Colour::Tagged);
}

CellString entryLine(Panel& panel, const entry& item, int width) {
  const unsigned char attr = colourOf(Colour::Panel);
  int noOffset = 0;
  if (panel.isTreeStyle()) {
    return plainLine(shortenPath(treeDirectory(panel), width), Colour::Panel);
  }
  if (panel.style != PanelStyle::Full) {
    return rowCells(panel, panel.currentIndex(), RowLayout(PanelStyle::Full, width), 0, attr,
                    noOffset);
  }
  return fitName(nameWithTarget(panel, item, attr, colourOf(Colour::Tagged)), width, attr,
                 noOffset);
}

CellString statusLine(Panel& panel, int width) {
  if (panel.readError == Status::NotReady) return plainLine(L" No disk in drive", Colour::Tagged);
  if (panel.readError != 0) return plainLine(L" Error reading drive", Colour::Tagged);
  if (!panel.quickSearch.empty()) return searchLine(panel, width);
  if (panel.taggedCount != 0) return taggedLine(panel, width);
  const entry* item = panel.currentEntry();
  if (!item) return plainLine(panel.count() == 0 ? L"Directory is empty" : L"", Colour::Panel);
  return entryLine(panel, *item, width);
}

}  // namespace

void drawStatusLine(Panel& panel) {
  if (!isDrawable(panel) || !panel.isFiles()) return;
  const int width = panel.window->innerWidth();
  panel.window->put(0, panelPair().panelRows + 1, padded(statusLine(panel, width), width));
}
