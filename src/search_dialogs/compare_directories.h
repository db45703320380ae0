#pragma once

// Tags files in both panels by what a dialog asks for: dates, sizes, presence, contents. Nothing
// unless both panels show a list of files. Application thread.
void compareDirectories();
