#pragma once

#include <memory>
#include <string>

#include "fileops/operation.h"
#include "fileops/progress.h"
#include "foundation/clock.h"
#include "ui/win.h"

// The window of a copy or move and the thread that repaints its bar and statistics every 100 ms.
// Both come with the first item and go with `close` or the end of the object. The rows of an item
// that lasts less than a frame are left out. All calls: application thread.
class CopyProgress {
 public:
  explicit CopyProgress(ProgressRecord& record, CClock& clock = systemClock())
      : record_(record), clock_(clock) {}
  ~CopyProgress() { close(); }
  CopyProgress(const CopyProgress&) = delete;
  CopyProgress& operator=(const CopyProgress&) = delete;

  void showItem(TransferKind kind, const char* source, const char* target, int index, int count);
  void showItemsDone(int index, int count);
  void working();   // shows an item that was held back, once its frame has passed
  void complete();  // brings everything up to date at once
  // Afterwards the thread draws nothing until `resume`; it isn't drawing now either.
  void pause();
  void resume();
  void close();

  bool isOpen() const { return window_ != nullptr; }

 private:
  static void threadEntry(void* self);
  void repaintLoop();
  void repaint();  // bar and statistics
  bool frameHasPassed();
  void drawItem();
  void fitWindow(int innerWidth);
  void drawBar(int64_t done, int64_t total);
  void drawStatistics();

  ProgressRecord& record_;
  CClock& clock_;
  std::unique_ptr<Win> window_;
  int width_ = 0;     // of the window's interior
  MutexSem drawing_;  // held by whoever draws in the window
  bool paused_ = false;
  EventSem stop_;
  ThreadHandle thread_;

  TransferKind kind_ = TransferKind::Copy;
  std::string source_;
  std::string target_;
  int itemsDone_ = 0;  // of renames, which move no bytes
  int itemsOfAll_ = 0;
  int index_ = 1;
  int count_ = 1;
  bool itemPending_ = false;
  int64_t lastFrame_ = 0;  // nanoseconds of the clock

  int shownFilled_ = -1;
  int shownWidth_ = -1;
  Westring shownStatistics_;
};
