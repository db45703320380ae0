#include "config/config_reader.h"

#include <cerrno>

#include "config/archiver_keys.h"
#include "config/config_table.h"
#include "config/configured_variables.h"
#include "foundation/bounded_lines.h"
#include "foundation/data_paths.h"
#include "foundation/fold.h"
#include "foundation/path_info.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"
#include "language/association_set.h"
#include "options/colours.h"
#include "ui/alert.h"

namespace {

constexpr char ArchiverPrefix[] = "[Archiver";
constexpr size_t LongestFile = size_t{64} << 20;
constexpr size_t LongestMessage = 79;  // bytes

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

void emptyLists() {
  AssociationSets& sets = associationSets();
  for (AssociationSet* set : {&sets.associations, &sets.viewers, &sets.editors, &sets.fileColours,
                              &sets.directoryColours}) {
    set->clear();
  }
  configuredVariables().clear();
  archiverKeys().setDefaults();
}

// Without half a character at its end.
std::string cutMessage(std::string text) {
  if (text.size() <= LongestMessage) return text;
  size_t end = LongestMessage;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  text.resize(end);
  return text;
}

}  // namespace

void ConfigReader::parseConfigLine(const std::string& line) {
  ++line_;
  const Estring text = trim(Estring(line.c_str()));
  if (line.find('\0') != std::string::npos) tookAll_ = false;
  if (text.empty() || takeHeader(text.data(), section_)) return;
  const char* delimiter = findDelimiter(text.data(), section_);
  if (delimiter == nullptr || !takePair(text, delimiter)) tookAll_ = false;
}

bool ConfigReader::takePair(const Estring& text, const char* delimiter) {
  const Estring key = trim(left(text, static_cast<int>(delimiter - text.data())));
  const Estring value = trim(Estring(delimiter + 1));
  if (*delimiter == ':') {
    // The header of an archiver that this program doesn't know.
    if (beginsWithWord(text.data(), ArchiverPrefix)) return false;
    takeAssociation(key, value);
    return true;
  }
  if (section_ < ConfigSection::Associations) {
    return archiverKeys().set(static_cast<Archiver>(section_), key.data(), value.data());
  }
  if (section_ == ConfigSection::Environment) return configuredVariables().add(key, value);
  return takeOption(key, value);
}

void ConfigReader::takeAssociation(const Estring& pattern, const Estring& command) {
  setOf(section_).addPair(decodeFileName(pattern.data()), decodeFileName(command.data()));
}

bool ConfigReader::takeOption(const Estring& key, const Estring& value) {
  const ConfigKeyword* keyword = findConfigKeyword(key.data());
  const int shortcut = shortcutOfKey(key.data());
  const bool isKnown = keyword != nullptr || shortcut >= 0;
  if (scope_ == ConfigScope::ListsOnly) return isKnown;
  if (keyword != nullptr) setOption(*keyword, value.data());
  if (shortcut >= 0) GlobalOptions::directoryShortcuts[shortcut] = decodeFileName(value.data());
  if (!isKnown) tellBadDirective(key);
  return isKnown;
}

void ConfigReader::tellBadDirective(const Estring& key) {
  if (!tells_) return;
  const std::string text =
      "Bad directive (" + std::string(key.data()) + ") in td.ini, line " + std::to_string(line_);
  tells_ = teller_(cutMessage(text));
}

bool tellInBox(const std::string& text) {
  return alert(text.c_str(), L"", AlertButtons::Ok, AlertColour::Error) == Answer::Yes;
}

ConfigFile fetchConfiguration() {
  ConfigFile file;
  file.path = dataFilePath(DataFile::Configuration);
  file.error = file.path.empty() ? ENOENT
                                 : readRegularFile(file.path, file.content, LongestFile,
                                                   Links::Follow, &file.stamp);
  return file;
}

bool takeConfiguration(const std::string& content, ConfigScope scope, const ConfigTeller& teller) {
  emptyLists();
  ConfigReader reader(scope, teller);
  BoundedLines lines(content);
  for (std::string line; lines.next(line);) {
    if (lines.wasCut()) reader.lineWasCut();
    reader.parseConfigLine(line);
  }
  return reader.tookAll();
}

void tellConfigurationError(const ConfigFile& file, int error) {
  alert(fromUtf8(errorTextShort(error).data()), file.path, AlertButtons::Ok, AlertColour::Error);
}

void loadConfiguration(ConfigScope scope) {
  const ConfigFile file = fetchConfiguration();
  if (scope == ConfigScope::Everything) {
    GlobalOptions::setDefaultOptions();
    defaultColours();
  }
  if (file.error != 0 && file.error != ENOENT) tellConfigurationError(file, file.error);
  if (file.error == 0 || scope == ConfigScope::Everything) takeConfiguration(file.content, scope);
  if (scope == ConfigScope::Everything) GlobalOptions::correctNumbers();
}
