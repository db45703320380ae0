#pragma once

// The sections of the configuration file, in the order of their headers.
enum class ConfigSection : int {
  ArchiverZip = 0,
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

enum class ConfigLine {
  Taken,       // a header, a pair of an association set, or a line that means nothing
  KeyAndValue  // key and value with '=' between them, for whoever reads the options of the section
};

// Looks at one line of the configuration file, without its line end: a header changes `section`, a
// line with ':' goes into one of associationSets(). Application thread.
ConfigLine parseConfigLine(const char* line, ConfigSection& section);
