#pragma once

#include "fileops/operation.h"
#include "panels/model/panel.h"
#include "search/found_entries.h"

// What the list of a search does with its files. Each takes the list as it is at that moment, and
// what isn't there any more, or another file by now, isn't touched. Application thread.

// Copies or moves all of them as the panel would, and takes off what is gone then.
void transferFound(const Panel& panel, TransferKind kind);
void deleteFound(int index);  // one, after a question
void deleteAllFound();        // after a question
// Whether the file of a row is still the one that was found; the user is told if not. What is gone
// goes off the list.
bool isStillFound(const FoundRow& row, int index);
