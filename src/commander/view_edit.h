#pragma once

enum class Program { First, Second };

// View and Edit of the file under the cursor: an associated or configured program, or the internal
// one.
void viewCommand(Program program);
void editCommand(Program program);
