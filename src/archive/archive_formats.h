#pragma once

#include <cstdint>

#include "archive/archive_reading.h"

// The numbers are those of the table of archivers.
enum class ArchiveType : uint8_t { Zip, Rar, Lharc, Arj, Ace, Ha, Gzip, Tar };
const wchar_t* archiveTypeName(ArchiveType type);

enum class Recognised : uint8_t { No, Yes, Stopped };
// Lets the readers try in their order; the first that succeeds fills the records, which are sorted
// then. What a reader that failed had to tell stays among the messages.
Recognised readArchive(ArchiveReading& reading, ArchiveRecords& records, ArchiveType& type);
