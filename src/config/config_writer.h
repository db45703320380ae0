#pragma once

#include <string>

// The configuration as its file says it, CR LF after each line; a value with a line end in it has
// no form there and is left out.
std::string configurationText();

// Reads the lists of the file again, so that what the user changed there by hand stays, and writes
// the lists and the options anew, the sides' looks as the panels have them. The old file stays
// whole until the new one is; if the old one can't be read nothing is written. The first time that
// something in the old file has no place in the new one, it is kept beside it with a "~" at the end
// of its name. 0 or an error, with the path that it is about in `old`. Application thread.
struct ConfigFile;
int writeConfiguration(ConfigFile& old);

// The same, failures told in a message box.
void saveConfiguration();
