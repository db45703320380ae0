#pragma once

#include <atomic>
#include <string>

#include "console/clipboard_handover.h"
#include "console/console.h"
#include "console/console_window.h"
#include "console/grid.h"
#include "console/painter.h"
#include "console/terminal_session.h"
#include "foundation/clock.h"
#include "foundation/threads.h"

// What stands behind CConsole: the grid, the window, the two threads, and when to paint.
struct CConsole::Impl {
  Impl();
  ~Impl();

  // Something became dirty: paints it at once when the last paint is a frame ago, otherwise sees to
  // it that it is painted when the frame is over. Nothing inside a batch.
  void changed();
  void paintPending();  // whatever the batch depth
  // Moves pixels and paints the opened rows only; false when the picture isn't complete or a frame
  // hasn't passed, and then nothing was done.
  bool scrollPixels(int x, int y, int w, int h, int n, unsigned char attr);
  void scroll(int x, int y, int w, int h, int n, unsigned char attr);
  void rebuild(int columns, int rows);  // under the toolkit lock
  void start();
  void stop();
  void useClock(CClock& clock);

  Grid grid;
  CEventQueue events;
  std::atomic<int> blinkPhase{0};  // 0..9; the cursor shows below 5
  ConsoleWindow window;
  Painter painter;
  Estring fontFamily = "DejaVu Sans Mono";
  int fontSize = 12;  // points
  std::atomic<int> codePage{850};
  std::atomic<unsigned char> defaultAttr{7};
  std::string title;
  std::shared_ptr<ClipboardOffer> clipboardOffer;  // the last one, or null
  std::atomic<int> batchDepth{0};
  std::atomic<unsigned long> paintCount{0};
  TerminalSession* terminal = nullptr;  // the window's; application thread

 private:
  static void guiEntry(void* self);
  static void blinkEntry(void* self);
  static int loopStarted(void* self);
  static int frameOver(void* self);
  void runToolkit();
  void startBlinking();
  void stopBlinking();
  void blink();
  void paintCursorCell();
  CursorInk cursorInk() const;
  int64_t now() const { return clock_.load()->nanoseconds(); }
  bool frameElapsed() const {
    return now() - lastPaint_.load(std::memory_order_relaxed) >= FrameNs;
  }
  void paintDirty();  // under the toolkit lock
  void paintWhenDue();
  void scheduleFrame();

  std::atomic<CClock*> clock_{&systemClock()};
  Frame frame_;                        // reused; under the toolkit lock
  std::atomic<int64_t> lastPaint_{0};  // nanoseconds of the clock
  std::atomic<bool> framePlanned_{false};
  ThreadHandle guiThread;
  ThreadHandle blinkThread_;  // waits on the clock
  EventSem blinkStop_;
  EventSem loopRunning_;
};
