#pragma once

#include "panels/panel.h"

// Reads the listing of the panel's path: filter, sort, tags and cursor as they survive. Postponed
// (with needsRead) while the panel is off or of INFO type. An unreadable directory goes up to the
// nearest readable parent with one message.
void readDirectory(Panel& panel);

// The same read for tests and measurements: no messages, no progress window; the status of the
// first hit, 0 when good.
int readListing(Panel& panel);

// Frees the list and all that was counted of it. The position stays.
void clearListing(Panel& panel);

// The cursor goes to the entry of exactly this name; without one the position only is normalised.
void selectName(Panel& panel, const wchar_t* name);

// Reads every panel that shows; INFO panels while the other is on, and panels that are off, later.
void panelRefresh();
