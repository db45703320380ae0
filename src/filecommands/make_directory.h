#pragma once

// Asks for a name, makes the directory in that of the panel of `side`, and reads both panels again.
// Application thread.
void makeDirectoryCommand(int side);
