#pragma once

// The clock stands in the last 6 cells of row 0.
inline constexpr int ClockWidth = 6;
void drawClock();         // nothing unless the Clock option is on
int msToNextMinute();     // how long until its text changes
