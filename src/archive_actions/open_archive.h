#pragma once

#include "archive/archive_chain.h"

// An ArchiveOpener: reads a file of the disk, shows how many records there are when that takes
// long, ends by Break or Esc in silence, and shows what there is to tell of the archive. What lies
// in another archive isn't on the disk and is none. Application thread.
std::unique_ptr<OpenArchive> openArchiveShown(const Westring& file, OpenArchive* parent);
