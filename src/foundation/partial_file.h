#pragma once

#include <string>

#include "foundation/place.h"
#include "foundation/system.h"

// A target in the making. Unless it was committed it is gone again at the end of the scope, and
// what stood in its place is untouched.
class PartialFile {
 public:
  enum class Replace { No, Yes };

  PartialFile() = default;
  ~PartialFile() { static_cast<void>(discard()); }
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;

  // All: 0 or errno; `mode` before umask.
  // Under its own name, in a directory that carries a temporary name itself. EEXIST when it is
  // taken.
  int createDirectly(const Place& target, mode_t mode);
  // Under a temporary name beside the target, until commit.
  int createBeside(const Place& target, mode_t mode);
  // The existing file itself, emptied by the first write; only a regular file with one name and the
  // identity that was looked at. Nothing is taken back when the copy fails.
  int openInPlace(const Place& target, FileId looked);

  int fd() const { return fd_.get(); }
  bool isInPlace() const { return way_ == Way::InPlace; }
  // Closes it and gives it its name. Replacing flushes first, so that the name never stands for
  // less than the old or the new file. 0 or errno.
  int commit(Replace replace);
  // Removes it unless it was committed. 0, or errno when it stays, as `path` says.
  int discard();
  std::string path() const;  // where it lies, as the user knows it

 private:
  enum class Way { None, Direct, Beside, InPlace };

  Place target_;
  std::string name_;  // that it has now, relative to the target's directory
  Descriptor fd_;
  Way way_ = Way::None;
};

// The path that a name beside `place` has, as the user knows it.
std::string pathBeside(const Place& place, const std::string& name);

// Makes something under a temporary name beside `target`: `make` is called with one name after the
// other until it gives another result than EEXIST. 0 and the name, or errno.
template <class Make>
int makeBeside(const Place& target, std::string& name, Make make);

#include "foundation/safe_file.h"

template <class Make>
int makeBeside(const Place& target, std::string& name, Make make) {
  constexpr unsigned Attempts = 100;
  for (unsigned attempt = 0; attempt < Attempts; ++attempt) {
    name = temporaryNameBeside(target.name, attempt);
    const int error = make(name.c_str());
    if (error != EEXIST) return error;
  }
  return EEXIST;
}
