#include "editor/text/file_replacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <iterator>
#include <limits>

#include "editor/text/edit_directory.h"
#include "foundation/file_mode_mask.h"
#include "foundation/not_offered.h"
#include "foundation/place.h"
#include "foundation/status.h"

namespace {

constexpr mode_t NewFileMode = 0660;
constexpr int64_t NoLimit = std::numeric_limits<int64_t>::max();

// A directory takes no new file, or not under this name: it is somebody else's, something is
// mounted there, or the system has its reasons.
bool isRefusal(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EXDEV ||
         error == ETXTBSY || isNotOffered(error);
}

// The mode may just have been changed for us, and with it a time.
bool isStillSeen(const FileStamp& now, const ReplacedFile& target) {
  if (now.id != target.seen.id) return false;
  return !target.tellsSize || isUnchanged(now, target.seen);
}

}  // namespace

int FileReplacement::begin() {
  if (const int error = findWrittenPlace(bytePath(target_.path), Links::Follow, place_)) {
    return error;
  }
  if (target_.seen.exists) {
    if (const int error = checkTarget()) return error;
  }
  return createPrivate();
}

int FileReplacement::checkTarget() {
  struct stat info;
  const int directory = place_.directory.get();
  const char* name = place_.name.c_str();
  if (System::statAt(directory, name, &info, AT_SYMLINK_NOFOLLOW) < 0) {
    return errno == ENOENT ? Status::ChangedMeanwhile : errno;
  }
  if (target_.tellsSize && FileStamp::of(info) != target_.seen) return Status::ChangedMeanwhile;
  mayTakeName_ = target_.tellsSize && info.st_nlink == 1 && idOf(info) == target_.known;
  // Another file could take the name of a read-only one, which must not happen unasked.
  if (target_.readOnly == ReadOnlyFile::Override) return 0;
  return System::accessAt(directory, name, W_OK) == 0 ? 0 : errno;
}

int FileReplacement::createPrivate() {
  int error = 0;
  if (target_.tellsSize) error = file_.create(target_.path, target_.seen);
  if (!target_.tellsSize || (target_.seen.exists && isRefusal(error))) {
    // What the file's own directory says counts where there is no other.
    const int elsewhere = createInEditDirectory();
    if (elsewhere == 0 || error == 0) error = elsewhere;
  }
  struct stat info;
  if (error == 0 && System::fstat(file_.descriptor(), &info) < 0) error = errno;
  if (error == 0 && witness_ != nullptr) {
    witness_->onPrivateFile(file_.temporaryPath(), idOf(info));
  }
  return error;
}

int FileReplacement::createInEditDirectory() {
  mayTakeName_ = false;
  const int error = makeEditDirectory();
  return error ? error : file_.create(editDirectory() + L"text");
}

int FileReplacement::write(std::string_view bytes) {
  size_ += static_cast<int64_t>(bytes.size());
  return file_.write(bytes.data(), bytes.size());
}

int FileReplacement::finish() {
  int error = 0;
  if (mayTakeName_) {
    error = file_.dressExactly(NewFileMode & ~fileModeMask());
    if (error == Status::NotOffered) {
      mayTakeName_ = false;
      error = 0;
    }
  }
  if (error == 0) error = file_.flush();
  if (error == 0 && witness_ != nullptr) witness_->onWholeText(file_.made());
  if (error == 0 && mayTakeName_) error = takeName();
  if (error == 0 && !mayTakeName_) error = overwrite();
  discard();
  return error;
}

void FileReplacement::discard() {
  if (!wholeText_.empty() || file_.temporaryPath().empty()) return;
  file_.discard();
  if (witness_ != nullptr && !stamp_.exists) witness_->onDiscarded();
}

int FileReplacement::takeName() {
  const int error = file_.takeName();
  stamp_ = file_.stamp();
  if (stamp_.exists || !target_.seen.exists || !isRefusal(error)) return error;
  mayTakeName_ = false;
  return 0;
}

int FileReplacement::overwrite() {
  const Descriptor from(System::openAt(file_.place().directory.get(),
                                       byteName(file_.temporaryPath().c_str()),
                                       O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  if (!from.valid()) return errno;
  Descriptor fd;
  if (const int error = openTarget(fd)) return error;
  // The disk may be full: better known before the old content goes.
  if (target_.tellsSize && size_ > 0 && System::reserve(fd.get(), size_) < 0 &&
      !isNotOffered(errno)) {
    return errno;
  }
  wholeText_ = file_.temporaryPath();
  int error = fill(fd.get(), from.get());
  struct stat info;
  stamp_ = System::fstat(fd.get(), &info) == 0 ? FileStamp::of(info) : target_.seen;
  const int closed = fd.close();
  const int relocked = unlock_.relock();
  if (error == 0) error = closed != 0 ? closed : relocked;
  // Closing, and the mode, may have changed the times.
  const int looked =
      System::statAt(place_.directory.get(), place_.name.c_str(), &info, AT_SYMLINK_NOFOLLOW);
  if (looked == 0) stamp_ = FileStamp::of(info);
  if (error == 0) {
    wholeText_.clear();
  } else {
    file_.keep();
  }
  return error;
}

int FileReplacement::openTarget(Descriptor& fd) {
  constexpr int flags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const auto open = [&] {
    fd = Descriptor(System::openAt(place_.directory.get(), place_.name.c_str(), flags));
    return fd.valid() ? 0 : errno;
  };
  int error = open();
  if (error == EACCES && target_.readOnly == ReadOnlyFile::Override) {
    std::string path = place_.directoryPath;
    replaceTail(path, path.size(), place_.name.c_str());
    error = unlock_.unlock(decodeFileName(path.c_str()));
    clearingReadOnlyFailed_ = error != 0;
    if (error == 0) error = open();
  }
  struct stat info;
  if (error == 0 && System::fstat(fd.get(), &info) < 0) error = errno;
  if (error != 0) return error;
  return isStillSeen(FileStamp::of(info), target_) ? 0 : Status::ChangedMeanwhile;
}

// Half the file is overwritten: what can't be shown mustn't end that.
void FileReplacement::tellOverwriting(int64_t done) {
  if (!overwriting_) return;
  try {
    overwriting_(done, size_);
  } catch (const std::exception&) {
    overwriting_ = {};
  }
}

int FileReplacement::fill(int fd, int from) {
  int64_t done = 0;
  const int copied = readParts(from, NoLimit, [&](std::string_view part) {
    done += std::ssize(part);
    while (!part.empty()) {
      const ssize_t count = System::write(fd, part.data(), part.size());
      if (count <= 0) return count < 0 ? errno : EIO;
      part.remove_prefix(static_cast<size_t>(count));
    }
    tellOverwriting(done);
    return 0;
  });
  if (copied != 0) return copied;
  if (target_.tellsSize && System::truncate(fd, size_) < 0) return errno;
  return System::sync(fd) == 0 || isNotOffered(errno) ? 0 : errno;
}
