#pragma once

#include "fileops/operation.h"
#include "panels/model/panel.h"
#include "search/found_entries.h"

// What the list of a search does with its files. Each takes the list as it is at that moment. What
// isn't there any more goes off the list; another file by now, or one that can't be looked at, is
// told and isn't touched. Application thread.

// Copies or moves all of them as the panel would.
void transferFound(const Panel& panel, TransferKind kind);
void deleteFound(int index);  // one, after a question
void deleteAllFound();        // after a question
