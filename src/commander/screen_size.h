#pragma once

#include "options/options.h"

// Gives the console the size and the font of the options; what no panel could stand on is
// corrected.
void applyScreenOptions();
void changeLines();    // between 25, 50 and the configured lines
void changeColumns();  // between 80, 132 and the configured columns
// The sizes that were asked for at a moment.
struct ScreenOptions {
  int lines = GlobalOptions::Lines;
  int columns = GlobalOptions::Columns;
};
// Where the options ask for another size than then, and for one at all, the screen gets it.
void followScreenOptions(const ScreenOptions& before);
// Takes the panels' windows away and opens them anew for the present size.
void reopenPanels();

// The sizes that the options ask for, within what the console can be; 0 where they ask for none.
int wantedLines();
int wantedColumns();
// What follows on a size; `configured` 0 for none.
int nextLines(int lines, int configured);
int nextColumns(int columns, int configured);
