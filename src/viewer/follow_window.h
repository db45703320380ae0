#pragma once

#include "ui/win.h"

// The row over the key bar that tells that the end of the file is followed.
class FollowWindow : public Win {
 public:
  FollowWindow();
  void tellReplaced();  // the file of that name is another one by now
};
