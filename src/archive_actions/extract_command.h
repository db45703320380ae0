#pragma once

#include "fileops/operation.h"
#include "panels/model/panel.h"

// F5 and F6 in a panel that shows an archive: asks where to, lets the archiver write into a private
// directory there, and moves what it wrote into place. After a move what is in place is deleted
// from the archive. Application thread.
void extractFromArchive(Panel& source, TransferKind kind);
