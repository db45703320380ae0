#pragma once

#include "panels/model/panel_pair.h"
#include "panels/picture/panel_rows.h"

// What surrounds the rows of a panel that has a window. The lines below the rows show the columns
// of the style above them and those of the status line, which is laid out as the full style.
void drawPanelFrame(Panel& panel, const RowLayout& layout);
// The same around an INFO panel: no columns, no line ahead of a status line.
void drawPlainFrame(Panel& panel);
// A title in the top border, cells counted from the window's left edge.
struct FrameTitle {
  Westring text;
  int x;
  unsigned char attr;
  int lineEnd;  // the border ends here: what stands behind it is somebody else's
};
// Border and title as one line, so that a line that is the same costs no painting.
void drawTopBorder(Panel& panel, const FrameTitle& title);
