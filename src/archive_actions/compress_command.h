#pragma once

#include "archive/archive_formats.h"
#include "fileops/operation.h"
#include "panels/model/panel.h"

// F5 and F6 beside a panel that shows an archive: asks where to, and puts what is tagged, or the
// entry under the cursor, into that archive. A place outside of it is a plain copy or move.
// Application thread.
void compressIntoOther(Panel& source, TransferKind kind);

// Asks for the name and the type of an archive and makes it of what is tagged, or of the entry
// under the cursor; one that is there is added to. Only in a panel that lists a directory of the
// disk. Application thread.
void compressFiles(Panel& source);

// The name that the archive gets: one without the ending of its type gets it where the tool would
// add it, or the type has no other.
Westring nameOfNewArchive(const Westring& path, ArchiveType type);
