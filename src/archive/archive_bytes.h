#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The bytes of an archive file by their positions. A file is read in windows and never mapped: it
// may be cut while it is read. The caller keeps the descriptor, or the bytes, as long as this
// lives. One thread.
class ArchiveBytes {
 public:
  static constexpr size_t LargestView = 256 * 1024;

  explicit ArchiveBytes(std::string_view whole);
  ArchiveBytes(int fd, uint64_t size);

  uint64_t size() const { return size_; }
  // `count` bytes, LargestView at the most, or as many as there are from `position` on. Valid until
  // the next call.
  std::string_view at(uint64_t position, size_t count);
  int error() const { return error_; }  // the errno of the first read that failed, or 0

 private:
  void fill(uint64_t position, size_t count);

  int fd_ = -1;
  uint64_t size_;
  std::string_view window_;
  uint64_t windowStart_ = 0;
  std::string buffer_;
  size_t stride_ = 0;  // how much the last read asked for
  int error_ = 0;
};
