#pragma once

#include <string>

#include "foundation/westring.h"

// What the command line asks for. Values are as they were given; "" where an option is missing.
struct Arguments {
  enum class Outcome { Continue, Exit };

  Outcome outcome = Outcome::Continue;
  int exitStatus = 0;          // counts with Exit
  std::string message;         // with Exit: the line for standard output, without its newline
  Westring fileToEdit;         // -e: edit this file alone
  Westring fileToView;         // -v: view this file alone
  Westring leftDirectory;      // -l
  Westring rightDirectory;     // -r
  Westring exitScript;         // -x: the batch file to write at exit
  Westring configurationFile;  // absolute
};

// Reads the command line; looks at the disk only for the configuration file, and prints nothing.
// argv[0] is the program itself. Stops at the first mistake.
Arguments parseArguments(int argc, const char* const* argv);

// argv[0] made absolute, for setProgramPath; where it tells nothing, the name alone at the root.
Westring programPathOf(int argc, const char* const* argv);
