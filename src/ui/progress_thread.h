#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "foundation/clock.h"
#include "ui/dialog.h"

// Shows a progress window from a thread of its own, and only when the work lasts a second; then
// draws every 250 ms. The most derived class calls finish() in its destructor, so that no draw runs
// on a half-destroyed object; call it too before any other window or panel is drawn.
class ProgressIndicatorThread {
 public:
  explicit ProgressIndicatorThread(CClock& clock = systemClock()) : clock_(clock) {}
  virtual ~ProgressIndicatorThread();
  ProgressIndicatorThread(const ProgressIndicatorThread&) = delete;
  ProgressIndicatorThread& operator=(const ProgressIndicatorThread&) = delete;

  void finish();  // ends the thread and closes the window; may be called again

 protected:
  void begin();               // the most derived constructor calls it last
  virtual void update() = 0;  // progress thread
  std::unique_ptr<Dialog> window_;

 private:
  static void threadEntry(void* self);
  CClock& clock_;
  EventSem stop_;
  ThreadHandle thread_;
};

// Title and a bar of 36 columns over position/total.
class FileReadProgress : public ProgressIndicatorThread {
 public:
  FileReadProgress(const std::atomic<int64_t>* position, const std::atomic<int64_t>* total,
                   const Estring& title, CClock& clock = systemClock());
  ~FileReadProgress() override { finish(); }

 protected:
  void update() override;

 private:
  const std::atomic<int64_t>* position_;
  const std::atomic<int64_t>* total_;
  Estring title_;
  float fraction_ = 0;
};

// "Reading directory:" with a spinner and the count of names so far.
class DirReadProgress : public ProgressIndicatorThread {
 public:
  explicit DirReadProgress(const std::atomic<int>* fileCount, CClock& clock = systemClock());
  ~DirReadProgress() override { finish(); }

 protected:
  void update() override;

 private:
  const std::atomic<int>* fileCount_;
  int spinner_ = 0;
};
