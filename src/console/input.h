#pragma once

#include "console/events.h"
#include "console/key_codes.h"

// A key code, Key::MouseEvent with `mouse` filled in, or 0 (time-out, or an event that means
// nothing). Completes the picture and syncs the cursor first. `flag` is cleared when given.
int getKey(unsigned char* flag, MouseMessage* mouse, int timeoutMs = -1);

bool keyPending();
// How long operations look for an abort: takes one key away without waiting; true when it was Esc.
// Any other key is lost. Mouse events, shift changes and the window's close button stay queued and
// don't use up a look.
bool escapePressed();
// The modifiers of the last modifier or table key; typed text doesn't change it.
int lastShiftState();
