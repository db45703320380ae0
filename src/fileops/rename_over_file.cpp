#include "fileops/rename_over_file.h"

#include "fileops/notices.h"
#include "foundation/not_offered.h"
#include "foundation/partial_file.h"

namespace {

int renamePlace(const Place& from, const Place& to) {
  const int result = System::renameAtNoReplace(from.directory, from.name, to.directory, to.name);
  return result == 0 ? 0 : errno;
}

int exchange(const Place& a, const Place& b) {
  return System::renameExchange(a.directory, a.name, b.directory, b.name) == 0 ? 0 : errno;
}

int replaceInSteps(RunningOperation& operation, const Place& directory, const Place& file) {
  std::string name;
  Place away = file;
  int error = makeBeside(file, name, [&](const char* candidate) {
    away.name = candidate;
    return renamePlace(file, away);
  });
  if (error) return error;
  error = renamePlace(directory, file);
  const bool settled =
      error ? renamePlace(away, file) == 0 : System::unlinkAt(away.directory, away.name, 0) == 0;
  if (!settled) tellStandsAside(operation, pathBeside(file, name));
  return error;
}

}  // namespace

int renameDirectoryOverFile(RunningOperation& operation, const Place& directory,
                            const Place& file) {
  int error = exchange(directory, file);
  if (isNotOffered(error)) return replaceInSteps(operation, directory, file);
  if (error) return error;
  if (System::unlinkAt(directory.directory, directory.name, 0) == 0) return 0;
  error = errno;
  static_cast<void>(exchange(directory, file));
  return error;
}
