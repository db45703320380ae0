#include "editor/text/edit_directory.h"

#include <cerrno>

#include "foundation/data_paths.h"
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
