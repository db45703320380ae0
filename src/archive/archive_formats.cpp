#include "archive/archive_formats.h"

#include <iterator>

#include "archive/archive_readers.h"

namespace {

struct Format {
  ArchiveType type;
  bool (*read)(ArchiveReading& reading);
};

// In the order in which they try.
constexpr Format Formats[] = {
    {ArchiveType::Zip, readZip},   {ArchiveType::Rar, readRar}, {ArchiveType::Lharc, readLha},
    {ArchiveType::Arj, readArj},   {ArchiveType::Ace, readAce}, {ArchiveType::Ha, readHa},
    {ArchiveType::Gzip, readGzip}, {ArchiveType::Tar, readTar},
};

}  // namespace

const wchar_t* archiveTypeName(ArchiveType type) {
  static constexpr const wchar_t* Names[] = {L"ZIP", L"RAR", L"LHARC", L"ARJ",
                                             L"ACE", L"HA",  L"GZIP",  L"TAR"};
  static_assert(std::size(Names) == std::size(Formats));
  return Names[static_cast<size_t>(type)];
}

Recognised readArchive(ArchiveReading& reading, ArchiveRecords& records, ArchiveType& type) {
  for (const Format& format : Formats) {
    reading.startAgain();
    const bool read = format.read(reading);
    if (reading.stopped()) return Recognised::Stopped;
    if (!read) continue;
    type = format.type;
    records.sort();
    return Recognised::Yes;
  }
  reading.startAgain();
  return Recognised::No;
}
