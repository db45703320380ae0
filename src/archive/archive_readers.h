#pragma once

#include "archive/archive_reading.h"

// One reader a format. Each begins at position 0, adds a record for each member and returns whether
// the file is an archive of its format. A list that ends early, at a header that is cut or makes no
// sense, stays as far as it was read.
bool readZip(ArchiveReading& reading);
bool readRar(ArchiveReading& reading);
bool readLha(ArchiveReading& reading);
bool readArj(ArchiveReading& reading);
bool readAce(ArchiveReading& reading);
bool readHa(ArchiveReading& reading);
bool readGzip(ArchiveReading& reading);
bool readTar(ArchiveReading& reading);
