#include "foundation/directory_stack.h"

#include <algorithm>
#include <cerrno>

namespace {

constexpr int DirectoryFlags = O_DIRECTORY | O_CLOEXEC;

int checkId(int fd, FileId wanted) {
  struct stat info;
  if (System::fstat(fd, &info) < 0) return errno;
  return idOf(info) == wanted ? 0 : ESTALE;
}

}  // namespace

int openToWorkIn(int directory, const char* name, Descriptor& result) {
  result = Descriptor(System::openAt(directory, name, O_RDONLY | DirectoryFlags));
  if (!result.valid() && errno == EACCES) {
    result = Descriptor(System::openAt(directory, name, O_PATH | DirectoryFlags));
  }
  return result.valid() ? 0 : errno;
}

void DirectoryStack::push(Descriptor directory, FileId id, const Place& place, WayUp wayUp) {
  if (levels_.empty()) outside_ = place.directory;
  levels_.push_back({std::move(directory), id, place.name, wayUp});
  if (levels_.size() > mostOpen_) levels_[levels_.size() - 1 - mostOpen_].directory.reset();
}

int DirectoryStack::parentFd() const {
  return levels_.size() < 2 ? outside_ : levels_[levels_.size() - 2].directory.get();
}

bool DirectoryStack::holds(FileId id) const {
  return std::any_of(levels_.begin(), levels_.end(),
                     [id](const Level& level) { return level.id == id; });
}

int DirectoryStack::reopenParent() {
  if (levels_.size() < 2) return 0;
  Level& parent = levels_[levels_.size() - 2];
  if (parent.directory.valid()) return 0;
  Descriptor up;
  int error = openByParent(up);
  if (error && levels_.back().wayUp == WayUp::AlsoByNames) {
    error = openByNames(levels_.size() - 2, up);
  }
  if (error == 0) parent.directory = std::move(up);
  return error;
}

int DirectoryStack::openByParent(Descriptor& result) const {
  if (!levels_.back().directory.valid()) return ESTALE;
  if (const int error = openToWorkIn(fd(), "..", result)) return error;
  return checkId(result.get(), levels_[levels_.size() - 2].id);
}

int DirectoryStack::openByNames(size_t index, Descriptor& result) const {
  int directory = outside_;
  Descriptor above;
  for (size_t i = 0; i <= index; ++i) {
    if (const int error = openToWorkIn(directory, levels_[i].name.c_str(), result)) return error;
    if (const int error = checkId(result.get(), levels_[i].id)) return error;
    if (i == index) break;
    above = std::move(result);
    directory = above.get();
  }
  return 0;
}
