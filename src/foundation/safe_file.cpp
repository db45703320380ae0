#include "foundation/safe_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "foundation/kept_attributes.h"
#include "foundation/not_offered.h"
#include "foundation/place.h"
#include "foundation/status.h"

namespace {

constexpr unsigned Attempts = 100;
constexpr off_t PassedOnPiece = off_t{8} << 20;
constexpr off_t MostUnderWay = 4 * PassedOnPiece;
constexpr unsigned Spread = 0x9E3779B9;  // odd: each count gives another number

unsigned startNumber() {
  unsigned number;
  if (getrandom(&number, sizeof number, GRND_NONBLOCK) == sizeof number) return number;
  return static_cast<unsigned>(getpid()) * Spread ^ static_cast<unsigned>(time(nullptr));
}

}  // namespace

std::string temporaryNameBeside(const char* utf8Target, unsigned attempt) {
  static const unsigned start = startNumber();
  static std::atomic<unsigned> counter{0};
  const unsigned number = start + Spread * (counter.fetch_add(1) + attempt);
  char name[16];
  snprintf(name, sizeof name, ".td-%08x", number);
  const char* slash = strrchr(utf8Target, '/');
  return slash ? std::string(utf8Target, slash + 1) + name : name;
}

SafeFile::~SafeFile() {
  discard();
}

int SafeFile::create(const Westring& target, Links links) {
  discard();
  read_.reset();
  if (const int error = findWrittenPlace(bytePath(target), links, place_)) return error;
  if (const int error = lookAtTarget()) return error;
  return createBeside();
}

int SafeFile::create(const Westring& target, const FileStamp& read) {
  if (const int error = create(target)) return error;
  read_ = read;
  const int error = lookAtTarget();
  if (error) discard();
  return error;
}

int SafeFile::lookAtTarget() {
  struct stat info;
  old_.reset();
  if (System::statAt(place_.directory.get(), place_.name.c_str(), &info, AT_SYMLINK_NOFOLLOW) < 0) {
    if (errno != ENOENT) return errno;
  } else {
    if (S_ISDIR(info.st_mode)) return EISDIR;
    if (!S_ISREG(info.st_mode)) return EINVAL;
    old_ = info;
  }
  if (!read_) return 0;
  const FileStamp now = old_ ? FileStamp::of(*old_) : FileStamp();
  return now == *read_ ? 0 : Status::ChangedMeanwhile;
}

int SafeFile::createBeside() {
  constexpr int NewFile = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  for (unsigned attempt = 0; attempt < Attempts; ++attempt) {
    const std::string name = temporaryNameBeside(place_.name.c_str(), attempt);
    fd_ = Descriptor(System::openAt(place_.directory.get(), name.c_str(), NewFile, PrivateMode));
    if (fd_.valid()) {
      size_ = passedOn_ = 0;
      temporary_ = name;
      temporaryPath_ = place_.directoryPath;
      replaceTail(temporaryPath_, temporaryPath_.size(), name.c_str());
      return 0;
    }
    if (errno != EEXIST) return errno;
  }
  return EEXIST;
}

int SafeFile::write(const void* bytes, size_t count) {
  if (!fd_.valid()) return EBADF;
  const auto* at = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t written = System::write(fd_.get(), at, count);
    if (written < 0) return errno;
    if (written == 0) return EIO;
    at += written;
    count -= static_cast<size_t>(written);
    size_ += written;
  }
  return size_ - passedOn_ < PassedOnPiece ? 0 : passOn();
}

// The disk works while the rest is made, and not much is left to flush in the end, when nobody
// looks whether the user wants to stop.
int SafeFile::passOn() {
  const off_t awaited = passedOn_ - MostUnderWay;
  int result = System::writeBack(fd_.get(), passedOn_, size_ - passedOn_, SYNC_FILE_RANGE_WRITE);
  passedOn_ = size_;
  if (result == 0 && awaited > 0) {
    result = System::writeBack(fd_.get(), 0, awaited, SYNC_FILE_RANGE_WAIT_BEFORE);
  }
  return result == 0 || isNotOffered(errno) ? 0 : errno;
}

int SafeFile::dressAs(const struct stat& old) {
  Descriptor from(
      System::openAt(place_.directory.get(), place_.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  struct stat info;
  if (!from.valid() || System::fstat(from.get(), &info) < 0) return errno;
  if (idOf(info) != idOf(old)) from.reset();
  if (const int error = keepOwnership(from.get(), fd_.get(), old)) return error;
  if (System::fstat(fd_.get(), &info) < 0) return errno;
  struct stat kept = old;
  // Where the group couldn't be kept, another one must not get its rights.
  if (info.st_gid != old.st_gid) kept.st_mode &= ~S_IRWXG | (old.st_mode & S_IRWXO) << 3;
  return keepMode(fd_.get(), kept);
}

int SafeFile::dress(mode_t newMode) {
  if (const int error = lookAtTarget()) return error;
  if (old_) return dressAs(*old_);
  if (System::fchmod(fd_.get(), newMode) < 0 && !isAttributeNotOffered(errno)) return errno;
  return 0;
}

// Without it the new file is whole, but the name may lead to the old one after a power failure.
int SafeFile::syncDirectory() {
  const Descriptor directory(
      System::openAt(place_.directory.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.valid()) return errno == EACCES ? 0 : errno;
  return System::sync(directory.get()) == 0 || isNotOffered(errno) ? 0 : errno;
}

int SafeFile::dressExactly(mode_t newMode) {
  if (const int error = dress(newMode)) return error;
  if (!old_) return 0;
  const Descriptor target(
      System::openAt(place_.directory.get(), place_.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (!target.valid()) return errno;
  bool same = false;
  const int error = compareAttributes(target.get(), fd_.get(), same);
  return error != 0 || same ? error : Status::NotOffered;
}

int SafeFile::flush() {
  struct stat info;
  if (System::sync(fd_.get()) < 0 && !isNotOffered(errno)) return errno;
  if (System::fstat(fd_.get(), &info) < 0) return errno;
  made_ = FileStamp::of(info);
  return fd_.close();
}

int SafeFile::takeName() {
  // Flushing may have taken long.
  if (const int error = read_ ? lookAtTarget() : 0) return error;
  const int directory = place_.directory.get();
  const char* name = place_.name.c_str();
  const bool mustBeNew = read_ && !read_->exists;
  const int renamed =
      mustBeNew ? System::renameAtNoReplace(directory, temporary_.c_str(), directory, name)
                : System::renameAt(directory, temporary_.c_str(), directory, name);
  if (renamed < 0) return mustBeNew && errno == EEXIST ? Status::ChangedMeanwhile : errno;
  temporary_.clear();
  temporaryPath_.clear();
  struct stat info;
  const bool ours =
      System::statAt(directory, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && idOf(info) == made_.id;
  stamp_ = ours ? FileStamp::of(info) : made_;
  return syncDirectory();
}

int SafeFile::commit(mode_t newMode) {
  if (!fd_.valid()) return EBADF;
  stamp_ = {};
  int error = dress(newMode);
  if (error == 0) error = flush();
  if (error == 0) error = takeName();
  discard();
  return error;
}

void SafeFile::keep() {
  fd_.reset();
  temporary_.clear();
  temporaryPath_.clear();
}

void SafeFile::discard() {
  fd_.reset();
  const bool stays = !temporary_.empty() &&
                     System::unlinkAt(place_.directory.get(), temporary_.c_str(), 0) < 0 &&
                     errno != ENOENT;
  if (stays) leftover_ = temporaryPath_;
  temporary_.clear();
  temporaryPath_.clear();
}
