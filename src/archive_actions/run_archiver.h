#pragma once

#include <vector>

#include "archive_actions/archive_tool.h"
#include "panels/model/panel.h"

// Runs the tool over all operands in the working directory, its output shown: with one list file
// where the tool takes one, else in as many runs as the command lines need. Nothing runs after a
// failure. 0, or the exit code that stopped it, negative when the user made an end of it. A tool
// that couldn't be run at all is told. Application thread.
int runArchiver(const ArchiveTool& tool, const Westring& archive,
                const std::vector<ToolOperand>& operands, Panel& panel);
