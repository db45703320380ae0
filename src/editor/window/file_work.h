#pragma once

#include <atomic>

#include "editor/text/file_content.h"
#include "ui/escape_watch.h"
#include "ui/progress_thread.h"

// Stands by while a file is read or written: a bar once that lasts, and Esc and Break end it.
// Application thread; nothing else is drawn while it lives.
class FileWork {
 public:
  explicit FileWork(const char* title);

  // Part `part` of `parts` of equal weight is that far. False once the work should end.
  bool report(int64_t done, int64_t total, int part = 0, int parts = 1);
  FileProgress progress(int part = 0, int parts = 1);

 private:
  std::atomic<int64_t> done_{0};
  std::atomic<int64_t> total_{1};
  EscapeWatch escape_;
  FileReadProgress window_;
};
