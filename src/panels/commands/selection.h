#pragma once

#include "panels/model/panel.h"

enum class TagMode : int { Untag = -1, Flip = 0, Tag = 1 };

// Nothing in INFO type, in tree style, or on "..". Redraws the entry when it is on the screen, and
// the status line.
void toggleTag(Panel& panel, int index, TagMode mode);
// `shiftState` flips whether directories take part. In the tree style all of the current line's
// subtree opens (Tag) or closes (Untag) instead.
void selectAll(Panel& panel, TagMode mode, int shiftState);
// Tag or Untag those that match a typed expression. In the tree style the current line opens or
// closes instead.
void groupSelectDialog(Panel& panel, TagMode mode, int shiftState);
// Tags again what a macro or an operation had used.
void restoreSelection(Panel& panel);
// The tag alone, with the counters; no drawing. False when nothing changed.
bool changeTag(Panel& panel, entry& item, TagMode mode);
// Names that groups never tag.
bool isProtectedFromGroups(const wchar_t* name);
