#include "foundation/file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "foundation/status.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {

constexpr mode_t NewFileMode = 0660;
constexpr char LineEnd[] = "\r\n";

int systemFlags(int flags) {
  const bool reads = flags & OpenFlag::Read;
  const bool writes = flags & OpenFlag::Write;
  int result = writes ? (reads ? O_RDWR : O_WRONLY) : O_RDONLY;
  if (flags & OpenFlag::Create) result |= O_CREAT;
  if (writes && !(flags & OpenFlag::Append)) result |= O_TRUNC;
  if (!(flags & OpenFlag::KeepOnExec)) result |= O_CLOEXEC;
  return result;
}

}  // namespace

File::File() : buffer_(std::make_unique<char[]>(BufferSize)) {}

File::~File() {
  File::close();
}

int File::open(const Westring& name, int flags) {
  close();
  name_ = name;
  return openEncoded(toUtf8(name).data(), flags);
}

int File::open(const char* utf8Name, int flags) {
  close();
  name_ = decodeFileName(utf8Name);
  return openEncoded(utf8Name, flags);
}

int File::openEncoded(const char* utf8Name, int flags) {
  startEmpty();
  const int fd = System::open(utf8Name, systemFlags(flags), NewFileMode);
  if (fd < 0) return status_ = errno;
  fd_ = fd;
  textMode_ = flags & OpenFlag::Text;
  if (flags & OpenFlag::Append) {
    const off_t end = System::seek(fd_, 0, SEEK_END);
    if (end >= 0) {
      osPos_ = end;
    } else if (errno != ESPIPE) {
      status_ = errno;
      System::close(fd_);
      fd_ = 0;
    }
  }
  return status_;
}

void File::attach(int fd, const Westring& name) {
  close();
  startEmpty();
  fd_ = fd;
  textMode_ = false;
  name_ = name;
  const off_t position = System::seek(fd, 0, SEEK_CUR);
  osPos_ = position < 0 ? 0 : position;
}

void File::startEmpty() {
  status_ = 0;
  writeError_ = 0;
  osPos_ = 0;
  writing_ = false;
  emptyBuffer();
}

void File::emptyBuffer() {
  bufPos_ = 0;
  bufLen_ = 0;
}

int File::close() {
  if (fd_ == 0) return 0;
  flush();
  const int closed = System::close(fd_) == 0 ? 0 : errno;
  fd_ = 0;
  writing_ = false;
  emptyBuffer();
  return status_ = writeError_ ? writeError_ : closed;
}

// Writes what is waiting. Reports an earlier error as long as it keeps bytes from the disk.
int File::flush() {
  if (!writing_) return 0;
  if (status_) return status_;
  int written = 0;
  while (written < bufPos_) {
    const ssize_t count =
        System::write(fd_, buffer_.get() + written, static_cast<size_t>(bufPos_ - written));
    if (count <= 0) {
      status_ = writeError_ = count < 0 ? errno : EIO;
      break;
    }
    written += static_cast<int>(count);
    osPos_ += count;
  }
  memmove(buffer_.get(), buffer_.get() + written, static_cast<size_t>(bufPos_ - written));
  bufPos_ -= written;
  return status_;
}

// Ends a phase of writing; what an error kept from the disk is dropped.
int File::endWriting() {
  if (!writing_) return 0;
  const int result = flush();
  writing_ = false;
  emptyBuffer();
  return result;
}

// Puts the descriptor where the caller stands, so that the buffer can be left.
int File::alignDescriptor() {
  const int64_t position = tell();
  if (position != osPos_) {
    if (System::seek(fd_, position, SEEK_SET) < 0) return status_ = errno;
    osPos_ = position;
  }
  emptyBuffer();
  return 0;
}

bool File::fill() {
  emptyBuffer();
  const ssize_t count = System::read(fd_, buffer_.get(), BufferSize);
  if (count < 0) status_ = errno;
  if (count <= 0) return false;
  bufLen_ = count;
  osPos_ += count;
  return true;
}

// True while the buffer holds bytes to read, refilled where needed.
bool File::readable() {
  return status_ == 0 && (bufPos_ < bufLen_ || fill());
}

int File::read(void* buffer, size_t bytes, size_t* got) {
  endWriting();
  auto* target = static_cast<char*>(buffer);
  size_t done = 0;
  if (fd_ == 0 && status_ == 0) status_ = EBADF;
  while (done < bytes && readable()) {
    const size_t count = std::min(bytes - done, static_cast<size_t>(bufLen_ - bufPos_));
    memcpy(target + done, buffer_.get() + bufPos_, count);
    bufPos_ += static_cast<int>(count);
    done += count;
  }
  if (got) *got = done;
  if (done == 0 && bytes > 0 && status_ == 0) status_ = Status::EndOfFile;
  return status_;
}

int File::write(const void* buffer, size_t bytes) {
  if (fd_ == 0 && status_ == 0) status_ = EBADF;
  if (status_ || bytes == 0) return status_;
  if (!writing_) {
    if (alignDescriptor()) return status_;
    writing_ = true;
  }
  const auto* source = static_cast<const char*>(buffer);
  while (bytes > 0) {
    const size_t count = std::min(bytes, static_cast<size_t>(BufferSize - bufPos_));
    memcpy(buffer_.get() + bufPos_, source, count);
    bufPos_ += static_cast<int>(count);
    source += count;
    bytes -= count;
    if (bufPos_ == BufferSize && flush()) break;
  }
  return status_;
}

int File::writeText(const char* text) {
  if (!textMode_) return write(text, strlen(text));
  for (;;) {
    const char* lineEnd = strchrnul(text, '\n');
    write(text, static_cast<size_t>(lineEnd - text));
    if (!*lineEnd) return status_;
    write(LineEnd, strlen(LineEnd));
    text = lineEnd + 1;
  }
}

int File::writeLine(const char* text) {
  writeText(text);
  return write(LineEnd, strlen(LineEnd));
}

int File::readLine(char* buffer, int size) {
  if (size < 1) return status_ = EINVAL;
  endWriting();
  if (fd_ == 0 && status_ == 0) status_ = EBADF;
  int length = 0;
  bool anything = false;
  while (length < size - 1) {
    if (!readable()) break;
    anything = true;
    const char next = buffer_[static_cast<size_t>(bufPos_++)];
    if (next == '\n' || next == 0) break;
    buffer[length++] = next;
  }
  if (!anything && size > 1 && status_ == 0) status_ = Status::EndOfFile;
  if (anything) status_ = 0;
  while (length > 0 && (buffer[length - 1] == '\r' || buffer[length - 1] == '\n')) --length;
  buffer[length] = 0;
  return status_;
}

int File::seek(int64_t position) {
  if (endWriting()) {
    // The first seek after a failed write tells of it; a second one starts afresh.
    return status_;
  }
  status_ = writeError_ = 0;
  if (fd_ == 0) return status_ = EBADF;
  if (position < 0) return status_ = EINVAL;
  const int64_t bufferStart = osPos_ - bufLen_;
  if (position >= bufferStart && position <= osPos_) {
    bufPos_ = static_cast<int>(position - bufferStart);
    return 0;
  }
  if (System::seek(fd_, position, SEEK_SET) < 0) return status_ = errno;
  osPos_ = position;
  emptyBuffer();
  return 0;
}

int File::seekBy(int64_t delta) {
  int64_t position;
  if (__builtin_add_overflow(tell(), delta, &position)) return status_ = EINVAL;
  return seek(position);
}

int64_t File::fileSize() const {
  struct stat info;
  return fd_ != 0 && System::fstat(fd_, &info) == 0 ? info.st_size : 0;
}

int File::truncate(int64_t length) {
  if (fd_ == 0) return status_ = EBADF;
  if (flush()) return status_;
  // What was read ahead may lie beyond the new end.
  if (!writing_ && alignDescriptor()) return status_;
  if (System::truncate(fd_, length) < 0) status_ = errno;
  return status_;
}

int File::getTime(DosTime& words) const {
  struct stat info;
  if (fd_ == 0) return EBADF;
  if (System::fstat(fd_, &info) < 0) return errno;
  words = timeToDos(info.st_mtime);
  return 0;
}

int File::setTime(DosTime words) {
  if (fd_ == 0) return status_ = EBADF;
  if (flush()) return status_;  // a later write would set the time again
  const timespec times[2] = {{0, UTIME_NOW}, {dosToTime(words), 0}};
  if (System::futimens(fd_, times) < 0) status_ = errno;
  return status_;
}
