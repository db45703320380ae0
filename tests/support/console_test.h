#pragma once

#include <gtest/gtest.h>

#include <source_location>
#include <string>

#include "console/console.h"
#include "console/input.h"
#include "console/text_state.h"
#include "support/key_print.h"
#include "support/wait_until.h"

// The console counts its frames and blinks by this clock for as long as this lives. The clock must
// stay until the end of the process: the toolkit's thread may be looking at it.
class FrameClock {
 public:
  explicit FrameClock(CClock& clock) { console->setClock(&clock); }
  ~FrameClock() { console->setClock(nullptr); }
  FrameClock(const FrameClock&) = delete;
  FrameClock& operator=(const FrameClock&) = delete;
};

// A test on the process's real console under the X display. Each test begins with a blank screen of
// 80 by 25 cells in the default font, the default colours and options, no cursor and no event
// waiting. When one fails, it prints the screen and saves its picture in the directory
// "failed_screens".
class ConsoleTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Which display the console opens; asked once a process.
  virtual bool needsOwnDisplay() const { return false; }

  // Text as UTF-8; raw bytes of file names as they are on the screen.
  std::string rowText(int y) const;
  std::string rowText(int x, int y, int w) const;
  std::string screenText() const;  // all rows, trailing blanks cut, each with a newline
  Cell cellAt(int x, int y) const;
  int attrAt(int x, int y) const { return cellAt(x, y).attr; }

  // As the keyboard queues it: text comes without a key behind it, everything else with one.
  void queueKey(Key::Code key, int state = 0);
  void queueText(const std::string& text);
  void queueMouse(EventKind kind, int x, int y, int button = 1, int state = 0);
  void queueWheel(int direction, int state = 0);
  void drainEvents();

  // Compares the screen with golden/<name>.txt beside the calling test. With TD_UPDATE_GOLDEN=1 the
  // file is written anew instead.
  void expectGolden(const std::string& name,
                    std::source_location where = std::source_location::current());
  void expectGoldenText(const std::string& name, const std::string& actual,
                        std::source_location where = std::source_location::current());

  // The picture of one cell, row after row.
  std::vector<uint32_t> cellPixels(const Picture& picture, int x, int y) const;
};

// The same on an X server of its own, for tests that press real keys.
class RealKeysTest : public ConsoleTest {
 protected:
  void SetUp() override;
  bool needsOwnDisplay() const override { return true; }

  // The next key but changes of the modifiers, as getKey returns it; NoKey when none came.
  Key::Code waitKey(MouseMessage* mouse = nullptr, int timeoutMs = PatienceMs);
};
