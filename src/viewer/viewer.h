#pragma once

#include <cstdint>

#include "console/key_codes.h"
#include "foundation/westring.h"

inline constexpr int64_t AnyPosition = -1;

// Shows one file of any size, with the screen and the keyboard to itself until the user leaves it.
// With a position (a byte offset) it opens there and marks the place as a hit of the search; else
// where the file was looked at or edited last. Returns the key that it was left with: Key::Esc,
// also after an error, which has been told, and at the end of the program; Key::AltUp and
// Key::AltDown for the file before and behind; Key::ShiftF4 or Key::AltF4 for the editor, which
// should open at `topLine`, the start of the line at the top of the screen as a byte offset. What
// lay beneath is on the screen again. Application thread.
Key::Code viewFile(const Westring& path, int64_t position = AnyPosition,
                   int64_t* topLine = nullptr);
