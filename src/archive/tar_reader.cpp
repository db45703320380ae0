#include <algorithm>
#include <charconv>
#include <optional>
#include <string>
#include <utility>

#include "archive/archive_readers.h"
#include "archive/tar_header.h"

namespace {

constexpr uint64_t LargestExtension = 1 << 20;  // of a long name or of extended values
constexpr uint64_t LargestPadded = UINT64_MAX - 2 * TarBlock;
constexpr uint64_t DirectoryMode = 0x4000;
constexpr char SparseMark = 1;
constexpr size_t SparseMarkOffset = 504;

enum Type : char {
  HardLink = '1',
  DirectoryType = '5',
  Fifo = '6',
  LongName = 'L',
  LongLink = 'K',
  Extended = 'x',
  ExtendedOld = 'X',
  ExtendedForAll = 'g',
  Sparse = 'S',
  DirectoryList = 'D',
  VolumeLabel = 'V',
};

// What stands before a header and holds for it.
struct Overrides {
  std::string path;
  std::optional<uint64_t> size;
  std::optional<time_t> time;
};

uint64_t padded(uint64_t size) {
  return (size + TarBlock - 1) / TarBlock * TarBlock;
}

std::optional<uint64_t> decimal(std::string_view text) {
  uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

time_t timeOf(std::optional<uint64_t> seconds) {
  constexpr uint64_t LastTime = INT64_MAX;
  return static_cast<time_t>(std::min(seconds.value_or(0), LastTime));
}

// The records "LENGTH KEY=VALUE\n" of extended values.
void takeValues(std::string_view text, Overrides& overrides) {
  while (!text.empty()) {
    const size_t blank = text.find(' ');
    const auto length = decimal(text.substr(0, blank));
    if (!length || blank == std::string_view::npos || *length <= blank + 1 || *length > text.size())
      return;
    const std::string_view record = text.substr(blank + 1, *length - blank - 2);
    text.remove_prefix(*length);
    const size_t equals = record.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view key = record.substr(0, equals);
    const std::string_view value = record.substr(equals + 1);
    if (key == "path") overrides.path = value;
    if (key == "size") overrides.size = decimal(value);
    if (key == "mtime") {
      const auto seconds = decimal(value.substr(0, value.find('.')));
      overrides.time = timeOf(seconds);
    }
  }
}

class TarReader {
 public:
  explicit TarReader(ArchiveReading& reading) : reading_(reading) {}

  bool read() {
    while (readMember()) {
    }
    return reading_.recordCount() > 0;
  }

 private:
  bool readMember();
  bool readExtension(const TarHeader& header, uint64_t size);
  bool listMember(const TarHeader& header, uint64_t size);
  bool skipSparseBlocks(bool more);
  bool damaged() {
    reading_.tell(ArchiveNote::Damaged);
    return false;
  }

  ArchiveReading& reading_;
  uint64_t position_ = 0;
  bool first_ = true;
  bool ustar_ = false;  // the form of headers; an archive keeps to that of its first one
  Overrides forAll_;
  Overrides next_;
};

bool TarReader::readMember() {
  const HeaderBytes block = reading_.wholeHeader(position_, TarBlock);
  if (block.size() == 0 || block.u8(0) == 0) return false;
  const TarHeader header(block);
  if (!header.sumFits()) return damaged();
  if (first_) ustar_ = header.isUstar();
  first_ = false;
  const std::optional<uint64_t> size = header.size();
  if (!size || *size > LargestPadded) return damaged();
  const char type = header.type();
  const bool extends = type == LongName || type == LongLink || type == Extended ||
                       type == ExtendedOld || type == ExtendedForAll;
  if (ustar_ && extends) return readExtension(header, *size);
  return listMember(header, *size);
}

bool TarReader::readExtension(const TarHeader& header, uint64_t size) {
  const char type = header.type();
  if (!reading_.advance(position_, TarBlock)) return false;
  if (size == 0) return true;
  if (size > LargestExtension) return damaged();
  std::string text;
  for (uint64_t place = 0; place < size; place += ArchiveBytes::LargestView) {
    text += reading_.bytes(position_ + place, static_cast<size_t>(size - place));
  }
  if (text.size() < size) return damaged();
  if (type == LongName) {
    next_.path = text.substr(0, text.find('\0'));
  } else if (type == ExtendedForAll) {
    takeValues(text, forAll_);
  } else if (type != LongLink) {
    takeValues(text, next_);
  }
  return reading_.advance(position_, padded(size));
}

bool TarReader::listMember(const TarHeader& header, uint64_t size) {
  const Overrides own = std::exchange(next_, {});
  const char type = header.type();
  const bool link = ustar_ && type >= HardLink && type <= Fifo;
  const auto otherSize = own.size ? own.size : forAll_.size;
  uint64_t data = link ? 0 : size;
  if (ustar_ && otherSize) data = *otherSize;
  if (data > LargestPadded) return damaged();

  ArchiveMember member;
  std::string path = own.path;
  if (path.empty()) {
    if (ustar_ && header.hasPrefix() && !header.prefix().empty()) {
      path.append(header.prefix()) += '/';
    }
    path += header.name();
  }
  member.name = path;
  const bool directory = ustar_ && (type == DirectoryType || type == DirectoryList);
  if (directory || (header.mode().value_or(0) & DirectoryMode) != 0) {
    member.kind = MemberKind::Directory;
  }
  const bool sparse = ustar_ && type == Sparse;
  member.size = sparse ? header.sparseSize().value_or(data) : data;
  member.packed = padded(data) + TarBlock;
  const auto time = own.time ? own.time : forAll_.time;
  member.when = timeToDos(time ? *time : timeOf(header.time()));
  const bool moreSparse = sparse && header.moreSparseBlocks();
  const bool listed = !ustar_ || type != VolumeLabel;
  if (listed && !reading_.add(member)) return false;
  return reading_.advance(position_, TarBlock) && skipSparseBlocks(moreSparse) &&
         (data == 0 || reading_.advance(position_, padded(data)));
}

bool TarReader::skipSparseBlocks(bool more) {
  while (more) {
    const HeaderBytes block = reading_.wholeHeader(position_, TarBlock);
    if (block.size() == 0) return damaged();
    more = block.u8(SparseMarkOffset) == SparseMark;
    if (!reading_.advance(position_, TarBlock)) return false;
  }
  return true;
}

}  // namespace

bool readTar(ArchiveReading& reading) {
  if (!TarHeader(reading.header(0, TarBlock)).sumFits()) return false;
  return TarReader(reading).read();
}
