#pragma once

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "archive/archive_readers.h"

// Whatever bytes a reader gets: its records hold together, and each of them is found where the
// order puts it. The seeds are rows of tests/archive/sample_archives.
inline void readAnyBytes(bool (*read)(ArchiveReading& reading), const uint8_t* data, size_t size) {
  ArchiveBytes bytes(std::string_view(reinterpret_cast<const char*>(data), size));
  ArchiveRecords records;
  ArchiveWatcher watcher;
  ArchiveReading reading(bytes, records, L"name.gz", watcher);
  read(reading);
  records.sort();
  // Each record takes at least a header of a few bytes; a packed file is one record.
  if (records.count() + records.hiddenCount() > size / 2 + 1) abort();
  uint32_t counted = 0;
  const auto& directories = records.directories();
  for (uint32_t place = 0; place < directories.size(); ++place) {
    const ArchiveDirectory& directory = directories[place];
    if (directory.firstRecord != counted || records.placeOf(directory.path) != place) abort();
    counted += directory.recordCount;
    if (records.placeBehind(directory.path, place) <= place) abort();
    if (records.sizeBelow(directory.path) > records.sizeBelow(L"")) abort();
    for (uint32_t i = directory.firstRecord; i < counted; ++i) {
      const ArchiveRecord& record = records.at(i);
      if (record.directory != place || record.name.find(L'/') != std::wstring_view::npos) abort();
      if (record.name == L".." || record.name == L".") abort();
    }
  }
  if (counted != records.count()) abort();
}
