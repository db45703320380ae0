#pragma once

#include <memory>

#include "fileops/operation.h"
#include "foundation/clock.h"
#include "ui/win.h"

// The small window of the delete steps: "Deleting the file" and the path. It grows with the paths
// and is drawn at most once a frame. Application thread.
class DeleteWindow {
 public:
  explicit DeleteWindow(CClock& clock = systemClock()) : clock_(clock) {}
  // Opens the window when there is none and `use` allows it.
  void show(const char* path, DeleteWindowUse use);
  // Draws a path that was held back; before anything else comes on the screen.
  void complete();
  void close();  // also forgets the width
  bool isOpen() const { return window_ != nullptr; }

 private:
  static constexpr int FirstWidth = 18;
  void draw();

  CClock& clock_;
  std::unique_ptr<Win> window_;
  int width_ = FirstWidth;  // of the text
  std::string path_;
  bool pending_ = false;
  int64_t lastFrame_ = 0;  // nanoseconds of the clock
};
