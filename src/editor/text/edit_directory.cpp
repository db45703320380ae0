#include "editor/text/edit_directory.h"

#include <cerrno>

#include "foundation/data_paths.h"
#include "foundation/names.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {
constexpr mode_t PrivateDirectory = 0700;
}

Westring editDirectory() {
  const Westring directory = userDirectory();
  return directory.empty() ? directory : directory + L"edit/";
}

int makeEditDirectory() {
  if (const int error = makeUserDirectory()) return error;
  const Estring path = toUtf8(editDirectory());
  return System::mkdir(path.data(), PrivateDirectory) == 0 || errno == EEXIST ? 0 : errno;
}

bool EditDirectoryFaults::isToBeTold(int error) {
  const int made = makeEditDirectory();
  if (made == ENOENT) return false;
  if (made == 0 && error != ENOTDIR) return true;
  const Westring directory = editDirectory();
  if (sameName(told_, directory)) return false;
  told_ = directory;
  return true;
}

EditDirectoryFaults& editDirectoryFaults() {
  static EditDirectoryFaults faults;
  return faults;
}
