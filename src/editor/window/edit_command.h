#pragma once

#include <string_view>
#include <vector>

#include "console/key_codes.h"

class CTextEditor;

// What becomes of the block when a command has run. Under the sticky mark it never ends, unless the
// text was changed.
enum class BlockUse {
  Drops,  // nothing is marked any more
  Keeps,  // dropped only when the cursor has left its moving end
  Moves,  // extended while Shift is held or the sticky mark is on, otherwise dropped
  Jumps   // extended while the sticky mark is on, otherwise as Keeps
};

// Whether a command may wait for the user: what was changed before it is put aside first.
enum class Asks { No, Yes };

// What is special about a command.
struct CommandTraits {
  BlockUse block = BlockUse::Drops;
  int modifiers = 0;  // ShiftState bits that must be held too, for a code that several keys have
  Asks asks = Asks::No;
};

// One row of the table: all that is known of a command.
struct EditCommand {
  std::string_view name;         // unique
  std::vector<Key::Code> codes;  // of the keys that run it
  void (*run)(CTextEditor&);
  CommandTraits traits = {};
};

using EditCommands = std::vector<EditCommand>;

// The rooms of the table, one a subject; each stands beside its commands. `edit_command.cpp` joins
// them.
EditCommands moveCommands();
EditCommands typeCommands();
EditCommands deleteCommands();
EditCommands markCommands();
EditCommands undoCommands();
EditCommands editOptionCommands();
EditCommands blockCommands();
EditCommands searchCommands();
EditCommands replaceCommands();
EditCommands saveCommands();
EditCommands formatCommands();
EditCommands leaveCommands();

const EditCommands& allEditCommands();
// The command of a key with these modifiers (ShiftState bits); null for none. Of several rows for
// one code the first whose modifiers are held counts.
const EditCommand* findEditCommand(Key::Code key, int modifiers);
