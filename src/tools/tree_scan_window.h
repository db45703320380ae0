#pragma once

#include "foundation/clock.h"
#include "tree/tree_scan.h"
#include "ui/escape_watch.h"
#include "ui/win.h"

// The small window of a scan: what it does, and how many names it has found. Application thread.
class TreeScanWindow : public ScanWatcher {
 public:
  explicit TreeScanWindow(CClock& clock = systemClock());

  void counted(int64_t count) override;
  bool interrupted() override { return escape_.pressed(); }

 private:
  CClock& clock_;
  EscapeWatch escape_;
  Win window_;
  int64_t lastDraw_ = 0;
  bool drawn_ = false;
};
