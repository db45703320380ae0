#include "terminal/child_environment.h"

#include "foundation/data_paths.h"
#include "foundation/place.h"
#include "foundation/system.h"
#include "language/environment.h"

namespace {

bool isWorkingDirectory(const std::string& path) {
  struct stat named, present;
  return !path.empty() && path[0] == '/' && System::stat(path.c_str(), &named) == 0 &&
         System::stat(".", &present) == 0 && idOf(named) == idOf(present);
}

// Shells ask for bracketed pastes by a sequence that our terminal would show. The file that
// INPUTRC names, with which they don't, takes in the one that they would have read themselves. No
// value where it isn't installed.
std::string lineEditorSettings() {
  const std::string users = bytePath(homeDirectory()) + "/.inputrc";
  struct stat info;
  const bool usersOwn = System::stat(users.c_str(), &info) == 0;
  const std::string ours = bytePath(sharedDirectory()) + (usersOwn ? "inputrc" : "inputrc.system");
  return System::stat(ours.c_str(), &info) == 0 ? ours : "";
}

// Where programs find what our terminal is, ahead of the system's idea of its type, which has
// hardly any keys and sequences that would show as text. "" where that isn't installed.
std::string terminalDescriptions(const char* others) {
  const std::string ours = bytePath(sharedDirectory()) + "terminfo";
  struct stat info;
  if (System::stat((ours + "/a/ansi").c_str(), &info) != 0) return "";
  // An empty place at the end is the system's own.
  return ours + ":" + (others != nullptr ? others : "");
}

}  // namespace

std::vector<std::string> childEnvironment(const Westring& directory) {
  Environment all;
  sessionEnvironment().flatten(all);
  for (const char* name : OfOtherTerminals) all.set(name, nullptr);
  const std::string path = bytePath(directory);
  all.set("PWD", isWorkingDirectory(path) ? path.c_str() : nullptr);
  all.set("TERM", "ansi");
  if (const std::string settings = lineEditorSettings();
      all.get("INPUTRC") == nullptr && !settings.empty()) {
    all.set("INPUTRC", settings.c_str());
  }
  if (const std::string places = terminalDescriptions(all.get("TERMINFO_DIRS")); !places.empty()) {
    all.set("TERMINFO_DIRS", places.c_str());
  }
  all.set("TERM_URLS", "no");           // a link's address would show beside its text
  all.set("NCURSES_NO_UTF8_ACS", "1");  // lines come as characters, not as an alternate set
  return all.block();
}

std::string valueIn(const std::vector<std::string>& environment, const std::string& name) {
  const std::string start = name + "=";
  for (const std::string& pair : environment) {
    if (pair.starts_with(start)) return pair.substr(start.size());
  }
  return "";
}

ShellCommand shellCommandOf(const Westring& text, const Westring& directory) {
  ShellCommand command;
  command.environment = childEnvironment(directory);
  command.shell = valueIn(command.environment, "SHELL");
  command.text = bytePath(text);
  return command;
}
