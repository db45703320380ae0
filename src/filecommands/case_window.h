#pragma once

#include <memory>
#include <string>

#include "foundation/clock.h"
#include "foundation/westring.h"
#include "ui/dialog.h"

// What shows while names change their case: a bar over the tagged files, and over it the directory
// that is being followed. Drawn at most once a frame. Application thread.
class CaseWindow {
 public:
  explicit CaseWindow(CClock& clock = systemClock()) : clock_(clock) {}
  // The bar, for `count` files of a directory; without this call there is none.
  void open(const Westring& directory, int count);
  void showDone(int done);
  // The directory window; opened at the first call, gone with the item.
  void showMembers(const char* directory, int64_t count);
  void closeMembers();
  void complete();  // draws what was held back; before anything else comes on the screen
  void close();

 private:
  bool isTime();
  void drawMembers();

  CClock& clock_;
  std::unique_ptr<Dialog> bar_;
  std::unique_ptr<Win> members_;
  int files_ = 0;
  float fraction_ = 0;
  std::string directory_;
  int64_t count_ = 0;
  bool pending_ = false;
  int64_t lastFrame_ = 0;  // nanoseconds of the clock
};
