#include "archive/archive_bytes.h"

#include <algorithm>
#include <cerrno>

#include "foundation/system.h"

namespace {
// A window after a jump is small, so that headers far from each other cost little; those that
// follow one another grow.
constexpr size_t SmallestRead = 4096;
constexpr size_t Growth = 4;
}  // namespace

ArchiveBytes::ArchiveBytes(std::string_view whole) : size_(whole.size()), window_(whole) {}

ArchiveBytes::ArchiveBytes(int fd, uint64_t size) : fd_(fd), size_(size) {}

std::string_view ArchiveBytes::at(uint64_t position, size_t count) {
  if (position >= size_) return {};
  count = static_cast<size_t>(std::min<uint64_t>({count, LargestView, size_ - position}));
  const bool held = position >= windowStart_ && position - windowStart_ <= window_.size() &&
                    count <= window_.size() - (position - windowStart_);
  if (!held) {
    if (fd_ < 0) return {};
    fill(position, count);
  }
  return window_.substr(static_cast<size_t>(position - windowStart_), count);
}

void ArchiveBytes::fill(uint64_t position, size_t count) {
  const uint64_t end = windowStart_ + window_.size();
  const bool follows = position >= windowStart_ && position <= end + stride_;
  stride_ = follows ? std::min(stride_ * Growth, LargestView) : SmallestRead;
  stride_ = std::max({stride_, count, SmallestRead});
  buffer_.resize(LargestView);
  window_ = {};
  windowStart_ = position;
  size_t length = 0;
  while (length < count) {
    const ssize_t got = System::readAt(fd_, buffer_.data() + length, stride_ - length,
                                       static_cast<off_t>(position + length));
    if (got < 0 && error_ == 0) error_ = errno;
    if (got <= 0) break;
    length += static_cast<size_t>(got);
  }
  window_ = std::string_view(buffer_.data(), length);
}
