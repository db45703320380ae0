#pragma once

#include "panels/model/panel.h"

// Facts about the other panel's directory and the note in it. Fills the window of `panel`, which
// must be drawable, and sets `infoRows` to the rows above the note; to all rows where no note can
// be. The frame is the caller's.
void drawInfoPanel(Panel& panel);

// The saving of an archive in percent, such as "62.5%". "0.0%" for an empty one.
Westring savingText(uint64_t size, uint64_t packed);
