#pragma once

#include <string>

// The labels of the ten function keys on the last row, for a set of modifiers (ShiftState bits).
void drawKeyBar(int shiftState);
// That of F1 to F10 (`number` from 1): the number, and the label of the key's command if it has
// one.
std::string keyBarLabel(int number, int shiftState);
