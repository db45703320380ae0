#pragma once

#include "panels/panel_pair.h"
#include "panels/panel_rows.h"

// What surrounds the rows of a panel that has a window. The lines below the rows show the columns
// of the style above them and those of the status line, which is laid out as the full style.
void drawPanelFrame(Panel& panel, const RowLayout& layout);
// The same around an INFO panel: no columns, no line ahead of a status line.
void drawPlainFrame(Panel& panel);
// The top border alone, as the title is drawn over it.
void drawTopBorder(Panel& panel);
