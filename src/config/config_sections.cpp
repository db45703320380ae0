#include "config/config_sections.h"

#include <cstring>

const char* const sectionTable[ConfigSectionCount] = {
    "[Archiver:ZIP]",      "[Archiver:RAR]",        "[Archiver:LHARC]",      "[Archiver:ARJ]",
    "[Archiver:ACE]",      "[Archiver:HA]",         "[Archiver:GZIP]",       "[Archiver:TAR]",
    "[Associations]",      "[Viewer Associations]", "[Editor Associations]", "[Colours]",
    "[Directory Colours]", "[Environment]",         "[General Options]"};

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
