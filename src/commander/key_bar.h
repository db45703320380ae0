#pragma once

// The labels of the ten function keys on the last row, for a set of modifiers (ShiftState bits).
void drawKeyBar(int shiftState);
const char* const* keyBarLabels(int shiftState);
