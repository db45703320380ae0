#pragma once

#include "console/events.h"

inline constexpr int NoLimit = -1;  // of a wait

// What a wait for the user brought.
struct Input {
  enum class Kind {
    Key,
    Mouse,
    Shift,    // the modifiers changed; lastShiftState tells them
    TimeOut,  // the time is over, or the wait was broken off by something that is no input
    End       // the program has to end: it was asked to, or its display has gone
  };
  Kind kind = Kind::TimeOut;
  Key::Code key;       // of a Key
  MouseMessage mouse;  // of a Mouse; with a Key its `state` are the modifiers
};

// The one way to wait for the user: completes the picture and waits for at most `waitMs`. End comes
// at every call once it has come, ahead of whatever else is queued, and is no key: whoever gets it
// puts unsaved work aside, asks nothing and leaves, also where Esc would mean to stay. Application
// thread.
Input nextInput(int waitMs = NoLimit);
