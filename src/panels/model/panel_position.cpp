#include "panels/model/panel_position.h"

#include <limits>

#include "foundation/names.h"

namespace {

constexpr int MaxDepth = std::numeric_limits<int16_t>::max();

int indexOf(const Panel& panel, const wchar_t* name) {
  for (int i = 0; i < panel.count(); ++i) {
    if (sameName(panel.entries[i]->name(), name)) return i;
  }
  return -1;
}

}  // namespace

void normalisePosition(Panel& panel) {
  if (panel.cursor < 0) {
    panel.top += panel.cursor;
    panel.cursor = 0;
  }
  if (panel.cursor >= panel.pageSize) {
    panel.top += panel.cursor - (panel.pageSize - 1);
    panel.cursor = panel.pageSize - 1;
  }
  const int last = std::max(panel.count() - 1, 0);
  panel.top = std::clamp(panel.top, 0, last);
  panel.cursor = std::min(panel.cursor, last - panel.top);
}

void selectName(Panel& panel, const wchar_t* name) {
  const int index = indexOf(panel, name);
  if (index >= 0) panel.cursor = index - panel.top;
  normalisePosition(panel);
}

void showFromTop(Panel& panel, int index) {
  panel.top = 0;
  panel.cursor = index < 0 ? 0 : index;
  if (index < panel.pageSize) return;
  panel.top = index - panel.pageSize + 1;
  panel.cursor = panel.pageSize - 1;
}

void pushPosition(Panel& panel) {
  if (panel.depth < MaxDepth) ++panel.depth;
  if (panel.depth < Panel::StoredPositions) {
    panel.positionStack[panel.depth] = {panel.top, panel.cursor};
  }
}

void resetPositions(Panel& panel) {
  panel.depth = -1;
}

UpwardStep stepUp(Panel& panel) {
  UpwardStep step{lastComponent(panel.path), std::nullopt};
  panel.path = parentOf(panel.path);
  if (panel.depth >= 0) {
    if (panel.depth < Panel::RestoredPositions) step.stored = panel.positionStack[panel.depth];
    --panel.depth;
  }
  return step;
}

void returnFrom(Panel& panel, const UpwardStep& step) {
  if (step.stored) {
    panel.top = step.stored->top;
    panel.cursor = step.stored->cursor;
  }
  if (!panel.currentEntry()) panel.top = panel.cursor = 0;
  const entry* current = panel.currentEntry();
  if (current && sameName(step.left, current->name())) return;
  showFromTop(panel, indexOf(panel, step.left.data()));
}
