#pragma once

void changeLines();    // between 25, 50 and the configured lines
void changeColumns();  // between 80, 132 and the configured columns
// Takes the panels' windows away and opens them anew for the present size.
void reopenPanels();

// What follows on a size; for tests.
int nextLines(int lines, int configured);
int nextColumns(int columns, int configured);
