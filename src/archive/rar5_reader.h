#pragma once

#include "archive/archive_reading.h"

// The archives that RAR makes since its fifth version, whose blocks begin at `start`.
bool readRar5(ArchiveReading& reading, uint64_t start);
