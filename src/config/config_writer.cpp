#include "config/config_writer.h"

#include <cerrno>
#include <cwctype>

#include "config/archiver_keys.h"
#include "config/config_reader.h"
#include "config/config_table.h"
#include "config/configured_variables.h"
#include "foundation/data_paths.h"
#include "foundation/safe_file.h"
#include "foundation/status.h"
#include "foundation/utf8.h"
#include "language/association_set.h"
#include "panels/model/panel_pair.h"

namespace {

constexpr char LineEnd[] = "\r\n";

// The text of the file in the making.
class ConfigText {
 public:
  void header(ConfigSection section) { text_ += std::string(headerOf(section)) + LineEnd; }
  void blankLine() { text_ += LineEnd; }
  void pair(const Estring& key, const char* delimiter, const Estring& value) {
    if (key.find('\n') >= 0 || value.find('\n') >= 0) return;
    text_ += std::string(key.data()) + delimiter + value.data() + LineEnd;
  }
  std::string take() { return std::move(text_); }

 private:
  std::string text_;
};

void addAssociations(ConfigText& text) {
  const AssociationSets& sets = associationSets();
  const struct {
    ConfigSection section;
    const AssociationSet& set;
  } rows[] = {{ConfigSection::Associations, sets.associations},
              {ConfigSection::ViewerAssociations, sets.viewers},
              {ConfigSection::EditorAssociations, sets.editors},
              {ConfigSection::Colours, sets.fileColours},
              {ConfigSection::DirectoryColours, sets.directoryColours}};
  for (const auto& row : rows) {
    text.header(row.section);
    for (int i = 0; i < row.set.count(); ++i) {
      const Association* item = row.set.peek(i);
      text.pair(toUtf8(item->pattern), ": ", toUtf8(item->command));
    }
    text.blankLine();
  }
}

void addVariables(ConfigText& text) {
  text.header(ConfigSection::Environment);
  for (const ConfiguredVariable& pair : configuredVariables().all()) {
    text.pair(pair.name, "=", pair.text);
  }
  text.blankLine();
}

void addArchivers(ConfigText& text) {
  for (int archiver = 0; archiver < ArchiverCount; ++archiver) {
    text.header(static_cast<ConfigSection>(archiver));
    for (int key = 0; key < ArchiverKeyCount; ++key) {
      const Westring& value =
          archiverKeys().text(static_cast<Archiver>(archiver), static_cast<ArchiverKey>(key));
      text.pair(archiverKeyNames[key], "=", toUtf8(value));
    }
    text.blankLine();
  }
}

void addOptions(ConfigText& text) {
  text.header(ConfigSection::GeneralOptions);
  for (const ConfigKeyword& keyword : configKeywordTable) {
    if (isWritten(keyword)) text.pair(keyword.key, "=", optionText(keyword));
  }
  text.blankLine();
}

// A blank at the end of a line is lost, so a slash protects that of a directory's name.
Westring shortcutText(const Westring& path) {
  const int length = path.length();
  const bool isBlankAtEnd = length > 0 && iswspace(static_cast<wint_t>(path[length - 1])) != 0;
  return isBlankAtEnd ? path + L"/" : path;
}

void addShortcuts(ConfigText& text) {
  for (int digit = 0; digit < GlobalOptions::ShortcutCount; ++digit) {
    const Westring path = shortcutText(GlobalOptions::directoryShortcuts[digit]);
    Estring key;
    key.format("d%d", digit);
    if (!path.empty()) text.pair(key, "=", toUtf8(path));
  }
}

void takeFromPanels() {
  using namespace GlobalOptions;
  const Panel& left = panelPair().side[0];
  const Panel& right = panelPair().side[1];
  LeftShowing = left.showing;
  RightShowing = right.showing;
  LeftStyle = static_cast<int>(left.style);
  RightStyle = static_cast<int>(right.style);
  LeftType = static_cast<int>(left.type);
  RightType = static_cast<int>(right.type);
  LeftFilter = left.filter;
  RightFilter = right.filter;
}

// Writes `content` in the place of `target`. 0 or an error.
int replaceFile(SafeFile& target, const std::string& content) {
  const int error = target.write(content.data(), content.size());
  return error ? error : target.commit();
}

// What the program can't say in a new file stays in the old one's copy, once in a run.
int keepOldFile(const ConfigFile& old, const Westring& path) {
  static bool isKept = false;
  if (isKept) return 0;
  // An older one would pass its mode on.
  const Estring name = toUtf8(path);
  struct stat info;
  const bool isThere = System::lstat(name.data(), &info) == 0 && S_ISREG(info.st_mode);
  if (isThere && System::chmod(name.data(), SafeFile::PrivateMode) < 0) return errno;
  SafeFile copy;
  int error = copy.create(path, Links::Refuse);
  if (error == 0) error = replaceFile(copy, old.content);
  isKept = error == 0;
  return error;
}

int writeOver(ConfigFile& old) {
  if (const int error = makeUserDirectory()) return error;
  const bool tookAll = old.error != 0 || takeConfiguration(old.content, ConfigScope::ListsOnly);
  if (!tookAll) {
    const Westring kept = old.path + L"~";
    if (const int error = keepOldFile(old, kept)) {
      old.path = kept;
      return error;
    }
  }
  SafeFile file;
  const int error = file.create(old.path, old.stamp);
  return error ? error : replaceFile(file, configurationText());
}

}  // namespace

std::string configurationText() {
  ConfigText text;
  addAssociations(text);
  addVariables(text);
  addArchivers(text);
  addOptions(text);
  addShortcuts(text);
  return text.take();
}

int writeConfiguration(ConfigFile& old) {
  constexpr int attempts = 3;  // each begins anew when another program has just saved
  using GlobalOptions::Lines;
  if (Lines != 0) Lines = panelPair().screenLines;
  takeFromPanels();
  int error = 0;
  for (int i = 0; i < attempts; ++i) {
    old = fetchConfiguration();
    if (old.path.empty()) return 0;  // said at the start
    error = old.error == ENOENT ? 0 : old.error;
    if (error == 0) error = writeOver(old);
    if (error != Status::ChangedMeanwhile) return error;
  }
  return EBUSY;
}

void saveConfiguration() {
  ConfigFile file;
  if (const int error = writeConfiguration(file)) tellConfigurationError(file, error);
}
