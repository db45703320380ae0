#pragma once

#include "console/events.h"
#include "panels/model/panel.h"

// One step of the quick search by a key: a character extends the text, any other key steps to the
// next match in `direction`. With StickyAlt the search holds the keyboard until it ends. Returns
// the key that the main loop must handle, or NoKey.
Key::Code quickSearchStep(Panel& panel, Key::Code key, int direction = 1);
// The same; `mouse` receives the message when the key that ended the search is Key::MouseEvent.
Key::Code quickSearchStep(Panel& panel, Key::Code key, int direction, MouseMessage& mouse);
// Who wants to show the modifiers that are held while the search has the keyboard; null for nobody.
void whenShiftChangesInSearch(void (*show)(int shiftState));
// Lengthens the text as far as all matches agree.
void completeSearch(Panel& panel);
void removeLastSearchCharacter(Panel& panel);
// Where a search for `text` lands from entry `from` on, wrapping once; -1 for none.
int findByPrefix(const Panel& panel, const Westring& text, int from, int direction);
