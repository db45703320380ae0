#include "terminal/child_environment.h"

#include "foundation/place.h"
#include "foundation/system.h"
#include "language/environment.h"

namespace {

// What another terminal has said of itself, and what would hold a size that changes.
constexpr const char* OfOtherTerminals[] = {
    "LINES", "COLUMNS", "COLORTERM", "TERM_PROGRAM", "TERM_PROGRAM_VERSION", "VTE_VERSION"};

bool isWorkingDirectory(const std::string& path) {
  struct stat named, present;
  return !path.empty() && path[0] == '/' && System::stat(path.c_str(), &named) == 0 &&
         System::stat(".", &present) == 0 && idOf(named) == idOf(present);
}

}  // namespace

std::vector<std::string> childEnvironment(const Westring& directory) {
  Environment all;
  sessionEnvironment().flatten(all);
  for (const char* name : OfOtherTerminals) all.set(name, nullptr);
  const std::string path = bytePath(directory);
  all.set("PWD", isWorkingDirectory(path) ? path.c_str() : nullptr);
  all.set("TERM", "ansi");
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
