#include "foundation/data_paths.h"

#include <cerrno>
#include <cstdlib>

#include "foundation/names.h"
#include "foundation/system.h"
#include "foundation/users.h"
#include "foundation/utf8.h"

namespace {

constexpr wchar_t SharedDirectory[] = L"/usr/share/tandemdeck/";
constexpr wchar_t DocumentationDirectory[] = L"/usr/share/doc/tandemdeck/";
constexpr wchar_t UserDirectory[] = L".tdx/";
constexpr mode_t PrivateDirectory = 0700;
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

// HOME, or what the user data base says; "" when neither tells.
Westring knownHome() {
  const char* home = getenv(HomeVariable);
  return home && *home ? decodeFileName(home) : homeOfUser();
}

}  // namespace

Westring userDirectory() {
  if (!configurationPath.empty()) return addSlash(parentOf(configurationPath));
  return homeDataDirectory();
}

namespace {
Westring userFile(const Westring& name) {
  const Westring directory = userDirectory();
  return directory.empty() ? directory : directory + name;
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
      return userFile(base + L"mnu");
    case DataFile::Configuration:
      return userFile(base + L"ini");
    case DataFile::History:
      return userFile(base + L"hst");
    case DataFile::Log:
      return userFile(base + L"log");
    case DataFile::SyntaxDefinitions: {
      const Westring name = dropRight(base, 1) + L"syntax.ini";
      return place == DataPlace::Shared ? sharedDirectory() + name : userFile(name);
    }
  }
  return Westring();
}

Westring homeDirectory() {
  const Westring home = knownHome();
  return home.empty() ? Westring(RootDirectory) : home;
}

Westring homeDataDirectory() {
  const Westring home = knownHome();
  return home.empty() ? home : addSlash(home) + UserDirectory;
}

int makeUserDirectory() {
  const Westring directory = userDirectory();
  if (directory.empty()) return ENOENT;
  if (System::mkdir(toUtf8(directory).data(), PrivateDirectory) == 0 || errno == EEXIST) return 0;
  return errno;
}

Westring sharedDirectory() {
  const char* shared = getenv(SharedVariable);
  return shared && *shared ? addSlash(decodeFileName(shared)) : Westring(SharedDirectory);
}
