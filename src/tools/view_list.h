#pragma once

#include "panels/model/panel.h"

// Views the file under the panel's cursor and, as the user goes on from there, the files before and
// behind it; directories and what is gone are passed over. A member of an archive is viewed as a
// temporary copy. Starts the editor where the viewer asks for it. Afterwards the cursor stands on
// the last file viewed, and the entries of all of them tell what the files are now. The caller
// draws what lay beneath the viewer anew. Application thread.
void viewList(Panel& panel);
// The same for one file by its path.
void viewOne(const Westring& path);
