#pragma once

#include <cstdint>

class CTextEditor;

// Moves that the mouse makes, too.

// The view moves by so many lines, negative up, as far as the text goes; the cursor keeps its row.
void scrollWithCursor(CTextEditor& editor, int64_t lines);
void pageUp(CTextEditor& editor);
void pageDown(CTextEditor& editor);
