#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "console/cell.h"
#include "console/events.h"
#include "foundation/westring.h"

struct CursorPos {
  int x = 0;
  int y = 0;
};

struct GridSize {
  int columns = 80;
  int rows = 25;
};

// Starts the toolkit and its threading. False when no display can be opened; then nothing was
// started and no console may be made. Once per process, application thread, before the CConsole.
bool initToolkit(int* argc, char*** argv);
// The end of the toolkit, after the CConsole was deleted.
void endToolkit();
// True once the connection to the display is lost or the window was destroyed. Painting then does
// nothing and the program ends (programEnds, console/input.h). The process ends with status 1 when
// the console does, or after a few seconds. Any thread.
bool displayLost();

class CClock;
class TerminalSession;

// Pixels row after row as 0xRRGGBB.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> rgb;

  uint32_t at(int x, int y) const {
    return rgb[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
};

// The whole screen: one desktop window showing a grid of character cells. Operations belong to the
// application thread; those that only write cells or move the cursor may also be called by a thread
// that draws progress. They take the toolkit lock themselves when they paint and clip to the grid.
// Coordinates are cells from 0. Cells are exact at once; pixels follow at once for a lone change,
// and within a frame while much is written. When the display has gone, painting does nothing.
class CConsole {
 public:
  using TEvent = ::TEvent;
  using CEventQueue = ::CEventQueue;

  static constexpr int MinColumns = 1, MaxColumns = 500, MinRows = 1, MaxRows = 250;

  CConsole();
  ~CConsole();
  CConsole(const CConsole&) = delete;
  CConsole& operator=(const CConsole&) = delete;

  // Row after row; a cell outside the grid reads as a blank and is not written.
  std::vector<Cell> getCells(int x, int y, int w, int h) const;
  // The same into an array of w*h cells.
  void getCells(int x, int y, int w, int h, Cell* cells) const;
  void putCells(int x, int y, int w, int h, const Cell* cells);
  void fillAttr(int x, int y, int n, unsigned char attr);
  void fillBlank(int x, int y, int w, int h, unsigned char attr);
  void fillCell(int x, int y, int n, Cell cell);
  void writeCellString(int x, int y, const Cell* cells);
  void writeWide(int x, int y, const wchar_t* text, unsigned char attr);
  void writeBytes(int x, int y, const char* text,
                  unsigned char attr);  // in the console's code page

  void setCursorSize(int percent);  // of the cell height; 0 hides the cursor
  void setCursorPos(int x, int y);
  CursorPos getCursorPos() const;
  int cursorSize() const;
  GridSize getSize() const;
  int columns() const { return getSize().columns; }
  int rows() const { return getSize().rows; }
  int cellWidth() const;   // pixels
  int cellHeight() const;  // pixels

  void scrollDown(int x, int y, int w, int h, int n, unsigned char attr);
  void scrollUp(int x, int y, int w, int h, int n, unsigned char attr);
  void writeTty(const char* utf8Text);      // to the terminal while one is attached
  void setDefaultAttr(unsigned char attr);  // of teletype output and the blank lines it scrolls in
  unsigned char defaultAttr() const;

  // Between these, writes change the grid at once and pixels only at the outermost endBatch.
  void beginBatch();
  void endBatch();
  // Makes the picture complete; called before every wait.
  void completePainting();

  // Clears the screen; an empty family and a size of 0 keep the present ones. Values are clamped.
  void setGeometry(int columns, int rows, const Estring& family, int size);
  void setCodePage(int page);
  int codePage() const;
  void setTitle(const Westring& text);
  void setTitle(const char* text);  // in the console's code page
  std::string title() const;        // UTF-8, as last set
  void setIcon(const char* file);
  void setIconList(const std::vector<std::string>& files);
  void beep();

  // Input. readEvent: false on time-out, and at once when the display has gone.
  bool readEvent(TEvent& out, uint32_t timeoutMs);
  int eventCount() const;
  CEventQueue& events();

  // A running command gets the keyboard until it is detached; one that is attached already is
  // deleted. Mouse events are dropped meanwhile. Application thread.
  void attachTerminal(std::unique_ptr<TerminalSession> session);
  void detachTerminal();

  void setClipboardText(const Westring& text);
  Westring getClipboardText();
  // The same for a text that is made only when another program asks for it: `text` gives UTF-8, on
  // the toolkit's thread, for as long as the clipboard is ours by this call.
  void offerClipboardText(std::function<std::string()> text);
  bool isClipboardOffered() const;  // nobody has taken it over since offerClipboardText

  // The picture as it stands, as a PNG file. 0 or errno.
  int savePicture(const char* file);
  Picture picture();  // empty when the display has gone
  // X window of the screen, for tests and for asking for the focus; 0 without one.
  unsigned long windowId() const;
  // Paints since the start, for tests of what costs a paint.
  unsigned long paintCount() const;
  // By what clock frames, the last of which is over by then, and the cursor's blinking are counted;
  // null for the system's. It must outlive the console. Application thread. For tests.
  void setClock(CClock* clock);

 private:
  struct Impl;
  static std::unique_ptr<Impl> makeImpl();

  std::unique_ptr<Impl> impl_;
};

// The way to the one console: null before it stands and after it was deleted. The application
// thread makes and deletes it; a thread that sees it here sees it whole, and may use it for as long
// as the application thread is known not to delete it.
class ConsolePointer {
 public:
  operator CConsole*() const { return standing_.load(std::memory_order_acquire); }
  CConsole* operator->() const { return *this; }

 private:
  friend class CConsole;        // its constructor and its destructor
  friend class WithoutConsole;  // tests of what needs none, in any order with those that do

  std::atomic<CConsole*> standing_{nullptr};
};

extern constinit ConsolePointer console;

class BatchScope {
 public:
  BatchScope() {
    if (console) console->beginBatch();
  }
  ~BatchScope() {
    if (console) console->endBatch();
  }
  BatchScope(const BatchScope&) = delete;
  BatchScope& operator=(const BatchScope&) = delete;
};
