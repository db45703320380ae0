#pragma once

// Gives the console the size and the font of the options; what no panel could stand on is
// corrected.
void applyScreenOptions();
void changeLines();    // between 25, 50 and the configured lines
void changeColumns();  // between 80, 132 and the configured columns
// Takes the panels' windows away and opens them anew for the present size.
void reopenPanels();

// The sizes that the options ask for, within what the console can be; 0 where they ask for none.
int wantedLines();
int wantedColumns();
// What follows on a size; `configured` 0 for none.
int nextLines(int lines, int configured);
int nextColumns(int columns, int configured);
