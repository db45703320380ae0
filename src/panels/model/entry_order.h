#pragma once

#include <span>

#include "panels/model/panel.h"

// The orders of a listing, by the codes of SortCode (0..9). Pure.

// By sortGroup first, then by the panel's code; codes 4 and 9 keep the order of the file system.
void sortEntries(Panel& panel);
void sortEntries(std::span<entry*> entries, int code);
// Below 0, 0, above 0 by a sort code, sortGroup included.
int compareEntries(const entry* a, const entry* b, int code);
// code + 5 below 5, else code - 5.
int reversedSort(int code);
// Codes 4 and 9.
bool isUnsorted(int code);
