#include "config/config_line.h"

#include <cstring>
#include <string>

#include "foundation/fold.h"
#include "foundation/utf8.h"
#include "language/association_set.h"

const char* const sectionTable[ConfigSectionCount] = {
    "[Archiver:ZIP]",      "[Archiver:RAR]",        "[Archiver:LHARC]",      "[Archiver:ARJ]",
    "[Archiver:ACE]",      "[Archiver:HA]",         "[Archiver:GZIP]",       "[Archiver:TAR]",
    "[Associations]",      "[Viewer Associations]", "[Editor Associations]", "[Colours]",
    "[Directory Colours]", "[Environment]",         "[General Options]"};

namespace {

constexpr char ArchiverPrefix[] = "[Archiver";

bool takeHeader(const char* line, ConfigSection& section) {
  if (*line != '[') return false;
  for (int i = 0; i < ConfigSectionCount; ++i) {
    if (strcmp(line, sectionTable[i]) != 0) continue;
    section = static_cast<ConfigSection>(i);
    return true;
  }
  return false;
}

const char* findDelimiter(const char* line, ConfigSection section) {
  const char* delimiters = ":";
  if (section == ConfigSection::GeneralOptions) {
    delimiters = "=:";
  } else if (section < ConfigSection::Associations || section == ConfigSection::Environment) {
    delimiters = "=";
  }
  return strpbrk(line, delimiters);
}

// The old form of an association stands among the general options.
AssociationSet& setOf(ConfigSection section) {
  switch (section) {
    case ConfigSection::ViewerAssociations:
      return associationSets().viewers;
    case ConfigSection::EditorAssociations:
      return associationSets().editors;
    case ConfigSection::Colours:
      return associationSets().fileColours;
    case ConfigSection::DirectoryColours:
      return associationSets().directoryColours;
    default:
      return associationSets().associations;
  }
}

}  // namespace

ConfigLine parseConfigLine(const char* line, ConfigSection& section) {
  const Estring text = trim(Estring(line));
  if (takeHeader(text.data(), section)) return ConfigLine::Taken;
  const char* delimiter = findDelimiter(text.data(), section);
  if (delimiter == nullptr) return ConfigLine::Taken;
  if (*delimiter == '=') return ConfigLine::KeyAndValue;
  // The header of an archiver that this program doesn't know.
  if (beginsWithWord(text.data(), ArchiverPrefix)) return ConfigLine::Taken;
  const Estring pattern = trim(left(text, static_cast<int>(delimiter - text.data())));
  const Estring command = trim(Estring(delimiter + 1));
  setOf(section).addPair(decodeFileName(pattern.data()), decodeFileName(command.data()));
  return ConfigLine::Taken;
}
