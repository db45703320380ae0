#pragma once

#include "panels/model/panel.h"

// Reads the listing of the panel's path: filter, sort, tags and cursor as they survive. Postponed
// (with needsRead) while the panel is off or of INFO type. An unreadable directory goes up to the
// nearest readable parent with one message.
void readDirectory(Panel& panel);

// What a read has to tell: nothing when there is no text.
struct ReadTrouble {
  Westring text;
  Westring path;
};

// The same for a time when no message can be shown: its text comes back.
[[nodiscard]] ReadTrouble tryReadDirectory(Panel& panel);

// The same read for tests and measurements: no messages, no progress window; the status of the
// first hit, 0 when good.
int readListing(Panel& panel);

// Reads every panel that shows; INFO panels while the other is on, and panels that are off, later.
void panelRefresh();
