#include "console/console_impl.h"

#include <gtkmm/main.h>

#include "console/toolkit.h"

namespace {
constexpr int BlinkPhases = 10;
constexpr int FirstHiddenPhase = 5;
constexpr uint32_t BlinkTickMs = 100;
constexpr int64_t NsPerMs = 1'000'000;

// Whoever waits for a key when the display goes looks up.
void wakeReader(void* queue) {
  static_cast<CEventQueue*>(queue)->wake();
}
}  // namespace

CConsole::Impl::Impl() : window(events, blinkPhase), painter(GTK_WIDGET(window.area.gobj())) {
  window.area.setPainter(&painter);
}

CConsole::Impl::~Impl() = default;

void CConsole::Impl::start() {
  whenDisplayLost(wakeReader, &events);
  {
    ToolkitLock lock;
    const GridSize size;
    rebuild(size.columns, size.rows);
    window.show_all();
  }
  startBlinking();
  guiThread = startThread(guiEntry, this);
  // Ending a loop that has not begun would leave the destructor waiting for ever.
  loopRunning_.wait(WaitForever);
}

void CConsole::Impl::stop() {
  if (displayLost()) restForEver();
  whenDisplayLost(nullptr, nullptr);
  handClipboardOver(GTK_WIDGET(window.gobj()), clipboardOffer);
  {
    ToolkitLock lock;
    if (!lock.usable()) restForEver();
    Gtk::Main::quit();
  }
  joinThread(guiThread);
  stopBlinking();
  while (g_source_remove_by_user_data(this)) {
  }
}

void CConsole::Impl::guiEntry(void* self) {
  static_cast<Impl*>(self)->runToolkit();
}
void CConsole::Impl::blinkEntry(void* self) {
  static_cast<Impl*>(self)->blink();
}

int CConsole::Impl::loopStarted(void* self) {
  static_cast<Impl*>(self)->loopRunning_.post();
  return FALSE;
}

void CConsole::Impl::runToolkit() {
  ToolkitLock lock;
  if (lock.usable()) {
    g_idle_add_full(G_PRIORITY_HIGH, loopStarted, this, nullptr);
    Gtk::Main::run();
  } else {
    loopRunning_.post();
  }
}

void CConsole::Impl::startBlinking() {
  blinkStop_.reset();
  blinkThread_ = startThread(blinkEntry, this);
}

void CConsole::Impl::stopBlinking() {
  blinkStop_.post();
  joinThread(blinkThread_);
}

void CConsole::Impl::blink() {
  do {
    int phase = blinkPhase.load(std::memory_order_relaxed);
    if (phase == 0 || phase == FirstHiddenPhase) paintCursorCell();
    // A key or a cursor move that starts the cycle anew meanwhile wins.
    blinkPhase.compare_exchange_strong(phase, (phase + 1) % BlinkPhases, std::memory_order_relaxed);
  } while (clock_.load()->wait(blinkStop_, BlinkTickMs) != 0);
}

CursorInk CConsole::Impl::cursorInk() const {
  return blinkPhase.load(std::memory_order_relaxed) < FirstHiddenPhase ? CursorInk::Shown
                                                                       : CursorInk::Hidden;
}

void CConsole::Impl::paintCursorCell() {
  if (grid.cursor().size <= 0) return;
  ToolkitLock lock;
  if (!lock.usable()) return;
  const CursorState cursor = grid.cursor();
  frame_.clear();
  grid.copyTo(frame_, cursor.x, cursor.y, 1, 1);
  painter.paint(frame_, cursorInk());
}

// Nobody goes on waiting on the clock before.
void CConsole::Impl::useClock(CClock& clock) {
  stopBlinking();
  lastPaint_ = clock.nanoseconds() - FrameNs;
  clock_ = &clock;
  startBlinking();
}

void CConsole::Impl::changed() {
  if (batchDepth.load(std::memory_order_relaxed) == 0) paintWhenDue();
}

void CConsole::Impl::paintWhenDue() {
  if (frameElapsed()) {
    ToolkitLock lock;
    if (!lock.usable()) return;
    // Another thread may have painted while this one waited for the lock.
    if (frameElapsed()) {
      paintDirty();
      return;
    }
  }
  if (grid.dirty()) scheduleFrame();
}

void CConsole::Impl::scheduleFrame() {
  if (framePlanned_.exchange(true) || displayLost()) return;
  const int64_t passed = now() - lastPaint_.load(std::memory_order_relaxed);
  const int64_t restMs = passed < FrameNs ? (FrameNs - passed) / NsPerMs + 1 : 0;
  g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(restMs), frameOver, this, nullptr);
}

// On the toolkit thread. A batch that is open now paints at its own end.
int CConsole::Impl::frameOver(void* self) {
  auto* impl = static_cast<Impl*>(self);
  impl->framePlanned_ = false;
  impl->changed();
  return FALSE;
}

void CConsole::Impl::paintPending() {
  if (!grid.dirty()) return;
  ToolkitLock lock;
  if (lock.usable()) paintDirty();
}

void CConsole::Impl::paintDirty() {
  if (!grid.takeDirty(frame_)) return;
  painter.paint(frame_, cursorInk());
  paintCount.fetch_add(1, std::memory_order_relaxed);
  lastPaint_.store(now(), std::memory_order_relaxed);
}

void CConsole::Impl::scroll(int x, int y, int w, int h, int n, unsigned char attr) {
  if (scrollPixels(x, y, w, h, n, attr)) return;
  if (grid.scroll(x, y, w, h, n, attr)) changed();
}

bool CConsole::Impl::scrollPixels(int x, int y, int w, int h, int n, unsigned char attr) {
  if (n == 0 || batchDepth.load(std::memory_order_relaxed) > 0 || !frameElapsed()) return false;
  ToolkitLock lock;
  if (!lock.usable() || !painter.pixmap() || grid.dirty() || !grid.clip(x, y, w, h)) return false;
  const int distance = std::abs(std::clamp(n, -h, h));
  if (distance == h) return false;

  const CursorState cursor = grid.cursor();
  const bool carriesCursor =
      cursor.size > 0 && cursor.x >= x && cursor.x < x + w && cursor.y >= y && cursor.y < y + h;
  frame_.clear();
  if (carriesCursor) {
    grid.copyTo(frame_, cursor.x, cursor.y, 1, 1);
    painter.paint(frame_, CursorInk::Hidden);
    frame_.clear();
  }
  grid.scrollClean(x, y, w, h, n, attr);
  gdk_flush();
  const bool down = n > 0;
  painter.moveRows(x, down ? y : y + distance, down ? y + distance : y, w, h - distance);
  grid.copyTo(frame_, x, down ? y : y + h - distance, w, distance);
  if (carriesCursor) grid.copyTo(frame_, cursor.x, cursor.y, 1, 1);
  painter.paint(frame_, cursorInk());
  paintCount.fetch_add(1, std::memory_order_relaxed);
  lastPaint_.store(now(), std::memory_order_relaxed);
  return true;
}

void CConsole::Impl::rebuild(int columns, int rows) {
  painter.setFont(fontFamily.data(), fontSize, GridSize{columns, rows});
  grid.resize(columns, rows);
  window.setPixels(painter.pixelsOf(GridSize{columns, rows}));
}
