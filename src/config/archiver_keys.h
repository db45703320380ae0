#pragma once

#include "foundation/westring.h"

// The command templates of the external archivers.

enum class Archiver : int { Zip, Rar, Lharc, Arj, Ace, Ha, Gzip, Tar };
inline constexpr int ArchiverCount = 8;

// In the order in which they are written.
enum class ArchiverKey : int {
  Compress,
  CompressListfileSwitch,
  Extract,
  ExtractWithoutPath,
  ExtractListfileSwitch,
  Delete,
  CompressDirSpec,
  ExtractDirSpec
};
inline constexpr int ArchiverKeyCount = 8;
extern const char* const archiverKeyNames[ArchiverKeyCount];

// The template of each archiver for each key. Application thread.
class ArchiverKeys {
 public:
  ArchiverKeys() { setDefaults(); }

  void setDefaults();
  // False for a key that there isn't; its case doesn't count. A blank at the end of a default
  // belongs to it, though lines of the file are trimmed.
  bool set(Archiver archiver, const char* key, const char* value);
  const Westring& text(Archiver archiver, ArchiverKey key) const;
  static const char* defaultText(Archiver archiver, ArchiverKey key);

 private:
  Westring texts_[ArchiverCount][ArchiverKeyCount];
};

ArchiverKeys& archiverKeys();  // those of the configuration
