#include "ui/progress_indicator.h"

#include "ui/dialog.h"

namespace {
constexpr wchar_t DoneCell = 0x2588;
constexpr wchar_t OpenCell = 0x2591;
}  // namespace

int progressCells(int width, float fraction) {
  if (!(fraction > 0)) return 0;
  if (fraction >= 1) return width;
  return static_cast<int>(static_cast<float>(width) * fraction);
}

ProgressIndicator::ProgressIndicator(Dialog& dialog, int x, int y, int width, const float* fraction)
    : DialogElement(dialog, x, y, Group::Same), width_(width), fraction_(fraction) {
  enabled = false;
}

void ProgressIndicator::draw() {
  const int done = progressCells(width_, *fraction_);
  dialog_.put(x(), y(), Westring(DoneCell, done) + Westring(OpenCell, width_ - done));
}
