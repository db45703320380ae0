#pragma once

#include "console/events.h"

// A key code, Key::MouseEvent with `mouse` filled in, or Key::NoKey (time-out, an event that means
// nothing, or the end of the program). Completes the picture and syncs the cursor first. Loops wait
// through nextInput (ui/input_loop.h), which tells these apart.
Key::Code getKey(MouseMessage* mouse = nullptr, int timeoutMs = -1);

// The program was asked to end, or its display has gone; from then on nobody waits for the user.
// Any thread.
bool programEnds();

bool keyPending();
// How long operations look for an abort: takes one key away without waiting; true when it was Esc,
// and whenever the program ends. Any other key is lost. Mouse events, shift changes and the
// window's close button stay queued and don't use up a look.
bool escapePressed();
// The modifiers of the last modifier or table key; typed text doesn't change it.
int lastShiftState();
