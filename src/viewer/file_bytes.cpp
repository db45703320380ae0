#include "viewer/file_bytes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "foundation/status.h"
#include "foundation/utf8.h"

namespace {

// The widest unit of a text; what can't be read begins and ends between units.
constexpr int64_t UnitGrain = 4;

// Up to `bytes` at `position`, whole unless the file ends or can't be read on. `error` is 0 or
// errno.
int64_t readFully(int fd, int64_t position, char* target, int64_t bytes, int& error) {
  int64_t done = 0;
  error = 0;
  while (done < bytes) {
    const ssize_t count =
        System::readAt(fd, target + done, static_cast<size_t>(bytes - done), position + done);
    if (count < 0) error = errno;
    if (count <= 0) break;
    done += count;
  }
  return done;
}

}  // namespace

Stretch FileBlock::from(int64_t position) const {
  int64_t end = base + length;
  for (const Unreadable& gap : unreadable) {
    if (position >= gap.to) continue;
    if (position >= gap.from) return {position, gap.to - position, nullptr, gap.error};
    end = gap.from;
    break;
  }
  return {position, end - position, bytes.get() + (position - base), 0};
}

Stretch FileBlock::before(int64_t position) const {
  int64_t begin = base;
  for (const Unreadable& gap : unreadable) {
    if (position <= gap.from) break;
    if (position <= gap.to) return {gap.from, position - gap.from, nullptr, gap.error};
    begin = gap.to;
  }
  return {begin, position - begin, bytes.get() + (begin - base), 0};
}

int FileBytes::open(const Westring& path) {
  close();
  path_ = toUtf8(path);
  // Not to wait for a pipe, and not to become the owner of a terminal.
  Descriptor opened(System::open(path_.data(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!opened.valid()) return errno;
  struct stat info;
  if (System::fstat(opened.get(), &info) < 0) return errno;
  fd_ = std::move(opened);
  const int result = lookAt(info);
  if (result) close();
  return result;
}

int FileBytes::lookAt(const struct stat& info) {
  if (S_ISDIR(info.st_mode)) return EISDIR;
  device_ = S_ISBLK(info.st_mode);
  if (!device_ && !S_ISREG(info.st_mode)) return Status::NotRegularFile;
  stamp_ = FileStamp::of(info);
  size_ = info.st_size;
  if (device_) {
    const off_t end = System::seek(fd_.get(), 0, SEEK_END);
    if (end < 0) return errno;
    size_ = end;
  }
  return size_ == 0 && !device_ ? hold() : 0;
}

// A file that tells no size may have content nevertheless, and make it anew for each reader: it is
// read once.
int FileBytes::hold() {
  constexpr size_t Piece = 64 * 1024;
  for (;;) {
    const size_t before = content_.size();
    content_.resize(before + Piece);
    const ssize_t count =
        System::readAt(fd_.get(), content_.data() + before, Piece, static_cast<off_t>(before));
    const int error = count < 0 ? errno : 0;
    content_.resize(before + static_cast<size_t>(std::max<ssize_t>(count, 0)));
    if (error && content_.empty()) return error;
    if (count <= 0 || content_.size() >= MostHeld) break;
  }
  struct stat info;
  if (System::fstat(fd_.get(), &info) == 0 && info.st_size > 0) {
    // An ordinary file that was just being written.
    content_ = std::string();
    stamp_ = FileStamp::of(info);
    size_ = info.st_size;
    return 0;
  }
  held_ = !content_.empty();
  size_ = static_cast<int64_t>(content_.size());
  return 0;
}

void FileBytes::close() {
  fd_.reset();
  forget();
  content_ = std::string();
  held_ = false;
  device_ = false;
  size_ = 0;
  stamp_ = FileStamp();
}

void FileBytes::forget() {
  for (Kept& kept : blocks_) kept = Kept();
}

Stretch FileBytes::from(int64_t position) {
  if (position < 0 || position >= size_) return {position};
  const FileBlock& block = blockAt(position);
  // The file may have turned out to be shorter than it was said to be.
  return position < block.base + block.length ? block.from(position) : Stretch{position};
}

Stretch FileBytes::before(int64_t position) {
  if (position <= 0 || position > size_) return {position};
  const FileBlock& block = blockAt(position - 1);
  return position <= block.base + block.length ? block.before(position) : Stretch{position};
}

const FileBlock& FileBytes::blockAt(int64_t position) {
  const int64_t base = position - position % blockSize_;
  auto kept = std::ranges::find_if(blocks_, [base](const Kept& candidate) {
    return candidate.block.base == base && candidate.used != 0;
  });
  const bool hit = kept != blocks_.end();
  if (!hit) kept = std::ranges::min_element(blocks_, {}, &Kept::used);
  kept->used = ++uses_;
  FileBlock& block = kept->block;
  if (hit) return block;
  const int64_t wanted = std::min(blockSize_, size_ - base);
  if (!block.bytes)
    block.bytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(blockSize_));
  readBlock(block, base, wanted);
  if (block.length < wanted) size_ = base + block.length;
  return block;
}

void FileBytes::readBlock(FileBlock& block, int64_t base, int64_t length) const {
  block.base = base;
  block.length = 0;
  block.unreadable.clear();
  if (held_) {
    block.length = std::clamp<int64_t>(static_cast<int64_t>(content_.size()) - base, 0, length);
    memcpy(block.bytes.get(), content_.data() + base, static_cast<size_t>(block.length));
    return;
  }
  int error;
  block.length = readFully(fd_.get(), base, block.bytes.get(), length, error);
  while (error) {
    // What lies behind the bad place is read from the next piece on.
    const int64_t bad = base + block.length - block.length % UnitGrain;
    const int64_t next = std::min(base + length, bad - bad % PieceSize + PieceSize);
    block.unreadable.push_back({bad, next, error});
    block.length = next - base;
    error = 0;
    block.length +=
        readFully(fd_.get(), next, block.bytes.get() + block.length, length - block.length, error);
  }
}

FileChange FileBytes::refresh() {
  struct stat info;
  if (held_ || device_ || !fd_.valid() || System::fstat(fd_.get(), &info) < 0) {
    return FileChange::None;
  }
  const FileStamp now = FileStamp::of(info);
  if (now == stamp_) return FileChange::None;
  const FileChange change = now.size > stamp_.size   ? FileChange::Grown
                            : now.size < stamp_.size ? FileChange::Shrunk
                                                     : FileChange::Rewritten;
  stamp_ = now;
  size_ = now.size;
  forget();
  return change;
}

bool FileBytes::replaced() const {
  struct stat info;
  return fd_.valid() && System::stat(path_.data(), &info) == 0 && !(idOf(info) == stamp_.id);
}
