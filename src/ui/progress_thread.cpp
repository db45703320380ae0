#include "ui/progress_thread.h"

#include "foundation/code_page.h"
#include "foundation/text_format.h"
#include "options/colours.h"

namespace {

constexpr uint32_t FirstDrawMs = 1000;
constexpr uint32_t RedrawMs = 250;
constexpr int UpperThird = -3;

constexpr int FileWindowWidth = 40, FileWindowHeight = 5;
constexpr int BarX = 1, BarY = 2, BarWidth = 36;

constexpr int DirWindowWidth = 35, DirWindowHeight = 6;
constexpr int DirTextX = 4, HeadingY = 1, CountY = 2, SpinnerX = 23, CountWidth = 12;
constexpr wchar_t Spinner[] = L"-\\|/";
constexpr int SpinnerSteps = 4;

std::unique_ptr<Dialog> openWindow(int width, int height) {
  return std::make_unique<Dialog>(-1, UpperThird, width, height, colourOf(Colour::Messages));
}

}  // namespace

ProgressIndicatorThread::~ProgressIndicatorThread() {
  finish();
}

void ProgressIndicatorThread::begin() {
  thread_ = startThread(threadEntry, this);
}

void ProgressIndicatorThread::finish() {
  stop_.post();
  joinThread(thread_);
  window_.reset();
}

void ProgressIndicatorThread::threadEntry(void* self) {
  auto* progress = static_cast<ProgressIndicatorThread*>(self);
  for (uint32_t wait = FirstDrawMs; progress->clock_.wait(progress->stop_, wait) != 0;
       wait = RedrawMs) {
    progress->update();
  }
}

FileReadProgress::FileReadProgress(const std::atomic<int64_t>* position,
                                   const std::atomic<int64_t>* total, const Estring& title,
                                   CClock& clock)
    : ProgressIndicatorThread(clock), position_(position), total_(total), title_(title) {
  begin();
}

void FileReadProgress::update() {
  if (!window_) {
    window_ = openWindow(FileWindowWidth, FileWindowHeight);
    window_->putCentred(0, fromCodePage(title_.data()).data());
    window_->addProgress(BarX, BarY, BarWidth, &fraction_);
  }
  const int64_t total = total_->load(std::memory_order_relaxed);
  if (total < 1) return;
  const int64_t position = position_->load(std::memory_order_relaxed);
  fraction_ = static_cast<float>(position) / static_cast<float>(total);
  window_->redraw(-1);
}

DirReadProgress::DirReadProgress(const std::atomic<int>* fileCount, CClock& clock)
    : ProgressIndicatorThread(clock), fileCount_(fileCount) {
  begin();
}

void DirReadProgress::update() {
  if (!window_) {
    window_ = openWindow(DirWindowWidth, DirWindowHeight);
    window_->put(DirTextX, HeadingY, L"Reading directory:");
  }
  const wchar_t spinner[] = {Spinner[spinner_], 0};
  spinner_ = (spinner_ + 1) % SpinnerSteps;
  window_->put(SpinnerX, HeadingY, spinner);
  const int count = fileCount_->load(std::memory_order_relaxed);
  const Westring files = formatSize(static_cast<unsigned long long>(count), CountWidth);
  window_->put(DirTextX, CountY, L"Files: " + padRight(files, CountWidth));
}
