#include "archive_actions/packed_files.h"

#include "archive_actions/written_files.h"
#include "foundation/directory_walk.h"
#include "foundation/names.h"
#include "foundation/system.h"

namespace {

bool isLater(const struct timespec& a, const struct timespec& b) {
  return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
}

}  // namespace

struct timespec fileTimeNow() {
  struct timespec now {};
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

// Goes over a directory and asks for each thing in it.
class PackedFiles::Walk : public DirectoryVisitor {
 public:
  Walk(const PackedFiles& files, const Place& top, const Westring& innerPath, Task task)
      : files_(files),
        topLength_(std::string(top.path).size()),
        innerPath_(innerPath),
        task_(task) {}

  bool isWhole() const { return whole_; }

 private:
  // The path of a place below the top, inside the archive.
  Westring insideOf(const Place& place) const {
    return innerPath_ + decodeFileName(place.path + topLength_);
  }
  WalkStep stay() {
    whole_ = false;
    return task_ == Task::Look ? WalkStep::Stop : WalkStep::Skip;
  }

  WalkStep enter(const WalkedDirectory& directory) override {
    return files_.holdsDirectory(insideOf(directory.place)) ? WalkStep::GoOn : stay();
  }
  WalkStep member(const WalkedMember& member) override {
    if (member.isDirectory) return WalkStep::GoOn;
    if (!files_.holdsOne(member.place, insideOf(member.place))) return stay();
    if (task_ == Task::Look) return WalkStep::GoOn;
    return System::unlinkAt(member.place.directory, member.place.name, 0) == 0 ? WalkStep::GoOn
                                                                               : stay();
  }
  WalkStep leave(const WalkedDirectory& directory) override {
    if (task_ == Task::Look) return WalkStep::GoOn;
    const Place& place = directory.place;
    if (System::unlinkAt(place.directory, place.name, AT_REMOVEDIR) != 0) whole_ = false;
    return WalkStep::GoOn;
  }
  WalkRetry failed(const WalkError&) override {
    whole_ = false;
    return task_ == Task::Look ? WalkRetry::Stop : WalkRetry::Skip;
  }

  const PackedFiles& files_;
  const size_t topLength_;
  const Westring innerPath_;
  const Task task_;
  bool whole_ = true;
};

bool PackedFiles::holdsDirectory(const Westring& innerPath) const {
  const std::wstring_view path(innerPath.data(), static_cast<size_t>(innerPath.length()));
  const auto& directories = archive_.records().directories();
  const uint32_t place = archive_.records().placeOf(path);
  return place < directories.size() && isWithin(directories[place].path, path);
}

// A backslash in a name is listed as a slash; then the stored name must be this one.
const ArchiveRecord* PackedFiles::recordOf(const Westring& innerPath) const {
  const std::string path = bytePath(innerPath);
  const std::string listed = withSlashes(path);
  const ArchiveRecord* const record = archive_.fileOf(decodeFileName(listed.c_str()));
  return listed == path || (record && record->stored == path) ? record : nullptr;
}

// A link is either there as one, or as the file or the directory that it leads to.
bool PackedFiles::holdsOne(const Place& item, const Westring& innerPath) const {
  struct stat info;
  if (System::statAt(item.directory, item.name, &info, AT_SYMLINK_NOFOLLOW) != 0) return false;
  const ArchiveRecord* const record = recordOf(innerPath);
  if (S_ISLNK(info.st_mode)) return record != nullptr || holdsDirectory(innerPath);
  return S_ISREG(info.st_mode) && record != nullptr &&
         record->size == static_cast<uint64_t>(info.st_size) && !isLater(info.st_ctim, start_);
}

bool PackedFiles::run(const Place& item, const Westring& innerPath, Task task) const {
  struct stat info;
  if (System::statAt(item.directory, item.name, &info, AT_SYMLINK_NOFOLLOW) != 0) return false;
  if (S_ISDIR(info.st_mode)) {
    Walk walk(*this, item, innerPath, task);
    const WalkEnd end = DirectoryWalk(walk, {.mounts = MountPoints::PassWithItem}).run(item);
    return end == WalkEnd::Whole && walk.isWhole();
  }
  if (!holdsOne(item, innerPath)) return false;
  return task == Task::Look || System::unlinkAt(item.directory, item.name, 0) == 0;
}

bool PackedFiles::holds(const Place& item, const Westring& innerPath) const {
  return run(item, innerPath, Task::Look);
}

bool PackedFiles::remove(const Place& item, const Westring& innerPath) const {
  return run(item, innerPath, Task::Look) && run(item, innerPath, Task::Remove);
}
