#include "foundation/safe_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "foundation/not_offered.h"
#include "foundation/utf8.h"

namespace {

constexpr unsigned Attempts = 100;
constexpr mode_t PrivateMode = 0600;
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

int SafeFile::create(const Westring& target) {
  discard();
  target_ = toUtf8(target).data();
  for (unsigned attempt = 0; attempt < Attempts; ++attempt) {
    const std::string name = temporaryNameBeside(target_.c_str(), attempt);
    const int fd =
        System::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, PrivateMode);
    if (fd >= 0) {
      fd_ = Descriptor(fd);
      temporary_ = name;
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
  }
  return 0;
}

int SafeFile::finish(mode_t mode) {
  if (!fd_.valid()) return EBADF;
  if (System::sync(fd_.get()) < 0 && !isNotOffered(errno)) return errno;
  if (System::fchmod(fd_.get(), mode) < 0 && !isAttributeNotOffered(errno)) return errno;
  if (const int error = fd_.close()) return error;
  return System::rename(temporary_.c_str(), target_.c_str()) == 0 ? 0 : errno;
}

int SafeFile::commit(mode_t mode) {
  const int error = finish(mode);
  if (error == 0) temporary_.clear();  // it has the target's name now
  discard();
  return error;
}

void SafeFile::discard() {
  fd_.reset();
  if (!temporary_.empty()) System::unlink(temporary_.c_str());
  temporary_.clear();
}
