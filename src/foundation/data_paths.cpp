#include "foundation/data_paths.h"

#include <cstdlib>

#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/utf8.h"

namespace {

constexpr wchar_t SharedDirectory[] = L"/usr/share/tandemdeck/";
constexpr wchar_t DocumentationDirectory[] = L"/usr/share/doc/tandemdeck/";
constexpr wchar_t UserDirectory[] = L".tdx/";
constexpr wchar_t RootDirectory[] = L"/";
constexpr char SharedVariable[] = "TD_SHARE";
constexpr char HomeVariable[] = "HOME";

Westring ownPath;
Westring configurationPath;

// The file's name up to its last dot, with a dot at its end.
Westring baseName(const Westring& path) {
  const Westring name = lastComponent(path);
  const int dot = name.rfind(L'.');
  return dot < 0 ? name + L"." : left(name, dot + 1);
}

Westring activeBaseName() {
  return baseName(configurationPath.empty() ? ownPath : configurationPath);
}

Westring userDirectory() {
  if (!configurationPath.empty()) return addSlash(parentOf(configurationPath));
  return addSlash(homeDirectory()) + UserDirectory;
}

}  // namespace

void setProgramPath(const Westring& absolutePath) {
  ownPath = absolutePath;
}

const Westring& programPath() {
  return ownPath;
}

void setConfigurationFile(const Westring& absolutePath) {
  configurationPath = absolutePath;
}

Westring dataFilePath(DataFile kind, DataPlace place) {
  const Westring base = activeBaseName();
  switch (kind) {
    case DataFile::Help:
      return sharedDirectory() + base + L"tdh";
    case DataFile::Manual:
      return Westring(DocumentationDirectory) + L"manual/" + base + L"html";
    case DataFile::UserMenu:
      return userDirectory() + base + L"mnu";
    case DataFile::Configuration:
      return userDirectory() + base + L"ini";
    case DataFile::History:
      return userDirectory() + base + L"hst";
    case DataFile::Log:
      return userDirectory() + base + L"log";
    case DataFile::SyntaxDefinitions: {
      const Westring directory = place == DataPlace::Shared ? sharedDirectory() : userDirectory();
      return directory + dropRight(base, 1) + L"syntax.ini";
    }
  }
  return Westring();
}

Westring homeDirectory() {
  const char* home = getenv(HomeVariable);
  if (home && *home) return decodeFileName(home);
  const Westring stored = homeOfUser();
  return stored.empty() ? Westring(RootDirectory) : stored;
}

Westring sharedDirectory() {
  const char* shared = getenv(SharedVariable);
  return shared && *shared ? addSlash(decodeFileName(shared)) : Westring(SharedDirectory);
}
