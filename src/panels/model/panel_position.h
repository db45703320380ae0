#pragma once

#include <optional>

#include "panels/model/panel.h"

// Where the cursor of a panel stands: in its list, and in the directories on the way down. Pure:
// nothing is read and nothing drawn.

// Keeps top and cursor inside the list and the page.
void normalisePosition(Panel& panel);
// The cursor goes to the entry of exactly this name; without one the position only is normalised.
void selectName(Panel& panel, const wchar_t* name);
// Top and cursor that show entry `index` of a list shown from its first page on.
void showFromTop(Panel& panel, int index);

// Stores the position in the directory that is left for one below it: 50 levels are stored, the
// first 20 restored.
void pushPosition(Panel& panel);
void resetPositions(Panel& panel);

// One level on the way up.
struct UpwardStep {
  Westring left;  // the name of the directory left
  std::optional<PanelPosition> stored;
};
// Takes the last component off the path and its position off the stack.
UpwardStep stepUp(Panel& panel);
// Puts the cursor of the directory reached on the one left: at the stored position when it stands
// there, else wherever the list has it, else at the top.
void returnFrom(Panel& panel, const UpwardStep& step);
