#pragma once

#include <ctime>

#include "foundation/dos_time.h"

// The clock stands in the last 6 cells of row 0, over the right panel's border.
inline constexpr int ClockWidth = 6;
int clockColumn();               // its first one
void drawClock();                // nothing unless the Clock option is on
void drawClock(DosTime moment);  // the same, at a given time
int msToNextMinute();            // how long until its text changes, at least 1
int msToNextMinute(const timespec& now);
