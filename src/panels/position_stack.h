#pragma once

#include <optional>

#include "panels/panel.h"

// The positions in the directories on the way down: 50 levels are stored, the first 20 restored.

// Stores the position in the directory that is left for one below it.
void pushPosition(Panel& panel);
void resetPositions(Panel& panel);

// One level on the way up.
struct UpwardStep {
  Westring left;  // the name of the directory left
  std::optional<PanelPosition> stored;
};
// Takes the last component off the path and its position off the stack. Reads nothing.
UpwardStep stepUp(Panel& panel);
// Puts the cursor of the directory reached on the one left: at the stored position when it stands
// there, else wherever the list has it, else at the top.
void returnFrom(Panel& panel, const UpwardStep& step);
// Top and cursor that show entry `index` of a list shown from its first page on.
void showFromTop(Panel& panel, int index);
