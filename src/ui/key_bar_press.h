#pragma once

#include "console/events.h"

// A function key pressed with the mouse on the last row of a full screen: it counts when the button
// goes up over the key where it went down. The right button, or Alt, stands for Shift.
class KeyBarPress {
 public:
  // True for an event that means the key bar; `key` is then the key that it completes, or NoKey.
  // Any other press forgets the one on the key bar.
  bool take(const MouseMessage& event, Key::Code& key);

 private:
  Key::Code pressed_;
};

// The function key at column `x` of the key bar under these modifiers (ShiftState bits); NoKey
// where they have none.
Key::Code keyBarKeyOf(int x, int shiftState);
