#pragma once

#include <memory>
#include <optional>

#include "foundation/clock.h"
#include "ui/key_bar_press.h"
#include "ui/screen.h"
#include "ui/screen_state_guard.h"
#include "ui/win.h"
#include "viewer/follow_window.h"
#include "viewer/key_repeat.h"
#include "viewer/line_counter.h"
#include "viewer/page_painter.h"
#include "viewer/view_colours.h"
#include "viewer/view_page.h"
#include "viewer/viewed_file.h"
#include "viewer/viewer.h"

// The viewer on the screen: a row that tells about the file, the page, the key bar. Application
// thread.
class CViewer : private Screen {
 public:
  explicit CViewer(const Westring& path, CClock& clock = systemClock());

  int openResult() const { return openResult_; }  // 0, or what errorText tells
  // As viewFile, once; only after an openResult of 0.
  Key::Code view(int64_t position);
  int64_t topLine() { return page_.topLine(); }

 protected:
  void draw() override;
  void onKey(Key::Code key, int shiftState) override;
  void onMouse(const MouseMessage& mouse) override;
  void onTimeOut() override;
  int waitMs() const override;

 private:
  struct KeyRow {
    Key::Code key;
    void (*run)(CViewer& viewer);  // null behind the last one
  };
  static const KeyRow keyTable[];

  // Where it begins, and what is kept of it.
  void goToStart(int64_t position);
  void remember();

  void drawStatus();
  void drawKeyBar();
  void runKey(Key::Code key);
  void turnWheel(int direction);

  // file_viewer_keys.cpp
  void leaveWith(Key::Code key);
  void escape();
  void toggleWrap();
  void toggleColours();
  void setTabWidth(int width);
  void selectEncoding();
  void nextCodePage();
  void chooseCodePages();
  void setEncoding(const TextEncoding& encoding);
  void repaint();
  void follow();
  void followChanges();

  // file_viewer_search.cpp
  void askAndSearch(bool reverse);
  void search(bool reverse);
  int64_t searchStart(bool reverse);
  bool hitShows();
  Hit hitAt(int64_t position);
  void showHit(const Hit& hit);
  void askLine();
  LineCounter::Place goToLine(int64_t line);  // from 0
  void askOffset();

  const Westring path_;  // the whole one, as the records of files know it
  const ScreenStateGuard screenState_;
  ViewedFile file_;
  const int openResult_;
  ViewPage page_;
  ViewColours colours_;
  PagePainter painter_;
  LineCounter counter_;
  std::optional<Win> window_;
  KeyRepeat repeat_;
  KeyBarPress keyBar_;
  std::unique_ptr<FollowWindow> follow_;
  Hit hit_;
  bool goToEnd_ = false;  // follow mode has begun and hasn't looked yet
  bool stale_ = false;    // the file has lost its end, and the page doesn't know
  bool dirty_ = true;     // the screen doesn't show what the page is
};
