#pragma once

#include "fileops/partial_file.h"

// Puts what `make` makes (0 or errno) in the place of an existing file that can't be replaced in
// one step. The old file stands aside under a temporary name meanwhile, and comes back when `make`
// fails.
template <class Make>
int replaceBySteps(const Place& target, Make make) {
  std::string aside;
  const int error = makeBeside(target, aside, [&](const char* name) {
    const int moved =
        System::renameAtNoReplace(target.directory, target.name, target.directory, name);
    return moved == 0 ? 0 : errno;
  });
  if (error) return error;
  if (const int failed = make()) {
    static_cast<void>(
        System::renameAtNoReplace(target.directory, aside.c_str(), target.directory, target.name));
    return failed;
  }
  static_cast<void>(System::unlinkAt(target.directory, aside.c_str(), 0));
  return 0;
}
