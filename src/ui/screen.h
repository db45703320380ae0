#pragma once

#include "ui/input_loop.h"

// Something that has the whole screen and the keyboard until it is left: a viewer, an editor, a
// tree, a page of help. Screens may run inside one another. Application thread.
class Screen {
 public:
  static constexpr int ProgramEnds = -2;  // what `run` returns when nobody left it

  Screen() = default;
  virtual ~Screen() = default;
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  // Draws and takes input in turn until `leave`; returns its result, or ProgramEnds.
  int run();

 protected:
  // Brings the cells up to date; before every wait, inside a batch.
  virtual void draw() = 0;
  virtual void onKey(Key::Code key, int shiftState) = 0;
  virtual void onMouse(const MouseMessage&) {}
  virtual void onShift(int /*shiftState*/) {}
  virtual void onTimeOut() {}
  // The program ends and this screen is left, once: unsaved work is put aside without a question.
  // There may be no display any more.
  virtual void onEnd() {}
  // How long the next wait may last, in milliseconds.
  virtual int waitMs() const { return NoLimit; }

  void leave(int result = 0);

 private:
  void take(const Input& input);

  bool running_ = false;
  int result_ = 0;
};
