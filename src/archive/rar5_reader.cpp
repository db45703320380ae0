#include "archive/rar5_reader.h"

#include <algorithm>

namespace {

constexpr size_t LongestNumber = 10;
constexpr size_t SumSize = 4;
constexpr size_t LargestHeader = 128 * 1024;  // a name has 4096 characters at the most
constexpr unsigned char MoreFollows = 0x80;
constexpr int NumberBits = 7;

enum BlockType : uint64_t { FileBlock = 2, EncryptionBlock = 4, EndBlock = 5 };
enum BlockFlag : uint64_t { HasExtra = 1, HasData = 2 };
enum FileFlag : uint64_t { IsDirectory = 1, HasTime = 2, HasSum = 4 };

constexpr uint64_t TimesRecord = 3;
constexpr uint64_t UnixTimes = 1;
constexpr uint64_t ModifiedTime = 2;
constexpr uint64_t TicksPerSecond = 10'000'000;         // of the times that Windows counts
constexpr uint64_t SecondsBefore1970 = 11'644'473'600;  // from where it counts them

// Reads a header number by number. What is missing at its end reads as 0 and fails.
class Numbers {
 public:
  explicit Numbers(std::string_view bytes) : bytes_(bytes) {}

  uint64_t next() {
    uint64_t value = 0;
    for (size_t i = 0; i < std::min(bytes_.size(), LongestNumber); ++i) {
      const auto byte = static_cast<unsigned char>(bytes_[i]);
      value |= uint64_t{byte & (MoreFollows - 1U)} << (NumberBits * i);
      if ((byte & MoreFollows) != 0) continue;
      bytes_.remove_prefix(i + 1);
      return value;
    }
    failed_ = true;
    bytes_ = {};
    return 0;
  }
  std::string_view take(uint64_t count) {
    if (count > bytes_.size()) failed_ = true;
    const std::string_view taken = bytes_.substr(0, static_cast<size_t>(count));
    bytes_.remove_prefix(taken.size());
    return taken;
  }
  size_t left() const { return bytes_.size(); }
  bool failed() const { return failed_; }

 private:
  std::string_view bytes_;
  bool failed_ = false;
};

void takeTimes(Numbers times, ArchiveMember& member) {
  const uint64_t flags = times.next();
  if ((flags & ModifiedTime) == 0) return;
  if ((flags & UnixTimes) != 0) {
    const HeaderBytes seconds(times.take(sizeof(uint32_t)));
    if (!times.failed()) member.when = timeToDos(seconds.u32(0));
    return;
  }
  const HeaderBytes ticks(times.take(sizeof(uint64_t)));
  if (times.failed()) return;
  const uint64_t seconds = ticks.u64(0) / TicksPerSecond;
  member.when = timeToDos(static_cast<time_t>(seconds) - static_cast<time_t>(SecondsBefore1970));
}

void takeExtra(Numbers extra, ArchiveMember& member) {
  while (extra.left() > 0 && !extra.failed()) {
    Numbers record(extra.take(extra.next()));
    if (record.next() == TimesRecord) takeTimes(record, member);
  }
}

// What stands behind a file block's sizes; false when it isn't whole.
bool takeFile(Numbers& header, ArchiveMember& member) {
  const uint64_t flags = header.next();
  member.size = header.next();
  header.next();  // attributes, of whichever system
  if ((flags & HasTime) != 0) {
    member.when = timeToDos(HeaderBytes(header.take(sizeof(uint32_t))).u32(0));
  }
  if ((flags & HasSum) != 0) header.take(sizeof(uint32_t));
  header.next();  // method
  header.next();  // host
  member.name = header.take(header.next());
  if ((flags & IsDirectory) != 0) member.kind = MemberKind::Directory;
  return !header.failed();
}

class Rar5Reader {
 public:
  Rar5Reader(ArchiveReading& reading, uint64_t start) : reading_(reading), position_(start) {}

  bool readBlock();

 private:
  bool damaged() {
    reading_.tell(ArchiveNote::Damaged);
    return false;
  }

  ArchiveReading& reading_;
  uint64_t position_;
};

bool Rar5Reader::readBlock() {
  const std::string_view head = reading_.bytes(position_, SumSize + LongestNumber);
  if (head.empty()) return false;
  Numbers start(head.substr(std::min(head.size(), SumSize)));
  const size_t before = start.left();
  const uint64_t size = start.next();
  if (start.failed() || size == 0 || size > LargestHeader) return damaged();
  const size_t headLength = SumSize + before - start.left();
  const uint64_t whole = headLength + size;
  const HeaderBytes block = reading_.wholeHeader(position_, static_cast<size_t>(whole));
  if (block.size() == 0) return false;
  Numbers header(block.text(headLength, static_cast<size_t>(size)));
  const uint64_t type = header.next();
  const uint64_t flags = header.next();
  const uint64_t extraSize = (flags & HasExtra) != 0 ? header.next() : 0;
  const uint64_t dataSize = (flags & HasData) != 0 ? header.next() : 0;
  if (header.failed() || extraSize > header.left()) return damaged();
  if (type == EndBlock) return false;
  if (type == EncryptionBlock) {
    reading_.tell(ArchiveNote::HeadersEncrypted);
    return false;
  }
  if (type == FileBlock) {
    const std::string_view rest = header.take(header.left());
    const auto extraBegin = static_cast<size_t>(rest.size() - extraSize);
    Numbers fields(rest.substr(0, extraBegin));
    ArchiveMember member;
    member.packed = dataSize;
    if (!takeFile(fields, member)) return damaged();
    takeExtra(Numbers(rest.substr(extraBegin)), member);
    if (!reading_.add(member)) return false;
  }
  return reading_.advance(position_, whole) &&
         (dataSize == 0 || reading_.advance(position_, dataSize));
}

}  // namespace

bool readRar5(ArchiveReading& reading, uint64_t start) {
  Rar5Reader reader(reading, start);
  while (reader.readBlock()) {
  }
  return true;
}
