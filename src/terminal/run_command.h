#pragma once

#include "foundation/westring.h"

namespace RunFlag {
inline constexpr unsigned FromAssociation = 1;
inline constexpr unsigned StayInDirectory = 8;  // runs where the program is
inline constexpr unsigned Hidden = 16;          // nothing shows, no key reaches it; Esc ends it
inline constexpr unsigned Interrupt = 32;       // is ended by SIGINT, after which tools tidy up
}  // namespace RunFlag

// Runs a command by the shell that SHELL of the session environment names, in the working
// directory, and returns when it has ended and its output is on the screen, from the row of the
// console's cursor on. `directory` is what the command is told of where it is. Meanwhile keys go to
// the command. Break pressed twice, the window's close button and the end of the program end it;
// the close button is then there as a key once more. 0, a negative errno when the command couldn't
// be started, and -EINTR when it was ended; `status` then is what the shell gave, 128 + the signal
// for one. Application thread.
int runCommand(const Westring& text, const Westring& directory, unsigned flags,
               int* status = nullptr);
