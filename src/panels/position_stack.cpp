#include "panels/position_stack.h"

#include <limits>

#include "foundation/names.h"

namespace {

constexpr int MaxDepth = std::numeric_limits<int16_t>::max();

int indexOf(const Panel& panel, const Westring& name) {
  for (int i = 0; i < panel.count(); ++i) {
    if (sameName(name, panel.entries[i]->name())) return i;
  }
  return -1;
}

}  // namespace

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
  showFromTop(panel, indexOf(panel, step.left));
}

void showFromTop(Panel& panel, int index) {
  panel.top = 0;
  panel.cursor = index < 0 ? 0 : index;
  if (index < panel.pageSize) return;
  panel.top = index - panel.pageSize + 1;
  panel.cursor = panel.pageSize - 1;
}
