#pragma once

#include "panels/panel.h"

// By sortGroup first, then by the panel's code; codes 4 and 9 keep the order of the file system.
void sortEntries(Panel& panel);
// Below 0, 0, above 0 by a sort code (0..9), sortGroup included.
int compareEntries(const entry* a, const entry* b, int code);
// Stores the code in the panel and its option, sorts or re-reads, keeps the cursor's name, redraws.
void setSort(Panel& panel, int code);
// code + 5 below 5, else code - 5.
int reversedSort(int code);
