#pragma once

#include <initializer_list>

#include "commander/command.h"

// The rows of the table by subject, each room in a source of its own. Of rows with one code the
// first runs whose condition holds; rooms are asked in this order.
std::vector<Command> listCommands();       // the cursor in the list
std::vector<Command> lineCommands();       // the command line
std::vector<Command> selectionCommands();  // tags and quick search
std::vector<Command> fileCommands();
std::vector<Command> panelCommands();  // which panels show, and what they read
std::vector<Command> lookCommands();   // styles and sort orders
std::vector<Command> goCommands();     // to other directories
std::vector<Command> optionCommands();
std::vector<Command> programCommands();  // help, menus, running a line, the end

// The rows of several parts, in their order.
std::vector<Command> joined(std::initializer_list<std::vector<Command>> parts);
