#pragma once

#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/file_stamp.h"
#include "foundation/system.h"
#include "foundation/westring.h"

// Bytes that lie together in memory, or that can't be read.
struct Stretch {
  int64_t position = 0;  // in the file
  int64_t length = 0;    // 0: nothing is there, the file has ended
  const char* bytes = nullptr;
  int error = 0;  // errno: `bytes` is null

  int64_t end() const { return position + length; }
  std::string_view text() const { return {bytes, static_cast<size_t>(length)}; }
};

// A part of the file as it was read at once, with the places in it that couldn't be read.
struct FileBlock {
  struct Unreadable {
    int64_t from;
    int64_t to;
    int error;
  };

  int64_t base = 0;
  int64_t length = 0;  // less than was asked for only at the end of the file
  std::unique_ptr<char[]> bytes;
  std::vector<Unreadable> unreadable;  // in order, a multiple of 4 bytes apart

  // The stretch that begins at `position`, which must lie inside; it ends with the block or where
  // readable turns to unreadable.
  Stretch from(int64_t position) const;
  Stretch before(int64_t position) const;  // the one that ends there, position > base
};

// How much is looked at around a position. A test makes them small, to see many borders; all are
// multiples of 4.
struct ViewLimits {
  int64_t block = 64 * 1024;            // bytes that are read and kept around a position
  int64_t searched = int64_t{1} << 20;  // a multiple of it may begin a line, see LineFinder
  int64_t scanned = 4 * block;          // bytes that a walk over the file reads at once
  int64_t alone = scanned;              // bytes that a walk reads without a thread of its own
};

enum class FileChange { None, Grown, Shrunk, Rewritten };

// The bytes of a file that may be larger than memory and may change while it is looked at. Few
// blocks are kept, those that were used last. A place that can't be read is known as such, what
// lies around it is there. Application thread, but for readBlock.
class FileBytes {
 public:
  static constexpr int BlockCount = 24;
  static constexpr int64_t PieceSize = 16 * 1024;  // what a failed read loses at most
  // Of files that don't tell their size, as those of /proc, so much is shown.
  static constexpr size_t MostHeld = size_t{64} << 20;

  explicit FileBytes(const ViewLimits& limits = {}) : blockSize_(limits.block) {}

  // Regular files and block devices. 0, errno, or EISDIR or Status::NotRegularFile for the rest.
  int open(const Westring& path);
  void close();
  bool isOpen() const { return fd_.valid() || held_; }

  int64_t size() const { return size_; }
  // The bytes from `position` on to the end of their block; those before it back to the start of
  // theirs. Good until the next call but one.
  Stretch from(int64_t position);
  Stretch before(int64_t position);

  // Looks whether the file has changed, and forgets what was read if so.
  FileChange refresh();
  // Whether the path names another file by now. A path that names nothing doesn't count.
  bool replaced() const;

  // Reads `length` bytes at `base` into the block, whose array must hold them. Any thread.
  void readBlock(FileBlock& block, int64_t base, int64_t length) const;

 private:
  struct Kept {
    FileBlock block;
    uint64_t used = 0;  // when, counted in uses; 0 when nothing is there
  };

  int lookAt(const struct stat& info);
  int hold();
  const FileBlock& blockAt(int64_t position);
  void forget();

  int64_t blockSize_;
  Descriptor fd_;
  Estring path_;
  FileStamp stamp_;
  int64_t size_ = 0;
  bool device_ = false;
  bool held_ = false;
  std::string content_;  // of a held file
  std::array<Kept, BlockCount> blocks_;
  uint64_t uses_ = 0;
};
