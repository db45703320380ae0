#pragma once

#include "archive/archive_chain.h"

// An ArchiveOpener: reads a file, shows how many records there are when that takes long, ends by
// Break or Esc in silence, and shows what there is to tell of the archive. One that lies in another
// archive is taken out of it first; archives lie at most 16 deep. Application thread.
ArchiveAttempt openArchiveShown(const Westring& file, OpenArchive* parent);
