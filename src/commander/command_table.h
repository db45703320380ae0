#pragma once

#include <span>

#include "commander/command.h"

// Every row, room by room. Built once; application thread.
const std::vector<Command>& commandTable();
// The rows of a code in the order in which they are asked; empty for a code of no command.
std::span<const Command* const> commandsOf(Key::Code code);
// Whether all of the conditions are met.
bool holds(When conditions, const MainLoop& loop);
