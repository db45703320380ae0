#include "filecommands/copy_progress.h"

#include "console/console.h"
#include "fileops/progress.h"
#include "foundation/names.h"
#include "foundation/utf8.h"
#include "options/colours.h"

namespace {

constexpr int RepaintMs = 100;
constexpr int WindowRows = 9;
constexpr int TitleRow = 0, SourceRow = 1, ToRow = 2, TargetRow = 3, CountRow = 4, BarRow = 5,
              StatisticsRow = 6;
constexpr int FrameCells = 2;
constexpr int Middle = -2;
constexpr int BarColumn = 1;

}  // namespace

void CopyProgress::showItem(TransferKind kind, const char* source, const char* target, int index,
                            int count) {
  kind_ = kind;
  source_ = source;
  target_ = target;
  index_ = index;
  count_ = count;
  itemPending_ = true;
  if (!window_ || frameHasPassed()) drawItem();
}

void CopyProgress::working() {
  if (itemPending_ && frameHasPassed()) drawItem();
}

void CopyProgress::complete() {
  if (itemPending_) drawItem();
  if (!window_) return;
  MutexLock guard(drawing_);
  repaint();
}

bool CopyProgress::frameHasPassed() {
  return clock_.nanoseconds() - lastFrame_ >= FrameNs;
}

void CopyProgress::fitWindow(int innerWidth) {
  if (window_ && width_ >= innerWidth) {
    for (int row = TitleRow; row <= CountRow; ++row) {
      window_->put(0, row, Westring(L' ', width_));
    }
    return;
  }
  window_.reset();
  const unsigned char attr = colourOf(Colour::Messages);
  window_ = std::make_unique<Win>(-1, Middle, innerWidth + FrameCells, WindowRows, attr, attr);
  width_ = window_->innerWidth();
  shownFilled_ = -1;
  shownStatistics_ = L"";
  repaint();
}

void CopyProgress::drawItem() {
  const PathCut cut = kind_ == TransferKind::Copy ? PathCut::Middle : PathCut::Front;
  const Westring source = progressPath(decodeFileName(source_.c_str()), cut);
  const Westring target = progressPath(decodeFileName(target_.c_str()), cut);
  const Westring count = progressCount(index_, count_);
  MutexLock guard(drawing_);
  BatchScope batch;
  fitWindow(progressWidth(source, target, count));
  window_->putCentred(TitleRow, kind_ == TransferKind::Copy ? L"Copying" : L"Moving");
  window_->putCentred(SourceRow, source.data());
  window_->putCentred(ToRow, L"to");
  window_->putCentred(TargetRow, target.data());
  window_->putCentred(CountRow, count.data());
  itemPending_ = false;
  lastFrame_ = clock_.nanoseconds();
  if (!thread_.running) {
    stop_.reset();
    thread_ = startThread(threadEntry, this);
  }
}

void CopyProgress::showItemsDone(int index, int count) {
  itemsDone_ = index;
  itemsOfAll_ = count;
  if (!window_) return;
  MutexLock guard(drawing_);
  drawBar(index, count);
}

void CopyProgress::threadEntry(void* self) {
  static_cast<CopyProgress*>(self)->repaintLoop();
}

void CopyProgress::repaintLoop() {
  while (clock_.wait(stop_, RepaintMs) != 0) {
    MutexLock guard(drawing_);
    if (!paused_ && record_.dirty.exchange(false, std::memory_order_relaxed)) repaint();
  }
}

void CopyProgress::repaint() {
  BatchScope batch;
  const int64_t total = record_.total.load(std::memory_order_relaxed);
  if (total != 0) {
    drawBar(record_.done.load(std::memory_order_relaxed), total);
  } else {
    drawBar(itemsDone_, itemsOfAll_);
  }
  drawStatistics();
}

void CopyProgress::drawBar(int64_t done, int64_t total) {
  if (total == 0) {
    shownFilled_ = -1;
    return;
  }
  const int width = width_ - BarColumn;
  const int filled = filledCells(width, done, total);
  if (filled == shownFilled_ && width == shownWidth_) return;
  shownFilled_ = filled;
  shownWidth_ = width;
  window_->put(BarColumn, BarRow, progressBar(width, filled));
}

void CopyProgress::drawStatistics() {
  const double start = record_.start.load(std::memory_order_relaxed);
  if (start == 0) return;
  const Westring text =
      left(progressStatistics(clockSeconds() - start, record_.done.load(std::memory_order_relaxed),
                              record_.total.load(std::memory_order_relaxed)),
           width_ - BarColumn);
  if (sameName(text, shownStatistics_)) return;
  shownStatistics_ = text;
  window_->put(BarColumn, StatisticsRow, padRight(text, width_ - BarColumn));
}

void CopyProgress::pause() {
  MutexLock guard(drawing_);
  paused_ = true;
}

void CopyProgress::resume() {
  MutexLock guard(drawing_);
  paused_ = false;
}

void CopyProgress::close() {
  stop_.post();
  joinThread(thread_);
  window_.reset();
}
