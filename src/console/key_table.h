#pragma once

#include <span>

#include "console/key_codes.h"

// From key symbols of the window system to key codes. Nothing here touches the toolkit.

inline constexpr int AnyState = -1;

struct KeyRow {
  unsigned symbol;
  int state;  // ShiftState bits that must agree exactly, or AnyState
  Key::Code code;
};

// The rows of the table in search order; a few keys beside it have codes, too.
std::span<const KeyRow> keyTable();

// The code of the first row that fits, or else of a key beside the table, NoKey for none. `state`
// holds ShiftState bits.
Key::Code lookUpKey(unsigned symbol, int state);

// One key press or release as the window system reports it; `state` is the state before the key.
struct KeyInput {
  unsigned symbol = 0;
  unsigned baseSymbol = 0;  // the same key in the first layout; 0 when unknown
  unsigned state = 0;
  int hwCode = 0;
  bool press = true;
};

enum class KeyAction { Drop, Break, Queue, InputMethod };

struct KeyResult {
  KeyAction action = KeyAction::Drop;
  Key::Code code;
  int state = 0;
};

// What becomes of a key. Queue: a record of `code` and `state` goes to the event queue.
// InputMethod: no code; the input method may make text of it.
KeyResult translateKey(const KeyInput& input);
