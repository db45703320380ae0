#pragma once

#include <functional>
#include <string>

#include "config/config_sections.h"
#include "foundation/file_stamp.h"
#include "foundation/westring.h"

// Whether a reading sets the options too, or only the lists: associations, colours of files,
// variables and the templates of the archivers.
enum class ConfigScope { Everything, ListsOnly };

// Tells of a line with a key that isn't known; false when the user has seen enough of them.
using ConfigTeller = std::function<bool(const std::string& text)>;
bool tellInBox(const std::string& text);  // Esc at the message box is enough

// Takes the lines of one reading of the configuration file. Application thread.
class ConfigReader {
 public:
  explicit ConfigReader(ConfigScope scope, ConfigTeller teller = tellInBox)
      : scope_(scope), teller_(std::move(teller)) {}

  void parseConfigLine(const std::string& line);  // without its end
  void lineWasCut() { tookAll_ = false; }
  // False when something in the file wouldn't come back in one that is written anew: a comment, an
  // unknown key or section, the rest of a line.
  bool tookAll() const { return tookAll_; }

 private:
  bool takePair(const Estring& text, const char* delimiter);
  void takeAssociation(const Estring& pattern, const Estring& command);
  bool takeOption(const Estring& key, const Estring& value);
  void tellBadDirective(const Estring& key);

  ConfigScope scope_;
  ConfigTeller teller_;
  ConfigSection section_ = ConfigSection::GeneralOptions;
  int line_ = 0;
  bool tells_ = true;
  bool tookAll_ = true;
};

// What was found in the place of the configuration file.
struct ConfigFile {
  Westring path;
  int error = 0;  // ENOENT: there is none
  std::string content;
  FileStamp stamp;
};

// Reads the whole file, and sets nothing.
ConfigFile fetchConfiguration();
// Empties the lists and takes them from the content; also the options when the scope says so.
// False as of ConfigReader::tookAll.
bool takeConfiguration(const std::string& content, ConfigScope scope,
                       const ConfigTeller& teller = tellInBox);
// The system's text in a message box.
void tellConfigurationError(const ConfigFile& file, int error);

// Sets what the file says. For everything it begins with the defaults, whatever becomes of the
// file; the lists alone stay as they are when the file is not there or can't be read. A file that
// can't be read is told in a message box. What the options mean for the screen is up to the caller.
void loadConfiguration(ConfigScope scope);
