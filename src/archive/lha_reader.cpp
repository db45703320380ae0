#include <algorithm>
#include <optional>
#include <string>

#include "archive/archive_readers.h"
#include "archive/signature_scan.h"
#include "foundation/fold.h"

namespace {

constexpr std::string_view ScanPattern("-lh?-");
constexpr uint64_t MethodOffset = 2;
constexpr uint64_t ScanBegin = 7;
constexpr uint64_t ScanEnd = 65536;

constexpr size_t LevelOffset = 20;
constexpr size_t SmallestHeader = 21;
constexpr uint8_t LastLevel = 3;
constexpr char Separator = '\xFF';  // between directories in extended headers
constexpr uint32_t LargestExtended = 65536;
constexpr size_t SmallestLevel2 = 26;
constexpr size_t SmallestLevel3 = 32;

enum ExtendedHeader : uint8_t { FileName = 1, Directory = 2, DosAttributes = 0x40 };
constexpr uint8_t DosDirectory = 0x10;

bool isMethod(std::string_view text) {
  return text.size() == ScanPattern.size() && text.back() == '-' &&
         (text.starts_with("-lh") || text.starts_with("-lz") || text.starts_with("-pm"));
}

// What packers of one system keep beside the files.
bool isLeftOut(const std::string& name) {
  const size_t slash = name.find_last_of("/\\");
  const std::string directory = slash == std::string::npos ? "" : name.substr(0, slash);
  const std::string file = slash == std::string::npos ? name : name.substr(slash + 1);
  return sameWord(directory.c_str(), "EAS") || sameWord(file.c_str(), "Apply-Ea.Cmd");
}

class LhaReader {
 public:
  LhaReader(ArchiveReading& reading, uint64_t start) : reading_(reading), position_(start) {}

  bool read() {
    while (readMember()) {
    }
    return recognised_;
  }

 private:
  bool readMember();
  bool readWide(const HeaderBytes& head);
  bool readSmall(const HeaderBytes& head, uint8_t level);
  bool readLarge(const HeaderBytes& head, uint8_t level);
  bool takeExtended(uint64_t& position, uint32_t next, size_t sizeBytes);
  void takeExtendedHeader(const HeaderBytes& header);
  bool finish(uint64_t headerBytes, uint64_t dataBytes);
  bool damaged() {
    reading_.tell(ArchiveNote::Damaged);
    return false;
  }

  ArchiveReading& reading_;
  uint64_t position_;
  std::optional<bool> wide_;  // the form of headers; an archive keeps to that of its first one
  bool recognised_ = false;
  ArchiveMember member_;
  std::string name_;
  std::string directory_;
};

bool LhaReader::readMember() {
  const HeaderBytes head = reading_.header(position_, SmallestLevel3);
  const uint8_t level = head.u8(LevelOffset);
  const bool method = isMethod(head.text(MethodOffset, ScanPattern.size()));
  // A length of 0 ends the list, but for the low byte of a large one.
  if (head.size() == 0 || (head.u8(0) == 0 && !(method && level >= 2 && wide_ != true))) {
    recognised_ = recognised_ || head.size() > 0;
    return false;
  }
  if (!method || head.size() < SmallestHeader + 1) return damaged();
  if (!wide_) wide_ = head.u32(19) == 0;
  member_ = {};
  name_.clear();
  directory_.clear();
  if (*wide_) return readWide(head);
  if (level > LastLevel) return damaged();
  return level < 2 ? readSmall(head, level) : readLarge(head, level);
}

bool LhaReader::readWide(const HeaderBytes& head) {
  const size_t length = head.u8(0);
  const HeaderBytes header = reading_.wholeHeader(position_, length);
  if (header.size() == 0) return false;
  member_.packed = header.u64(7);
  member_.size = header.u64(15);
  member_.when = {.date = header.u16(25), .time = header.u16(23)};
  name_ = header.text(30, header.u8(29));
  if (header.text(length - 1, 1) == "/") member_.kind = MemberKind::Directory;
  return finish(length + 2, member_.packed);
}

// Levels 0 and 1: the name in the header, whose bytes have a sum.
bool LhaReader::readSmall(const HeaderBytes& head, uint8_t level) {
  const size_t length = head.u8(0) + size_t{2};
  const HeaderBytes header = reading_.wholeHeader(position_, length);
  if (header.size() == 0) return false;
  uint8_t sum = 0;
  for (size_t i = 2; i < length; ++i) sum = static_cast<uint8_t>(sum + header.u8(i));
  if (sum != header.u8(1) || length < SmallestHeader + 1) return damaged();
  member_.packed = header.u32(7);
  member_.size = header.u32(11);
  member_.when = {.date = header.u16(17), .time = header.u16(15)};
  name_ = header.text(22, header.u8(21));
  if (header.text(MethodOffset, 5) == "-lhd-") member_.kind = MemberKind::Directory;
  uint64_t headerEnd = position_ + length;
  const uint64_t dataAndExtended = member_.packed;
  if (level == 1) {
    if (!takeExtended(headerEnd, header.u16(length - 2), sizeof(uint16_t))) return false;
    const uint64_t extended = headerEnd - position_ - length;
    member_.packed -= std::min(extended, member_.packed);
  }
  return finish(length, dataAndExtended);
}

// Levels 2 and 3: names and all else in extended headers, a Unix time.
bool LhaReader::readLarge(const HeaderBytes& head, uint8_t level) {
  const uint64_t length = level == 2 ? head.u16(0) : head.u32(24);
  const size_t fixed = level == 2 ? SmallestLevel2 : SmallestLevel3;
  if (head.size() < fixed || length < fixed) return damaged();
  member_.packed = head.u32(7);
  member_.size = head.u32(11);
  member_.when = timeToDos(head.u32(15));
  if (head.text(MethodOffset, 5) == "-lhd-") member_.kind = MemberKind::Directory;
  uint64_t extended = position_ + fixed;
  const bool taken = level == 2 ? takeExtended(extended, head.u16(24), sizeof(uint16_t))
                                : takeExtended(extended, head.u32(28), sizeof(uint32_t));
  return taken && finish(length, member_.packed);
}

// Goes over the extended headers, the first of `next` bytes; each ends with the size of another.
bool LhaReader::takeExtended(uint64_t& position, uint32_t next, size_t sizeBytes) {
  while (next != 0) {
    if (next <= sizeBytes || next > LargestExtended) return damaged();
    const HeaderBytes header = reading_.wholeHeader(position, next);
    if (header.size() == 0) return false;
    takeExtendedHeader(HeaderBytes(header.text(0, next - sizeBytes)));
    const uint32_t following =
        sizeBytes == sizeof(uint16_t) ? header.u16(next - sizeBytes) : header.u32(next - sizeBytes);
    if (!reading_.advance(position, next)) return false;
    next = following;
  }
  return true;
}

void LhaReader::takeExtendedHeader(const HeaderBytes& header) {
  const std::string_view text = header.text(1, header.size());
  if (header.u8(0) == FileName) name_ = text;
  if (header.u8(0) == Directory) {
    directory_ = text;
    std::replace(directory_.begin(), directory_.end(), Separator, '/');
  }
  if (header.u8(0) == DosAttributes && (header.u8(1) & DosDirectory) != 0) {
    member_.kind = MemberKind::Directory;
  }
}

bool LhaReader::finish(uint64_t headerBytes, uint64_t dataBytes) {
  if (!directory_.empty() && !directory_.ends_with('/')) directory_ += '/';
  name_ = directory_ + name_;
  recognised_ = true;
  member_.name = name_;
  if (!isLeftOut(name_) && !reading_.add(member_)) return false;
  return reading_.advance(position_, headerBytes) &&
         (dataBytes == 0 || reading_.advance(position_, dataBytes));
}

}  // namespace

bool readLha(ArchiveReading& reading) {
  if (isMethod(reading.header(MethodOffset, ScanPattern.size()).text(0, ScanPattern.size()))) {
    return LhaReader(reading, 0).read();
  }
  const auto found = findInProgram(reading, ScanPattern, ScanBegin, ScanEnd);
  return found && LhaReader(reading, *found - MethodOffset).read();
}
