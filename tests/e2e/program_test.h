#pragma once

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/temp_dir.h"
#include "support/wait_until.h"
#include "support/x_keys.h"

using Modifiers = std::vector<unsigned long>;  // keysyms that are held
inline const Modifiers Alt{XK_Alt_L}, Shift{XK_Shift_L}, Ctrl{XK_Control_L},
    ShiftAlt{XK_Shift_L, XK_Alt_L}, CtrlShift{XK_Control_L, XK_Shift_L};

// The whole program in its window: its own main function runs on a thread of the test, real keys go
// through an X server of the test's own, and the test judges the cells on the screen and the files
// on disk. HOME is a directory of the test's own. One program a process.
class ProgramTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Starts td with the panels in left() and right() and waits for its first complete screen.
  void start(const std::vector<std::string>& moreArguments = {});
  // The same with just these arguments.
  enum class FirstScreen { Panels, Box };  // a message may come before the panels
  void startPlain(const std::vector<std::string>& arguments,
                  FirstScreen first = FirstScreen::Panels);
  // The same without panels: waits for a text of the first screen.
  void startAlone(const std::vector<std::string>& arguments, const std::string& text);
  // Starts td with just these arguments and waits for its end; the exit status.
  int runToEnd(const std::vector<std::string>& arguments);
  // F10 and Enter; the exit status.
  int quit();
  int waitForEnd();

  const TempDir& left() const { return left_; }
  const TempDir& right() const { return right_; }
  const TempDir& home() const { return home_; }
  XKeys& keys() { return XKeys::get(); }

  std::string row(int y) const;  // UTF-8, all columns
  std::string row(int x, int y, int w) const;
  std::string screen() const;
  int attrAt(int x, int y) const;
  bool shows(const std::string& text) const;
  // Waits until the screen shows the text, or no longer shows it; fails the test otherwise.
  void expectText(const std::string& text);
  void expectNoText(const std::string& text);
  // Waits for a condition on the disk or the screen; `what` tells what was waited for.
  void expectSoon(const std::string& what, const std::function<bool()>& condition);
  // The bar of the active panel stands on this entry.
  void expectCursorOn(const std::string& name);
  void moveTo(const std::string& name);  // by keys, in the active panel

  // A key for a program that waits for one: what it does until then may take it for an abort.
  void press(unsigned long symbol, const std::vector<unsigned long>& modifiers = {}) {
    expectAwaited();
    keys().press(symbol, modifiers);
  }
  void type(const std::string& text) {
    expectAwaited();
    keys().type(text);
  }
  void expectAwaited();  // the program has dealt with everything and waits
  // The same for a program that is busy, or that runs a command which reads the keys.
  void pressMeanwhile(unsigned long symbol, const std::vector<unsigned long>& modifiers = {}) {
    keys().press(symbol, modifiers);
  }
  void typeMeanwhile(const std::string& text) { keys().type(text); }

 private:
  void launch(std::vector<std::string> arguments);
  std::string entryUnderBar() const;

  TempDir left_, right_, home_;
  std::vector<std::string> arguments_;
  std::thread program_;
  int status_ = -1;
};
