#pragma once

enum class FindList { New, Last };

// File Find for the panel of a side: the dialog with its live list, and what its keys do with what
// was found. `Last` shows the results of the search before, if there are any; they stay until
// another search begins. Application thread.
void fileFind(int side, FindList list);
