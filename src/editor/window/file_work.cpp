#include "editor/window/file_work.h"

#include <algorithm>

FileWork::FileWork(const char* title) : window_(&done_, &total_, title) {}

bool FileWork::report(int64_t done, int64_t total, int part, int parts) {
  total = std::max({total, done, int64_t{1}});
  total_ = total * parts;
  done_ = total * part + done;
  return !escape_.pressed();
}

FileProgress FileWork::progress(int part, int parts) {
  return
      [this, part, parts](int64_t done, int64_t total) { return report(done, total, part, parts); };
}
