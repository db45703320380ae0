#pragma once

#include <cstdint>

#include "foundation/westring.h"

// What is to be told of an archive, beside its path. Who opened it shows it.
enum class ArchiveNote : uint8_t {
  NoCentralDirectory,
  ZipListUnreadable,
  ZipNonsenseHeader,
  ZipBadDirectory,
  RarHeader,
  Damaged,
  HeadersEncrypted,
  TooManyNames,  // what is listed isn't all
  NamesHidden,   // with their count
};

struct ArchiveMessage {
  ArchiveNote note;
  uint64_t count = 0;  // of NamesHidden

  Westring text() const;
};
