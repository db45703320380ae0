#pragma once

// The sections of the configuration file, in the order of their headers.
enum class ConfigSection : int {
  ArchiverZip = 0,  // those of the archivers stand in the order of Archiver
  ArchiverRar,
  ArchiverLharc,
  ArchiverArj,
  ArchiverAce,
  ArchiverHa,
  ArchiverGzip,
  ArchiverTar,
  Associations,
  ViewerAssociations,
  EditorAssociations,
  Colours,
  DirectoryColours,
  Environment,
  GeneralOptions  // in force where the file begins
};

inline constexpr int ConfigSectionCount = 15;
extern const char* const sectionTable[ConfigSectionCount];

inline const char* headerOf(ConfigSection section) {
  return sectionTable[static_cast<int>(section)];
}

// A header as it stands in the table changes `section`; true for one.
bool takeHeader(const char* line, ConfigSection& section);
// Where the key of a line ends; null for a line without a value.
const char* findDelimiter(const char* line, ConfigSection section);
